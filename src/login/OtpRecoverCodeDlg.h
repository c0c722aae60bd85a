#pragma once

#include "widgets/OtpBaseDlg.h"

#include <QStringList>

class QTextEdit;
class WidgetTopPrompt;

/// Shows the recovery codes of an authenticator, which the user is given once. GUI thread.
class OtpRecoverCodeDlg : public OtpBaseDlg
{
    Q_OBJECT

public:
    /// `codes` are secrets. That they have been copied is told at the top of `parent`, since the
    /// dialog closes with it.
    OtpRecoverCodeDlg(const QStringList& codes, QWidget* parent);

private:
    void copy();

    QStringList m_codeList;
    QTextEdit* m_codeEdit;
    WidgetTopPrompt* m_topPrompt;
};
