#pragma once

#include "app/Attempt.h"
#include "orch/OrchReply.h"
#include "widgets/OtpBaseDlg.h"
#include "widgets/WidgetTopPrompt.h"

class EntryField;
class QLabel;
class QNetworkAccessManager;
class QTimer;
class SmsSender;
struct OrchRequest;
struct LoginReply;

/// Asks for the code that an SMS has brought, and logs in with it. Run modally over the login
/// window, in which its messages are shown; accepted once the token has been saved. Sending the
/// code and submitting it run side by side, the latter in these steps:
///
///     VERIFY_USER --> token
///        ^   | an administrator must approve
///        |   v
///     ASYN_AUTH_POLL, until approved
///
/// GUI thread.
class DlgPhoneAuth : public OtpBaseDlg
{
    Q_OBJECT

public:
    enum PHONE_LOGIN_STEP {
        REQUEST_SMS = 0,
        QUERY_RESULT = 1,
        VERIFY_USER = 2,
        ASYN_AUTH_POLL = 3
    };

    /// `password` and `middleToken` are secrets, and forgotten when the dialog ends.
    DlgPhoneAuth(const QString& phoneNumber, const QString& username, const QString& password,
                 const QString& customerId, const QString& middleToken, QWidget* parent);
    ~DlgPhoneAuth() override;

    // What the dialog ended with
    bool m_ResetPassword = false; ///< the password must be changed, for these reasons
    QString m_DesCn;
    QString m_DesEn;
    bool m_DeviceBind = false; ///< this device must be associated first
    QString m_DeviceBindUser;
    QString m_DeviceBindToken; ///< secret

    void done(int result) override;

signals:
    /// A message for the window's top prompt; `submitted` takes the last one away.
    void told(WidgetTopPrompt::PROMPT_TYPE type, const QString& text);
    void submitted();
    /// A request has failed and is to be rendered.
    void refused(const OrchReply& reply);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void buildForm(const QString& phoneNumber);
    void wireSender();
    void on_btnSend_clicked();
    void on_btnOk_clicked();
    void showCountdown(int seconds);
    void setUnderWay(bool underWay);
    void refuse(const OrchReply& reply);
    void error(const QString& text) { emit told(WidgetTopPrompt::SHOW_ERROR, text); }
    void verifyUser(bool withRequestId);
    void send(const OrchRequest& request, PHONE_LOGIN_STEP step);
    void netReply(PHONE_LOGIN_STEP step, const OrchReply& reply);
    void verifyUserHandler(const OrchReply& reply);
    void takeReply(const LoginReply& reply);
    void keepLogin(const LoginReply& reply);
    void AsynAuthPoll();
    void asyncAuthHandler(const OrchReply& reply);

    QNetworkAccessManager* m_NetMgr;
    SmsSender* m_sender;
    EntryField* m_lineEditCode;
    QPushButton* m_btnSend;
    QPushButton* m_btnOk;
    QTimer* m_approvalTimer; ///< between two approval polls
    Attempt m_alive;
    QString m_CustomerId;
    QString m_Username;
    QString m_Password; ///< secret
    QString m_userAuthUrl;
    QString m_RequestIdForPoll;
    QString m_AuthResultCheckUrl;
    int m_AuthResultCheckTimes = 0;    ///< polls left
    int m_AuthResultCheckInterval = 0; ///< seconds
    bool m_sent = false;               ///< the first code has been asked for
};
