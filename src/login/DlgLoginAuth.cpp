// The login request and its outcome: from the public key to the saved token.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "orch/ErrorCatalogue.h"
#include "orch/HttpErrorText.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchIpc.h"
#include "orch/ReplyFacts.h"
#include "orch/Util.h"
#include "widgets/WidgetTopPrompt.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QJsonArray>
#include <QLineEdit>
#include <QNetworkReply>
#include <QPushButton>
#include <QTimer>

namespace {

ipc::OrchIpc* orch()
{
    return ipc::OrchIpc::instance();
}

int checkState(const QCheckBox* box)
{
    return box->isChecked() ? Qt::Checked : Qt::Unchecked;
}

} // namespace

void DlgLogin::authUser()
{
    if (!ui->autoLoginCheckBox->isChecked() && !m_reLogin) {
        ui->btnLogin->setEnabled(true);
        return;
    }
    loadErrorResource(ConfigUtil::getvalue(ConfigUtil::AUTHURL, QString()).toString());
    obtainPubKey();
}

void DlgLogin::_authUserLogin()
{
    if (m_checkUpgrade) {
        const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
            if (httpStatus(reply) == 502)
                return _queryOrchUpgradeWhen502();
            reportHttpErr(body, reply);
            restoreLoginPage();
        };
        orch()->upgradeCheck(m_CustomerID,
                             step([this](const QByteArray& body) { _handleUpgrade(body); }),
                             step(failed));
        return;
    }
    m_ConnectSlowWarningTimer->start();
    ui->btnForgetPasswd->setEnabled(false);
    loadErrorResource(ConfigUtil::getvalue(ConfigUtil::AUTHURL, QString()).toString());
    _queryOrchUpgrade([this] { obtainPubKey(); });
}

void DlgLogin::obtainPubKey()
{
    const auto received = [this](const QByteArray& body) {
        m_verifyingCustomer = false;
        m_supportAEPSha = false;
        handleEncryptPassword(body);
        m_Step = PROCESS_AUTH;
        if (m_verifyNum.isEmpty())
            verifyUser();
        else
            onVerifyBtnClicked(m_verifyNum);
    };
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        logDisplayInfo(
            failureCauseText(HttpFailure::of(body, reply), QStringLiteral("Error Info: ")));
        if (httpStatus(reply) == 502)
            return _queryOrchUpgradeWhen502();
        m_ConnectSlowWarningTimer->stop();
        reportHttpErr(body, reply);
        restoreLoginPage();
    };
    orch()->obtainPubKey(m_CustomerID, step(received), step(failed));
}

void DlgLogin::handleEncryptPassword(const QByteArray& body)
{
    const QJsonObject json = JsonUtil::object(body);
    const QString key = json.value(QLatin1String("key")).toString();
    const QJsonArray types = json.value(QLatin1String("rsaType")).toArray();
    m_supportAEPSha = types.contains(QJsonValue(int(OAEP_SHA)));

    m_encryptedUserName.clear();
    m_encryptedPassword.clear();
    if (key.isEmpty())
        return;
    const auto encrypted = [&](const QString& text) {
        return QString::fromStdString(
            Util::TQRSAEncrypt(text.trimmed().toStdString(), key.toStdString(), m_supportAEPSha));
    };
    m_encryptedUserName = encrypted(ui->username->text());
    m_encryptedPassword = encrypted(ui->password->text());
}

ipc::LoginParams DlgLogin::loginParams()
{
    const auto saved = [](const QString& key) { return ConfigUtil::getvalue(key, QString()); };
    ipc::LoginParams params;
    params.customerId = m_CustomerID;
    params.username = ui->username->text().trimmed();
    params.encryptedUsername = m_encryptedUserName;
    params.password = ui->password->text().trimmed();
    params.encryptedPassword = m_encryptedPassword;
    params.token = saved(ConfigUtil::TOKEN).toString();
    params.requestIdForPoll = m_RequestIdForPoll;
    params.privacyVersion = saved(ConfigUtil::PRIVACY_VERSION).toString();
    params.deviceId = Util::getDeviceId();
    params.rsaType = m_supportAEPSha ? OAEP_SHA : PKCS1v15;
    params.asynAuth = property(kAsynAuth).toBool();
    params.isOtpLogin = ConfigUtil::getvalue(ConfigUtil::OTPLOGIN, false).toBool();
    params.agreePolicy = m_AgreePolicyNow;
    return params;
}

void DlgLogin::verifyUser()
{
    if (m_loginInFlight)
        return;
    // A chain that started by itself sends what was saved, not what the user is just typing.
    const bool typing = !m_byHand && ui->password->text() != m_passwordAtStart;
    if (typing || ui->password->text().trimmed().isEmpty()) {
        m_ConnectSlowWarningTimer->stop();
        return restoreLoginPage();
    }
    ipc::LoginParams params = loginParams();
    params.autoLogin = ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt() == Qt::Checked;
    sendLogin(params);
}

void DlgLogin::onVerifyBtnClicked(const QString& verifyNum)
{
    if (m_loginInFlight)
        return;
    m_verifyNum = verifyNum;
    ipc::LoginParams params = loginParams();
    params.otpMiddleToken = m_otpMiddleToken;
    params.verifyNum = m_verifyNum;
    promptWidge->hidePrompt();
    sendLogin(params);
}

void DlgLogin::sendLogin(const ipc::LoginParams& params)
{
    setProperty(kAsynAuth, false);
    m_loginInFlight = true;
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        _requestLoginFailedHandler(body, reply);
    };
    orch()->sendLoginRequest(
        params, step([this](const QByteArray& body) { _requestLoginSuccHandler(body); }),
        step(failed));
    m_RequestIdForPoll.clear();
}

// Outcome

void DlgLogin::_requestLoginSuccHandler(const QByteArray& body)
{
    m_loginInFlight = false;
    logDisplayInfo(QStringLiteral("Verification successful"));
    qDebug().noquote() << maskSecrets(body);
    const LoginReply reply = LoginReply::fromJson(body);
    readLoginReply(reply);

    switch (decideLogin(reply, m_otpMiddleToken)) {
    case LoginFollowUp::Accept:
        return acceptLogin(reply);
    case LoginFollowUp::Approval:
        return pollApproval();
    case LoginFollowUp::ApprovalOver:
        return endLoginAttempt(errorText(ErrorText::ApprovalTimeout));
    case LoginFollowUp::ForcedPassword:
        keepRecoverCodes(reply); // they come once
        return endLoginAttempt(errorText(ErrorText::LoginReplyUnusable));
    case LoginFollowUp::Sms:
    case LoginFollowUp::Authenticator:
    case LoginFollowUp::Unusable:
        return endLoginAttempt(errorText(ErrorText::LoginReplyUnusable));
    }
}

void DlgLogin::readLoginReply(const LoginReply& reply)
{
    m_RequestIdForPoll = reply.requestIdForPoll;
    m_AuthResultCheckUrl = reply.authResultCheckUrl;
    m_AuthResultCheckInterval = reply.authResultCheckInterval;
    m_AuthResultCheckTimes = reply.authResultCheckTimes;
    m_otpKey = reply.otpKey;
    if (m_verifyNum.isEmpty())
        m_otpMiddleToken = reply.otpMiddleToken;
    qApp->setProperty(appproperty::kAllowChangePass, reply.allowChangePass);
}

void DlgLogin::acceptLogin(const LoginReply& reply)
{
    logDisplayInfo(QStringLiteral("Get token successfully"));
    m_RequestIdForPoll.clear();
    keepRecoverCodes(reply);
    userInfoStorage(reply.token);
    logDisplayInfo(QStringLiteral("Authorization succeeded"));
    m_ConnectSlowWarningTimer->stop();
    ConfigUtil::writeValue(ConfigUtil::REMEMBER_PASSWORD, checkState(ui->remePwCheckBox));
    ConfigUtil::writeValue(ConfigUtil::AUTO_LOGIN, checkState(ui->autoLoginCheckBox));
    accept();
}

void DlgLogin::keepRecoverCodes(const LoginReply& reply)
{
    if (reply.otpRecoverCode.isEmpty())
        ConfigUtil::writeValue(ConfigUtil::OTPLOGIN, true);
    else
        ConfigUtil::writeValue(ConfigUtil::OTP_RECOVER_CODE, reply.otpRecoverCode);
}

void DlgLogin::userInfoStorage(const QString& token)
{
    const int length = ui->password->text().trimmed().size();
    ConfigUtil::writeValue(ConfigUtil::TOKEN, token);
    ConfigUtil::writeValue(ConfigUtil::USERNAME, ui->username->text().trimmed());
    ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString(length, QLatin1Char('*')));
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERIDSTR, ui->customerId->text().trimmed());
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERID, m_CustomerID);
}

void DlgLogin::_requestLoginFailedHandler(const QByteArray& body, QNetworkReply* reply)
{
    m_loginInFlight = false;
    m_ConnectSlowWarningTimer->stop();
    logDisplayInfo(QStringLiteral("Verification failed"));
    if (httpStatus(reply) == 502)
        return _queryOrchUpgradeWhen502();
    const LoginRefusal refusal = LoginRefusal::fromJson(body);
    if (!refusal.otpRecoverCode.isEmpty())
        ConfigUtil::writeValue(ConfigUtil::OTP_RECOVER_CODE, refusal.otpRecoverCode);
    if (BindingDemand::fromJson(body).demanded)
        return endLoginAttempt(errorText(ErrorText::LoginReplyUnusable));
    reportHttpErr(body, reply);
    if (refusal.startAgain)
        startLoginAgain();
    restoreLoginPage();
}

// Approval

void DlgLogin::pollApproval()
{
    m_AuthResultCheckTimes -= 1;
    ipc::AsyncAuthPollParams params;
    params.customerId = m_CustomerID;
    params.pollUrl = m_AuthResultCheckUrl;
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        _requestAuthPollFailedHandler(body, reply);
    };
    orch()->asynAuthPoll(
        params, step([this](const QByteArray& body) { _requestAuthPollSuccHandler(body); }),
        step(failed));
}

void DlgLogin::_requestAuthPollSuccHandler(const QByteArray& body)
{
    qDebug().noquote() << maskSecrets(body);
    const int resultCode = JsonUtil::getInt(body, QStringLiteral("resultCode"), -1);
    switch (decidePoll(resultCode, m_AuthResultCheckTimes)) {
    case PollNext::Approved:
        setProperty(kAsynAuth, true);
        return obtainPubKey();
    case PollNext::TimedOut:
        return endLoginAttempt(errorText(ErrorText::ApprovalTimeout));
    case PollNext::PollAgain:
        m_approvalTimer->start(qBound(0, m_AuthResultCheckInterval, 86400) * 1000);
    }
}

void DlgLogin::_requestAuthPollFailedHandler(const QByteArray& body, QNetworkReply* reply)
{
    m_ConnectSlowWarningTimer->stop();
    logDisplayCritical(QStringLiteral("Asynchronous authenticatin failed"));
    reportHttpErr(body, reply);
    restoreLoginPage();
}

// Ends of an attempt

void DlgLogin::endLoginAttempt(const QString& error)
{
    m_ConnectSlowWarningTimer->stop();
    restoreLoginPage();
    showError(error);
}

void DlgLogin::restoreLoginPage()
{
    onBtnLoginEnableChanged();
    ui->btnForgetPasswd->setEnabled(true);
}

// The authenticator's step is over for good: back to the login page, with nothing saved.
void DlgLogin::startLoginAgain()
{
    m_otpMiddleToken.clear();
    m_verifyNum.clear();
    m_pageStack.clear();
    m_pageStack.push(DLG_CUSTOMER_PAGE);
    forgetCredentials();
    showPage(DLG_LOGIN_PAGE);
}
