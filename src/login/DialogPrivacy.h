#pragma once

#include "widgets/OtpBaseDlg.h"

class QLabel;
class QTextBrowser;

/// Asks the user to accept the user agreement and the privacy policy: exec() returns 1 for Accept
/// and 0 for Decline or closing. Recording the answer is the caller's. GUI thread.
class DialogPrivacy : public OtpBaseDlg
{
    Q_OBJECT

public:
    /// `parent` is the login window.
    explicit DialogPrivacy(QWidget* parent = nullptr);

    /// Sets the line that dates the policy; the line is empty for versions without a date.
    void setPrivacyVersion(QString version);

    /// The text of that line in the language of the interface.
    QString getPrivacyUpdateDate(QString version) const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QTextBrowser* makeBody();
    QWidget* makeButtons();

    QWidget* m_Parent;
    QLabel* m_updateLabel;
};
