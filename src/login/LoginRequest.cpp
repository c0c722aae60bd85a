#include "login/LoginRequest.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/NamedTimer.h"
#include "login/LoginReply.h"
#include "orch/CredentialKey.h"
#include "orch/ErrorCatalogue.h"
#include "orch/HostIdentity.h"
#include "orch/HttpErrorText.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/OrchReply.h"

#include <QCoreApplication>
#include <QVariant>

namespace {

/// The window's property that is true while the next login request follows an approval.
constexpr char kAsynAuth[] = "DlgAsynAuth";

constexpr int kLongestPollSeconds = 86400;

ipc::OrchIpc* orch()
{
    return ipc::OrchIpc::instance();
}

} // namespace

LoginRequest::LoginRequest(LoginContext& context, QObject* window)
    : QObject(window), m_context(context),
      m_approvalTimer(makeTimer(this, "m_approvalTimer", 0, &LoginRequest::pollApproval))
{
    m_approvalTimer->setSingleShot(true);
}

void LoginRequest::begin()
{
    m_inFlight = false;
    m_verifyNum.clear();
    m_approvalTimer->stop();
    if (!isApproved())
        m_RequestIdForPoll.clear();
}

void LoginRequest::forgetApproval()
{
    setApproved(false);
    m_RequestIdForPoll.clear();
}

bool LoginRequest::isApprovalOfAnother(const LoginFields& typed) const
{
    return !m_RequestIdForPoll.isEmpty() &&
           (typed.username.trimmed() != m_sent.username.trimmed() ||
            typed.customerId != m_sent.customerId);
}

void LoginRequest::forgetAuthenticator()
{
    m_otpMiddleToken.clear();
    m_verifyNum.clear();
    emit authenticatorOver();
}

void LoginRequest::setOtpMiddleToken(const QString& otpMiddleToken)
{
    m_otpMiddleToken = otpMiddleToken;
}

bool LoginRequest::isApproved() const
{
    return parent()->property(kAsynAuth).toBool();
}

void LoginRequest::setApproved(bool approved)
{
    parent()->setProperty(kAsynAuth, approved);
}

// Public key

void LoginRequest::obtainPubKey()
{
    const auto received = [this](const OrchReply& reply) {
        m_context.verifyingCustomer = false;
        handleEncryptPassword(reply);
        if (m_verifyNum.isEmpty())
            verifyUser();
        else
            onVerifyBtnClicked(m_verifyNum);
    };
    const auto failed = [this](const OrchReply& reply) {
        logDisplayInfo(failureCauseText(reply));
        if (reply.status == 502)
            emit badGateway();
        else
            emit refused(reply);
    };
    orch()->obtainPubKey(m_context.m_CustomerID, m_context.attempt.step(received),
                         m_context.attempt.step(failed));
}

void LoginRequest::handleEncryptPassword(const OrchReply& reply)
{
    const CredentialKey key = CredentialKey::fromJson(reply.json());
    const LoginFields typed = m_context.fields();
    m_supportAEPSha = key.m_supportAEPSha;
    m_encryptedUserName = key.encrypted(typed.username.trimmed());
    m_encryptedPassword = key.encrypted(typed.password.trimmed());
}

// Login request

ipc::LoginParams LoginRequest::loginParams() const
{
    const LoginFields typed = m_context.fields();
    ipc::LoginParams params;
    params.customerId = m_context.m_CustomerID;
    params.username = typed.username.trimmed();
    params.encryptedUsername = m_encryptedUserName;
    params.password = typed.password.trimmed();
    params.encryptedPassword = m_encryptedPassword;
    params.token = ConfigUtil::savedText(ConfigUtil::TOKEN);
    params.requestIdForPoll = m_RequestIdForPoll;
    params.privacyVersion = ConfigUtil::savedText(ConfigUtil::PRIVACY_VERSION);
    params.deviceId = Util::getDeviceId();
    params.rsaType = m_supportAEPSha ? OAEP_SHA : PKCS1v15;
    params.asynAuth = isApproved();
    params.isOtpLogin = ConfigUtil::getvalue(ConfigUtil::OTPLOGIN, false).toBool();
    params.agreePolicy = m_context.m_AgreePolicyNow;
    return params;
}

void LoginRequest::verifyUser()
{
    if (m_inFlight)
        return;
    // A chain that started by itself sends what was saved, not what the user is just typing.
    const QString password = m_context.fields().password;
    const bool typing = !m_context.byHand && password != m_context.passwordAtStart;
    if (typing || password.trimmed().isEmpty())
        return emit idle();
    ipc::LoginParams params = loginParams();
    params.autoLogin = ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt() == Qt::Checked;
    sendLogin(params);
}

void LoginRequest::onVerifyBtnClicked(const QString& verifyNum)
{
    if (m_inFlight)
        return;
    m_verifyNum = verifyNum;
    ipc::LoginParams params = loginParams();
    params.otpMiddleToken = m_otpMiddleToken;
    params.verifyNum = m_verifyNum;
    emit submitted();
    sendLogin(params);
}

void LoginRequest::sendLogin(const ipc::LoginParams& params)
{
    setApproved(false);
    m_inFlight = true;
    m_sent = m_context.fields();
    const auto received = [this](const OrchReply& reply) { _requestLoginSuccHandler(reply); };
    const auto failed = [this](const OrchReply& reply) { _requestLoginFailedHandler(reply); };
    orch()->sendLoginRequest(params, m_context.attempt.step(received),
                             m_context.attempt.step(failed));
    m_RequestIdForPoll.clear();
}

// Outcome

void LoginRequest::_requestLoginSuccHandler(const OrchReply& reply)
{
    m_inFlight = false;
    logDisplayInfo(tr("Verification successful"));
    qDebug().noquote() << maskSecrets(reply.body);
    const LoginReply answer = LoginReply::fromJson(reply.json());
    keepValues(answer);

    const LoginFollowUp next = decideLogin(answer, m_otpMiddleToken);
    if (next != LoginFollowUp::Approval) // after which the code is sent again
        m_verifyNum.clear();
    switch (next) {
    case LoginFollowUp::Accept:
        logDisplayInfo(tr("Get token successfully"));
        m_RequestIdForPoll.clear();
        keepRecoverCodes(answer);
        userInfoStorage(answer.token);
        forgetAuthenticator();
        logDisplayInfo(tr("Authorization succeeded"));
        return emit accepted();
    case LoginFollowUp::ForcedPassword:
        keepRecoverCodes(answer);
        m_sent.password.clear(); // as the field will be
        userInfoStorage(answer.token);
        forgetAuthenticator();
        return emit passwordChangeForced(answer.needResetPasswordReasonCn,
                                         answer.needResetPasswordReasonEn);
    case LoginFollowUp::Approval:
        return pollApproval();
    case LoginFollowUp::ApprovalOver:
        return emit ended(errorText(ErrorText::ApprovalTimeout));
    case LoginFollowUp::Sms:
        return emit smsNeeded(answer.phoneNumber, answer.middleToken, m_sent.username.trimmed(),
                              m_sent.password.trimmed());
    case LoginFollowUp::Authenticator:
        return emit authenticatorNeeded(answer.otpLogin, answer.otpKey, m_otpMiddleToken);
    case LoginFollowUp::Unusable:
        return emit ended(errorText(ErrorText::LoginReplyUnusable));
    }
}

void LoginRequest::keepValues(const LoginReply& reply)
{
    m_RequestIdForPoll = reply.requestIdForPoll;
    m_AuthResultCheckUrl = reply.authResultCheckUrl;
    m_AuthResultCheckInterval = reply.authResultCheckInterval;
    m_AuthResultCheckTimes = reply.authResultCheckTimes;
    if (m_verifyNum.isEmpty())
        m_otpMiddleToken = reply.otpMiddleToken;
    qApp->setProperty(appproperty::kAllowChangePass, reply.allowChangePass);
}

void LoginRequest::keepRecoverCodes(const LoginReply& reply)
{
    if (reply.otpRecoverCode.isEmpty())
        ConfigUtil::writeValue(ConfigUtil::OTPLOGIN, true);
    else
        ConfigUtil::writeValue(ConfigUtil::OTP_RECOVER_CODE, reply.otpRecoverCode);
}

// The account that the token was given for, whatever the user types meanwhile.
void LoginRequest::userInfoStorage(const QString& token)
{
    ConfigUtil::writeValue(ConfigUtil::TOKEN, token);
    ConfigUtil::writeValue(ConfigUtil::USERNAME, m_sent.username.trimmed());
    ConfigUtil::writeValue(ConfigUtil::PASSWORD,
                           QString(m_sent.password.trimmed().size(), QLatin1Char('*')));
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERIDSTR, m_sent.customerId.trimmed());
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERID, m_context.m_CustomerID);
}

void LoginRequest::_requestLoginFailedHandler(const OrchReply& reply)
{
    m_inFlight = false;
    m_verifyNum.clear();
    logDisplayInfo(tr("Verification failed"));
    if (reply.status == 502)
        return emit badGateway();
    const LoginRefusal refusal = LoginRefusal::fromJson(reply.json());
    if (!refusal.otpRecoverCode.isEmpty())
        ConfigUtil::writeValue(ConfigUtil::OTP_RECOVER_CODE, refusal.otpRecoverCode);
    QString bindUser;
    QString bindToken;
    if (isDeviceBing(reply, bindUser, bindToken))
        emit bindingDemanded(bindUser, bindToken);
    else
        emit refused(reply);
    if (!refusal.startAgain)
        return;
    forgetAuthenticator();
    emit startAgain();
}

// Approval

void LoginRequest::pollApproval()
{
    m_AuthResultCheckTimes -= 1;
    ipc::AsyncAuthPollParams params;
    params.customerId = m_context.m_CustomerID;
    params.pollUrl = m_AuthResultCheckUrl;
    const auto received = [this](const OrchReply& reply) { _requestAuthPollSuccHandler(reply); };
    const auto failed = [this](const OrchReply& reply) { _requestAuthPollFailedHandler(reply); };
    orch()->asynAuthPoll(params, m_context.attempt.step(received), m_context.attempt.step(failed));
}

void LoginRequest::_requestAuthPollSuccHandler(const OrchReply& reply)
{
    qDebug().noquote() << maskSecrets(reply.body);
    const int resultCode = JsonUtil::getInt(reply.json(), QStringLiteral("resultCode"), -1);
    switch (decidePoll(resultCode, m_AuthResultCheckTimes)) {
    case PollNext::Approved:
        setApproved(true);
        return obtainPubKey();
    case PollNext::TimedOut:
        m_verifyNum.clear();
        return emit ended(errorText(ErrorText::ApprovalTimeout));
    case PollNext::PollAgain:
        m_approvalTimer->start(qBound(0, m_AuthResultCheckInterval, kLongestPollSeconds) * 1000);
    }
}

void LoginRequest::_requestAuthPollFailedHandler(const OrchReply& reply)
{
    m_verifyNum.clear();
    logDisplayCritical(tr("Asynchronous authenticatin failed"));
    emit refused(reply);
}
