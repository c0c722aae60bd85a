#pragma once

#include "login/LoginContext.h"
#include "orch/OrchTypes.h"

#include <QObject>
#include <QString>

class OrchReply;
class QTimer;
struct LoginReply;

/// The login itself: public key, encrypted credentials, the request, and what its answer leads to.
///
///     obtainPubKey() --> login request --> LoginFollowUp
///                           ^                 | Approval: poll until approved
///                           \-----------------/
///
/// Every way ends in one of the signals. GUI thread.
class LoginRequest : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it and carries the property "DlgAsynAuth".
    LoginRequest(LoginContext& context, QObject* window);

    /// Starts with the public key.
    void obtainPubKey();

    /// A recovered authenticator has given the login under way a new intermediate token.
    void setOtpMiddleToken(const QString& otpMiddleToken);

    /// Submits a six-digit authenticator code (RFC 6238) for the login under way.
    void onVerifyBtnClicked(const QString& verifyNum);

    /// A new attempt to log in begins. An approval that was given and not yet used stays.
    void begin();

    /// An approval is no longer meant for what the user is about to do.
    void forgetApproval();

    /// Whether an approval is waited for, or has been given, for another account than `typed`.
    bool isApprovalOfAnother(const LoginFields& typed) const;

    /// The authenticator's step is over: nothing of it is sent any more.
    void forgetAuthenticator();

signals:
    /// The token is saved.
    void accepted();
    /// The token is saved, but the password must be changed first, for these reasons.
    void passwordChangeForced(const QString& reasonCn, const QString& reasonEn);
    /// A code goes to this phone; `middleToken`, a secret, lets it be sent.
    /// `password`, a secret, is what the login was sent with, whatever the user types meanwhile.
    void smsNeeded(const QString& phoneNumber, const QString& middleToken, const QString& username,
                   const QString& password);
    /// A code of the authenticator is wanted. Without `otpLogin` none is bound yet, and `otpKey`
    /// is the secret to bind; `otpMiddleToken` is a secret too.
    void authenticatorNeeded(bool otpLogin, const QString& otpKey, const QString& otpMiddleToken);
    /// This device must be associated with the account first; without `token`, a secret, only an
    /// administrator can.
    void bindingDemanded(const QString& user, const QString& token);
    /// There is nothing to send.
    void idle();
    /// The attempt has ended with this text.
    void ended(const QString& error);
    /// A request was refused and is to be rendered.
    void refused(const OrchReply& reply);
    /// A request was answered with 502.
    void badGateway();
    /// The refusal ends the authenticator's step for good: back to the login page.
    void startAgain();
    /// The authenticator's step is over, in whatever way.
    void authenticatorOver();
    /// A code is submitted.
    void submitted();

private:
    void handleEncryptPassword(const OrchReply& reply);
    void verifyUser();
    ipc::LoginParams loginParams() const;
    void sendLogin(const ipc::LoginParams& params);
    void _requestLoginSuccHandler(const OrchReply& reply);
    void _requestLoginFailedHandler(const OrchReply& reply);
    void keepValues(const LoginReply& reply);
    void keepRecoverCodes(const LoginReply& reply);
    void userInfoStorage(const QString& token);
    void pollApproval();
    void _requestAuthPollSuccHandler(const OrchReply& reply);
    void _requestAuthPollFailedHandler(const OrchReply& reply);
    bool isApproved() const;
    void setApproved(bool approved);

    LoginContext& m_context;
    LoginFields m_sent; ///< what the last login request went out with
    QString m_encryptedUserName;
    QString m_encryptedPassword;
    QString m_verifyNum;      ///< secret: the authenticator code being submitted
    QString m_otpMiddleToken; ///< secret
    QString m_RequestIdForPoll;
    QString m_AuthResultCheckUrl;
    int m_AuthResultCheckInterval = 0; ///< seconds
    int m_AuthResultCheckTimes = 0;    ///< polls left
    bool m_supportAEPSha = false;      ///< the orchestrator accepts OAEP
    bool m_inFlight = false;           ///< a login request waits for its answer
    QTimer* m_approvalTimer;           ///< between two approval polls
};
