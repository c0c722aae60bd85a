// The customer step: from the customer ID to the login page, one request after the other.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "login/DialogPrivacy.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "login/LookupReply.h"
#include "login/PrivacyVersion.h"
#include "orch/ErrorCatalogue.h"
#include "orch/HttpErrorText.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchIpc.h"
#include "orch/ReplyFacts.h"
#include "orch/Util.h"
#include "widgets/DialogFrame.h"
#include "widgets/WidgetTopPrompt.h"

#include <QLabel>
#include <QLineEdit>
#include <QNetworkReply>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace {

const QString kErrorResourcePath = QStringLiteral("s/mobile/error/resource/url");

// A dialog is not opened from within the callback of a request.
constexpr int kPrivacyDelayMs = 20;

ipc::OrchIpc* orch()
{
    return ipc::OrchIpc::instance();
}

QString savedText(const QString& key)
{
    return ConfigUtil::getvalue(key, QString()).toString();
}

} // namespace

void DlgLogin::on_btnContinue_clicked()
{
    if (!ui->btnContinue->isEnabled())
        return; // Return was pressed while the step is running
    m_loginBreak = true;
    beginAttempt();
    promptWidge->hidePrompt();
    ui->customerId->setText(Util::removeUnvisibleUnicode(ui->customerId->text()));
    ui->username->clear();
    ui->password->clear();
    onBtnLoginEnableChanged();
    if (ui->customerId->text().isEmpty())
        return showError(errorText(ErrorText::CustomerPageIncomplete));
    if (m_showUpgradeDialog)
        return changeCurPage(DLG_LOGIN_PAGE);
    ui->btnContinue->setEnabled(false);
    ui->btnContinue->setText(tr("Continue..."));
    m_ConnectSlowWarningTimer->start();
    getPrivacyVerFromMain();
}

// Privacy agreement

QString DlgLogin::getPrivacyOemVer(const QByteArray& body) const
{
    return privacyversion::fromJson(body);
}

void DlgLogin::getPrivacyVerFromMain()
{
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        logDisplayInfo(
            failureCauseText(HttpFailure::of(body, reply), QStringLiteral("Error Info: ")));
        getPrivacyVerFromBackup();
    };
    orch()->getPrivacyVerFromMain(
        step([this](const QByteArray& body) { onPrimaryPrivacyVersion(body); }), step(failed));
}

void DlgLogin::onPrimaryPrivacyVersion(const QByteArray& body)
{
    qDebug().noquote() << "Request privacy version from main server:" << maskSecrets(body);
    m_PrivacyVersion = getPrivacyOemVer(body);
    const privacyversion::Decision decision =
        privacyversion::afterPrimary(m_PrivacyVersion, savedText(ConfigUtil::PRIVACY_VERSION));
    keepPrivacyVersion(decision.saved);
    switch (decision.next) {
    case privacyversion::Next::AskBackup:
        return getPrivacyVerFromBackup();
    case privacyversion::Next::GoOn:
        return verifyCustomerId();
    case privacyversion::Next::Prompt:
        return showPrivacyLater();
    }
}

void DlgLogin::getPrivacyVerFromBackup()
{
    const auto failed = [](const QByteArray& body, QNetworkReply* reply) {
        qDebug().noquote() << "get privacy version from backup server failed"
                           << failureLogText(HttpFailure::of(body, reply), QStringLiteral(" "));
    };
    orch()->getPrivacyVerFromBackup(
        step([this](const QByteArray& body) { onBackupPrivacyVersion(body); }), failed);
    verifyCustomerId();
}

void DlgLogin::onBackupPrivacyVersion(const QByteArray& body)
{
    qDebug().noquote() << "Request privacy version from backup server:" << maskSecrets(body);
    m_PrivacyVersion = getPrivacyOemVer(body);
    const privacyversion::Decision decision =
        privacyversion::afterBackup(m_PrivacyVersion, savedText(ConfigUtil::PRIVACY_VERSION));
    keepPrivacyVersion(decision.saved);
    if (decision.next == privacyversion::Next::Prompt)
        showPrivacyLater();
}

void DlgLogin::keepPrivacyVersion(const QString& version)
{
    if (version != savedText(ConfigUtil::PRIVACY_VERSION))
        ConfigUtil::writeValue(ConfigUtil::PRIVACY_VERSION, version);
}

void DlgLogin::showPrivacyLater()
{
    QTimer::singleShot(kPrivacyDelayMs, this, &DlgLogin::showPrivacy);
}

void DlgLogin::showPrivacy()
{
    if (findChild<DialogPrivacy*>())
        return;
    const QString shown = m_PrivacyVersion;
    m_ConnectSlowWarningTimer->stop(); // reading takes its time
    const QPointer<DlgLogin> alive(this);
    auto* dialog = new DialogPrivacy(this);
    dialog->setPrivacyVersion(shown);
    const bool agreed = runAndDelete(dialog);
    if (!alive)
        return;
    if (!agreed)
        return reject();

    activateWindow(); // the fields take the keyboard again
    m_AgreePolicyNow = true;
    ConfigUtil::writeValue(ConfigUtil::AGREE_PRIVACY, 1);
    ConfigUtil::writeValue(ConfigUtil::PRIVACY_VERSION,
                           shown.isEmpty() ? privacyversion::kNewest : shown);
    logDisplayInfo(QStringLiteral("Agree to privacy policy"));

    if (result() == QDialog::Accepted)
        return; // the chain went on beside the dialog and has ended the login

    const QString mask = savedText(ConfigUtil::PASSWORD);
    const bool savedAccount = !savedText(ConfigUtil::CUSTOMERID).isEmpty() &&
                              !savedText(ConfigUtil::USERNAME).isEmpty() &&
                              !(mask.isEmpty() && ui->password->text().isEmpty());
    if (!savedAccount) {
        // The step that asked for the agreement has ended here: Continue starts it again.
        return _resetAllBtnStyle();
    }
    onBtnLoginEnableChanged();
    logDisplayInfo(QStringLiteral("Get privacy version again"));
    getPrivacyVerFromMain();
}

// Orchestrator lookup

void DlgLogin::verifyCustomerId()
{
    m_verifyingCustomer = true;
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        logDisplayInfo(QStringLiteral("Failed to get authentication URL: %1 statuscode %2 orch "
                                      "return text %3")
                           .arg(HttpFailure::of(body, reply).errorString,
                                QString::number(httpStatus(reply)), maskSecrets(body)));
        logDisplayInfo(QStringLiteral("Try to get authentication URL again"));
        verifyCustomerIdUsingBackUrl();
    };
    orch()->verifyCustomerId(ui->customerId->text(),
                             step([this](const QByteArray& body) { onCustomerVerified(body); }),
                             step(failed));
}

void DlgLogin::verifyCustomerIdUsingBackUrl()
{
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        m_ConnectSlowWarningTimer->stop();
        restoreContinue();
        reportHttpErr(body, reply);
    };
    orch()->verifyCustomerIdUsingBackUrl(
        ui->customerId->text(), step([this](const QByteArray& body) { onCustomerVerified(body); }),
        step(failed));
}

void DlgLogin::onCustomerVerified(const QByteArray& body)
{
    m_ConnectSlowWarningTimer->stop();
    showCustomerId();
    const QString authUrl = parseResultAndSaveUrl(body);
    loadErrorResource(authUrl);
    orch()->setMainAuthUrl(authUrl);
    _authConfig(QStringLiteral("checkUpgrade"));
}

QString DlgLogin::parseResultAndSaveUrl(const QByteArray& body)
{
    logDisplayInfo(QStringLiteral("Original URL is ") + maskSecrets(body));
    const LookupReply reply = LookupReply::fromJson(body);
    const QString typed = ui->customerId->text().trimmed();
    m_CustomerID = customerIdOf(reply, typed, m_CustomerID);

    const bool changed = m_CustomerID != savedText(ConfigUtil::CUSTOMERID);
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERID, m_CustomerID);
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERIDSTR, typed);
    if (changed) {
        forgetCredentials();
        ConfigUtil::writeValue(ConfigUtil::USERNAME, QString());
        m_EmptyPass = true;
    }

    const QString authUrl = authUrlOf(reply.orchDomain);
    if (!authUrl.isEmpty()) {
        logDisplayInfo(QStringLiteral("Converted url is ") + authUrl);
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, authUrl);
    }
    return authUrl;
}

void DlgLogin::loadErrorResource(const QString& authUrl)
{
    m_OrchErrRes->setCustomerId(m_CustomerID);
    m_OrchErrRes->loadRes(kErrorResourcePath, authUrl);
}

// Authentication configuration

void DlgLogin::_authConfig(const QString& next)
{
    const auto received = [this, next](const QByteArray& body) {
        const QJsonObject config = JsonUtil::object(body);
        const bool forget = config.value(QLatin1String("enableForgetPassword")).toBool(false);
        offerForgetPassword(forget);
        ConfigUtil::writeValue(ConfigUtil::SUPPORT_FORGET_PASSWORD, forget);
        invokeNext(next);
    };
    const auto failed = [this, next](const QByteArray& body, QNetworkReply* reply) {
        qDebug().noquote() << "receive auth config content: " << maskSecrets(body);
        if (httpStatus(reply) == 502)
            return _queryOrchUpgradeWhen502();
        invokeNext(next);
    };
    orch()->authConfig(m_CustomerID, step(received), step(failed));
}

void DlgLogin::invokeNext(const QString& next)
{
    if (next.isEmpty())
        return;
    QTimer::singleShot(0, this, step([this, next] {
                           QMetaObject::invokeMethod(this, next.toLatin1().constData(),
                                                     Qt::DirectConnection);
                       }));
}

// End of an earlier session

void DlgLogin::signoutNotifyOrch(ipc::DisconnectTypeReason reason)
{
    ipc::SignoutParams params;
    params.token = savedText(ConfigUtil::TOKEN);
    params.customerId = savedText(ConfigUtil::CUSTOMERID);
    params.reason = reason;
    ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
    orch()->signoutNotifyOrch(
        params, [](const QByteArray&) { qDebug("signoutNotifyOrch success."); },
        [](const QByteArray& body, QNetworkReply*) {
            qDebug().noquote() << "signoutNotifyOrch failed with reply:" << maskSecrets(body);
        });
}
