#pragma once

#include "widgets/OtpBaseDlg.h"

/// How to add an account to an authenticator app. GUI thread.
class OtpInstructionDlg : public OtpBaseDlg
{
    Q_OBJECT

public:
    explicit OtpInstructionDlg(QWidget* parent);
};
