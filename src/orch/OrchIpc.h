#pragma once

#include "orch/OrchRequest.h"
#include "orch/OrchTypes.h"

#include <QJsonObject>
#include <QMap>
#include <QObject>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;

namespace ipc {

/// The object through which most requests to the lookup servers and the orchestrator go. It knows
/// the orchestrator's authentication address and turns every finished reply into exactly one call
/// of the success or of the error callback of its request. Success is OrchReply::succeeded():
/// HTTP status 200, "code" 0 and no "errorInfo"; so a body that is not JSON is a success.
///
/// Every request returns at once and calls back from the event loop. A callback may send further
/// requests, run a nested event loop and throw windows away. Requests have a transfer time-out of
/// 40 s, after which the error callback runs with the network error OperationCanceledError.
/// GUI thread only.
class OrchIpc : public QObject
{
    Q_OBJECT

public:
    /// The one object, created on first use. Each call looks at the settings: DEBUGAUTHURL, when
    /// not empty, becomes the address; otherwise AUTHURL does, but only while none is set.
    static OrchIpc* instance();

    ~OrchIpc() override;

    /// Replaces the authentication address.
    void setMainAuthUrl(const QString& url);

    /// Adds the client information to a request body, under "traceExtraInfo".
    void appendClientInfo(QJsonObject* body);

    /// Ask the primary or the backup lookup server for the orchestrator of a typed customer ID.
    void verifyCustomerId(const QString& customerId, const OrchIpcCbFunc& cb,
                          const OrchIpcErrCbFunc& errCb);
    void verifyCustomerIdUsingBackUrl(const QString& customerId, const OrchIpcCbFunc& cb,
                                      const OrchIpcErrCbFunc& errCb);

    /// Read the version of the privacy agreement from the primary or the backup lookup server.
    void getPrivacyVerFromMain(const OrchIpcCbFunc& cb, const OrchIpcErrCbFunc& errCb);
    void getPrivacyVerFromBackup(const OrchIpcCbFunc& cb, const OrchIpcErrCbFunc& errCb);

    void obtainPubKey(const QString& customerId, const OrchIpcCbFunc& cb,
                      const OrchIpcErrCbFunc& errCb);
    void authConfig(const QString& customerId, const OrchIpcCbFunc& cb,
                    const OrchIpcErrCbFunc& errCb);
    void sendLoginRequest(const LoginParams& params, const OrchIpcCbFunc& cb,
                          const OrchIpcErrCbFunc& errCb);
    void asynAuthPoll(const AsyncAuthPollParams& params, const OrchIpcCbFunc& cb,
                      const OrchIpcErrCbFunc& errCb);
    void signoutNotifyOrch(const SignoutParams& params, const OrchIpcCbFunc& cb,
                           const OrchIpcErrCbFunc& errCb);
    void connect2Orch(const Connect2OrchParams& params, const OrchIpcCbFunc& cb,
                      const OrchIpcErrCbFunc& errCb);
    void upgradeCheck(const QString& customerId, const OrchIpcCbFunc& cb,
                      const OrchIpcErrCbFunc& errCb);
    void queryOrchUpgrade(const QString& customerId, const OrchIpcCbFunc& cb,
                          const OrchIpcErrCbFunc& errCb);

    /// Change the password of the logged-in user.
    void resetPassword(const ResetPasswordParams& params, const OrchIpcCbFunc& cb,
                       const OrchIpcErrCbFunc& errCb);
    /// Set a new password with a code that was received.
    void resetPasswordWhenForgot(const ForgetPasswordParams& params, const OrchIpcCbFunc& cb,
                                 const OrchIpcErrCbFunc& errCb);
    /// Have a code sent by SMS or e-mail, and ask whether it has been delivered.
    void sendForgetPassowordSms(const VerifySmsParams& params, const OrchIpcCbFunc& cb,
                                const OrchIpcErrCbFunc& errCb);
    void querySmsStatus(const QuerySmsParams& params, const OrchIpcCbFunc& cb,
                        const OrchIpcErrCbFunc& errCb);
    /// Ask which ways an account offers to set a new password, and for its rules.
    void getTypeOfResetPassword(const ResetPasswdTypeParams& params, const OrchIpcCbFunc& cb,
                                const OrchIpcErrCbFunc& errCb);
    void getRulesOfPasswd(const PasswdRulesParams& params, const OrchIpcCbFunc& cb,
                          const OrchIpcErrCbFunc& errCb);

    void getCustomerLogo(const QString& customerId, const OrchIpcCbFunc& cb,
                         const OrchIpcErrCbFunc& errCb);

private slots:
    void onFinished(QNetworkReply* reply);

private:
    OrchIpc();

    QNetworkReply* _verifyCustomerId(const QString& url, const QString& customerId);
    QNetworkReply* _getPrivacyVersion(const QString& lookupUrl);
    QNetworkReply* start(const OrchRequest& request);
    void send(const OrchRequest& request, const OrchIpcCbFunc& cb, const OrchIpcErrCbFunc& errCb);

    /// Made with the first request: making one loads plugins, which a first window need not await.
    QNetworkAccessManager* m_manager = nullptr;
    QMap<QNetworkReply*, OrchCallbacks> m_callbackMap; ///< the requests in flight
    QString m_authUrl;
};

} // namespace ipc
