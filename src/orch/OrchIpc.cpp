#include "orch/OrchIpc.h"

#include "app/ConfigUtil.h"
#include "app/Deployment.h"
#include "app/Platform.h"
#include "orch/AccountRequests.h"
#include "orch/ClientInfo.h"
#include "orch/Gateway.h"
#include "orch/HostIdentity.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequest.h"
#include "orch/OrchRequests.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QtDebug>

namespace ipc {

namespace {

OrchIpc* s_instance = nullptr;

/// The network machinery must be gone before the application object is.
void releaseInstance()
{
    delete s_instance;
    s_instance = nullptr;
}

QString language()
{
    return platform().isChinese() ? QStringLiteral("zh") : QStringLiteral("en");
}

} // namespace

OrchIpc* OrchIpc::instance()
{
    if (!s_instance) {
        s_instance = new OrchIpc;
        qAddPostRoutine(&releaseInstance);
    }
    const QString debugUrl = ConfigUtil::savedText(ConfigUtil::DEBUGAUTHURL);
    if (!debugUrl.isEmpty())
        s_instance->m_authUrl = debugUrl;
    else if (s_instance->m_authUrl.isEmpty())
        s_instance->m_authUrl = ConfigUtil::savedText(ConfigUtil::AUTHURL);
    return s_instance;
}

OrchIpc::OrchIpc() = default;
OrchIpc::~OrchIpc() = default;

void OrchIpc::setMainAuthUrl(const QString& url)
{
    m_authUrl = url;
}

void OrchIpc::appendClientInfo(QJsonObject* body)
{
    body->insert(QStringLiteral("traceExtraInfo"), clientInfo(gatherClientFacts()));
}

QNetworkReply* OrchIpc::start(const OrchRequest& request)
{
    if (!m_manager) {
        m_manager = makeAccessManager(this);
        connect(m_manager, &QNetworkAccessManager::finished, this, &OrchIpc::onFinished);
    }
    return sendOrchRequest(*m_manager, request);
}

void OrchIpc::send(const OrchRequest& request, const OrchIpcCbFunc& cb,
                   const OrchIpcErrCbFunc& errCb)
{
    m_callbackMap.insert(start(request), {cb, errCb});
}

void OrchIpc::onFinished(QNetworkReply* reply)
{
    // Taken out first: a callback may send requests, run an event loop, or never come back here
    // before the next reply does.
    const OrchCallbacks callbacks = m_callbackMap.take(reply);
    if (callbacks.m_cb || callbacks.m_errCb) {
        const OrchReply answer = OrchReply::read(reply);
        const OrchReplyFunc& callback = answer.succeeded() ? callbacks.m_cb : callbacks.m_errCb;
        if (callback)
            callback(answer);
    }
    reply->deleteLater();
}

QNetworkReply* OrchIpc::_verifyCustomerId(const QString& url, const QString& customerId)
{
    const OrchRequest request =
        orchrequest::verifyCustomer(url, {Util::getSerial(), customerId, QString()});
    qDebug("Begin to get authentication URL");
    qDebug().noquote() << maskSecrets(request.body);
    return start(request);
}

void OrchIpc::verifyCustomerId(const QString& customerId, const OrchIpcCbFunc& cb,
                               const OrchIpcErrCbFunc& errCb)
{
    m_callbackMap.insert(_verifyCustomerId(deployment::lookupPrimary(), customerId), {cb, errCb});
}

void OrchIpc::verifyCustomerIdUsingBackUrl(const QString& customerId, const OrchIpcCbFunc& cb,
                                           const OrchIpcErrCbFunc& errCb)
{
    m_callbackMap.insert(_verifyCustomerId(deployment::lookupBackup(), customerId), {cb, errCb});
}

QNetworkReply* OrchIpc::_getPrivacyVersion(const QString& lookupUrl)
{
    qDebug("getPrivacyVersion");
    return start(orchrequest::privacyVersion(lookupUrl, Util::getSerial()));
}

void OrchIpc::getPrivacyVerFromMain(const OrchIpcCbFunc& cb, const OrchIpcErrCbFunc& errCb)
{
    m_callbackMap.insert(_getPrivacyVersion(deployment::lookupPrimary()), {cb, errCb});
}

void OrchIpc::getPrivacyVerFromBackup(const OrchIpcCbFunc& cb, const OrchIpcErrCbFunc& errCb)
{
    m_callbackMap.insert(_getPrivacyVersion(deployment::lookupBackup()), {cb, errCb});
}

void OrchIpc::obtainPubKey(const QString& customerId, const OrchIpcCbFunc& cb,
                           const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::publicKey(m_authUrl, storedIdentity(customerId)), cb, errCb);
}

void OrchIpc::authConfig(const QString& customerId, const OrchIpcCbFunc& cb,
                         const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::authConfig(m_authUrl, storedIdentity(customerId)), cb, errCb);
}

void OrchIpc::sendLoginRequest(const LoginParams& params, const OrchIpcCbFunc& cb,
                               const OrchIpcErrCbFunc& errCb)
{
    const ClientFacts facts = gatherClientFacts();
    const OrchRequest request =
        orchrequest::login(m_authUrl, facts.serial, params, clientInfo(facts));
    if (params.token.isEmpty())
        qDebug().noquote() << maskSecrets(withoutPassword(request.body));
    send(request, cb, errCb);
}

void OrchIpc::asynAuthPoll(const AsyncAuthPollParams& params, const OrchIpcCbFunc& cb,
                           const OrchIpcErrCbFunc& errCb)
{
    qDebug("Check asyn auth result");
    send(orchrequest::asyncAuthPoll(Util::getSerial(), params), cb, errCb);
}

void OrchIpc::signoutNotifyOrch(const SignoutParams& params, const OrchIpcCbFunc& cb,
                                const OrchIpcErrCbFunc& errCb)
{
    Q_ASSERT(params.reason == DisConnNormalReason || params.reason == DisConnOrchNotifyReason);
    send(orchrequest::signout(m_authUrl, Util::getSerial(), params), cb, errCb);
}

void OrchIpc::connect2Orch(const Connect2OrchParams& params, const OrchIpcCbFunc& cb,
                           const OrchIpcErrCbFunc& errCb)
{
    Q_ASSERT(params.reason != DisConnAbnormalReason);
    const OrchRequest request = orchrequest::connectSession(
        m_authUrl, storedIdentity(params.customerId), params.reason, Util::getNICIp());
    qDebug().noquote() << "Connect param" << maskSecrets(request.body);
    send(request, cb, errCb);
}

void OrchIpc::upgradeCheck(const QString& customerId, const OrchIpcCbFunc& cb,
                           const OrchIpcErrCbFunc& errCb)
{
    const OrchRequest request =
        orchrequest::upgradeCheck(m_authUrl, storedIdentity(customerId), Util::getDistributionId(),
                                  Util::getCpuArchitecture());
    qDebug().noquote() << "Upgrade check param" << maskSecrets(request.body);
    send(request, cb, errCb);
}

void OrchIpc::queryOrchUpgrade(const QString& customerId, const OrchIpcCbFunc& cb,
                               const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::maintenanceNotice(m_authUrl, storedIdentity(customerId)), cb, errCb);
}

void OrchIpc::resetPassword(const ResetPasswordParams& params, const OrchIpcCbFunc& cb,
                            const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::resetPassword(m_authUrl, storedIdentity(params.customerId), params), cb,
         errCb);
}

void OrchIpc::resetPasswordWhenForgot(const ForgetPasswordParams& params, const OrchIpcCbFunc& cb,
                                      const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::resetForgottenPassword(m_authUrl, Util::getSerial(), params), cb, errCb);
}

void OrchIpc::sendForgetPassowordSms(const VerifySmsParams& params, const OrchIpcCbFunc& cb,
                                     const OrchIpcErrCbFunc& errCb)
{
    const OrchRequest request =
        orchrequest::sendCode(m_authUrl, Util::getSerial(), params, language());
    qDebug().noquote() << "SMS post params:" << maskSecrets(request.body);
    send(request, cb, errCb);
}

void OrchIpc::querySmsStatus(const QuerySmsParams& params, const OrchIpcCbFunc& cb,
                             const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::codeStatus(m_authUrl, Util::getSerial(), params), cb, errCb);
}

void OrchIpc::getTypeOfResetPassword(const ResetPasswdTypeParams& params, const OrchIpcCbFunc& cb,
                                     const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::resetMethods(m_authUrl, Util::getSerial(), params), cb, errCb);
}

void OrchIpc::getRulesOfPasswd(const PasswdRulesParams& params, const OrchIpcCbFunc& cb,
                               const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::passwordRules(m_authUrl, Util::getSerial(), params, language()), cb, errCb);
}

void OrchIpc::getCustomerLogo(const QString& customerId, const OrchIpcCbFunc& cb,
                              const OrchIpcErrCbFunc& errCb)
{
    send(orchrequest::customerLogo(m_authUrl, storedIdentity(customerId)), cb, errCb);
}

} // namespace ipc
