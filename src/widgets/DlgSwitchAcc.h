#pragma once

#include "widgets/ConfirmDialog.h"

/// Asks whether to switch to another account.
class DlgSwitchAcc : public ConfirmDialog
{
    Q_OBJECT

public:
    explicit DlgSwitchAcc(QWidget* parent = nullptr);
};
