#include "login/CustomerStep.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "branding/LogoChecker.h"
#include "login/LoginContext.h"
#include "login/LookupReply.h"
#include "login/PrivacyVersion.h"
#include "orch/HttpErrorText.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/OrchReply.h"

#include <QTimer>

namespace {

ipc::OrchIpc* orch()
{
    return ipc::OrchIpc::instance();
}

} // namespace

CustomerStep::CustomerStep(LoginContext& context, QObject* parent)
    : QObject(parent), m_context(context)
{
}

// Privacy agreement

QString CustomerStep::getPrivacyOemVer(const OrchReply& reply) const
{
    return privacyversion::fromJson(reply.json());
}

void CustomerStep::getPrivacyVerFromMain()
{
    m_endedForAgreement = false;
    const auto received = [this](const OrchReply& reply) { onPrimaryPrivacyVersion(reply); };
    const auto refused = [this](const OrchReply& reply) {
        logDisplayInfo(failureCauseText(reply));
        getPrivacyVerFromBackup();
    };
    orch()->getPrivacyVerFromMain(m_context.attempt.step(received),
                                  m_context.attempt.step(refused));
}

void CustomerStep::onPrimaryPrivacyVersion(const OrchReply& reply)
{
    qDebug().noquote() << "Request privacy version from main server:" << maskSecrets(reply.body);
    m_PrivacyVersion = getPrivacyOemVer(reply);
    const privacyversion::Decision decision = privacyversion::afterPrimary(
        m_PrivacyVersion, ConfigUtil::savedText(ConfigUtil::PRIVACY_VERSION));
    keepPrivacyVersion(decision.saved);
    switch (decision.next) {
    case privacyversion::Next::AskBackup:
        return getPrivacyVerFromBackup();
    case privacyversion::Next::GoOn:
        return verifyCustomerId();
    case privacyversion::Next::Prompt:
        m_endedForAgreement = true;
        return emit agreementNeeded();
    }
}

// Its answer counts whatever the login has come to meanwhile: the agreement concerns every login.
void CustomerStep::getPrivacyVerFromBackup()
{
    const auto received = [this](const OrchReply& reply) { onBackupPrivacyVersion(reply); };
    const auto refused = [](const OrchReply& reply) {
        qDebug().noquote() << "get privacy version from backup server failed"
                           << failureLogText(reply, QStringLiteral(" "));
    };
    orch()->getPrivacyVerFromBackup(m_alive.step(received), refused);
    verifyCustomerId();
}

void CustomerStep::onBackupPrivacyVersion(const OrchReply& reply)
{
    qDebug().noquote() << "Request privacy version from backup server:" << maskSecrets(reply.body);
    m_PrivacyVersion = getPrivacyOemVer(reply);
    const privacyversion::Decision decision = privacyversion::afterBackup(
        m_PrivacyVersion, ConfigUtil::savedText(ConfigUtil::PRIVACY_VERSION));
    keepPrivacyVersion(decision.saved);
    if (decision.next == privacyversion::Next::Prompt)
        emit agreementNeeded();
}

void CustomerStep::keepPrivacyVersion(const QString& version)
{
    if (version != ConfigUtil::savedText(ConfigUtil::PRIVACY_VERSION))
        ConfigUtil::writeValue(ConfigUtil::PRIVACY_VERSION, version);
}

void CustomerStep::keepAgreement(const QString& version)
{
    m_context.m_AgreePolicyNow = true;
    ConfigUtil::writeValue(ConfigUtil::AGREE_PRIVACY, 1);
    ConfigUtil::writeValue(ConfigUtil::PRIVACY_VERSION,
                           version.isEmpty() ? privacyversion::kNewest : version);
    logDisplayInfo(tr("Agree to privacy policy"));
}

// Orchestrator lookup

void CustomerStep::verifyCustomerId()
{
    m_context.verifyingCustomer = true;
    m_asked = m_context.fields().customerId;
    const auto received = [this](const OrchReply& reply) { onCustomerVerified(reply); };
    const auto refused = [this](const OrchReply& reply) {
        logDisplayInfo(
            tr("Failed to get authentication URL: %1 statuscode %2 orch return text %3")
                .arg(reply.errorString, QString::number(reply.status), maskSecrets(reply.body)));
        logDisplayInfo(tr("Try to get authentication URL again"));
        verifyCustomerIdUsingBackUrl();
    };
    orch()->verifyCustomerId(m_asked, m_context.attempt.step(received),
                             m_context.attempt.step(refused));
}

void CustomerStep::verifyCustomerIdUsingBackUrl()
{
    const auto received = [this](const OrchReply& reply) { onCustomerVerified(reply); };
    const auto refused = [this](const OrchReply& reply) { emit failed(reply); };
    orch()->verifyCustomerIdUsingBackUrl(m_asked, m_context.attempt.step(received),
                                         m_context.attempt.step(refused));
}

void CustomerStep::onCustomerVerified(const OrchReply& reply)
{
    emit verified();
    const QString authUrl = parseResultAndSaveUrl(reply);
    m_context.loadErrorResource(authUrl);
    orch()->setMainAuthUrl(authUrl);
    _authConfig([this] { emit done(); });
}

QString CustomerStep::parseResultAndSaveUrl(const OrchReply& reply)
{
    logDisplayInfo(tr("Original URL is ") + maskSecrets(reply.body));
    const LookupReply found = LookupReply::fromJson(reply.json());
    const QString typed = m_asked.trimmed();
    QString& customer = m_context.m_CustomerID;
    customer = customerIdOf(found, typed, customer);

    const bool changed = customer != ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERID, customer);
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERIDSTR, typed);
    if (changed) {
        ConfigUtil::writeValue(ConfigUtil::USERNAME, QString());
        emit customerChanged();
    }

    const QString authUrl = authUrlOf(found.orchDomain);
    if (!authUrl.isEmpty()) {
        logDisplayInfo(tr("Converted url is ") + authUrl);
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, authUrl);
    }
    return authUrl;
}

// Authentication configuration

void CustomerStep::_authConfig(const std::function<void()>& next)
{
    const auto goOn = [this, next] { QTimer::singleShot(0, this, m_context.attempt.step(next)); };
    const auto received = [this, next, goOn](const OrchReply& reply) {
        const bool forget = reply.json().value(QLatin1String("enableForgetPassword")).toBool();
        ConfigUtil::writeValue(ConfigUtil::SUPPORT_FORGET_PASSWORD, forget);
        emit forgetPasswordSupported(forget);
        if (reply.json().value(QLatin1String("supportCusResource")).toBool())
            LogoChecker::instance()->downloadCusResource(m_context.m_CustomerID,
                                                         m_context.attempt.step(next));
        else
            goOn();
    };
    const auto refused = [this, goOn](const OrchReply& reply) {
        qDebug().noquote() << "receive auth config content: " << maskSecrets(reply.body);
        if (reply.status == 502)
            emit badGateway();
        else
            goOn();
    };
    orch()->authConfig(m_context.m_CustomerID, m_context.attempt.step(received),
                       m_context.attempt.step(refused));
}
