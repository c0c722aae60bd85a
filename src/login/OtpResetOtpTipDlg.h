#pragma once

#include "app/Attempt.h"
#include "widgets/OtpBaseDlg.h"

class OrchReply;
class QLineEdit;
class QNetworkAccessManager;
class WidgetTopPrompt;

/// Lets a user who has lost the authenticator bind a new one with a recovery code. It goes on with
/// the login that the application's property "otpMiddleToken" stands for, and leaves the token that
/// comes after it there. GUI thread.
class OtpResetOtpTipDlg : public OtpBaseDlg
{
    Q_OBJECT

public:
    explicit OtpResetOtpTipDlg(QWidget* parent);
    ~OtpResetOtpTipDlg() override;

signals:
    /// The recovery code was taken: `otpKey`, a secret, is to be bound.
    void regenQRCode(const QString& otpKey);

protected:
    bool event(QEvent* event) override;

private:
    void layOut();
    void reset();
    void take(const OrchReply& reply);

    QLineEdit* m_recoveryLineEdit;
    QPushButton* m_cancelBtn;
    QPushButton* m_resetBtn;
    WidgetTopPrompt* m_topPrompt;
    QNetworkAccessManager* m_netMgr;
    Attempt m_alive;
};
