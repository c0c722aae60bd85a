#include "branding/LogoChecker.h"

#include "app/LogMarker.h"
#include "app/OtherUser.h"
#include "app/Platform.h"
#include "branding/LogoCache.h"
#include "branding/LogoPicture.h"
#include "orch/ErrorCatalogue.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchIpc.h"
#include "orch/OrchRequest.h"
#include "orch/OrchRequests.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QTimer>

#include <utility>

namespace {

LogoChecker* s_instance = nullptr;

QString cacheFolder()
{
    return platform().programFile(QStringLiteral("logores"));
}

} // namespace

LogoChecker* LogoChecker::instance()
{
    if (!s_instance) {
        s_instance = new LogoChecker;
        // Pictures and network machinery must be gone before the application object is.
        qAddPostRoutine([] { delete std::exchange(s_instance, nullptr); });
    }
    return s_instance;
}

LogoCache LogoChecker::cache() const
{
    return {cacheFolder(), m_customerId};
}

void LogoChecker::clearLogoInfo()
{
    m_attempt.begin();
    m_nextStep = nullptr;
    m_logoInfos.clear();
}

// List

void LogoChecker::downloadCusResource(const QString& customerId, const std::function<void()>& next)
{
    m_attempt.begin(); // the pictures of an earlier attempt stay until a list takes their place
    m_customerId = customerId;
    m_nextStep = next;
    ipc::OrchIpc::instance()->getCustomerLogo(
        customerId, m_attempt.step([this](const OrchReply& reply) { onList(reply); }),
        m_attempt.step([this](const OrchReply& reply) { onListFailed(reply); }));
}

void LogoChecker::onList(const OrchReply& reply)
{
    parseFromJson(reply.body);
    checkLogo();
}

void LogoChecker::onListFailed(const OrchReply& reply)
{
    logDisplayDebug(QStringLiteral("receive download customer logo resource content: ") +
                    maskSecrets(reply.body));
    if (reply.error == QNetworkReply::TimeoutError ||
        reply.error == QNetworkReply::OperationCanceledError || reply.body.isEmpty()) {
        logDisplayWarning(errorText(ErrorText::OrchTimeout));
        usingCacheLogo();
    } else {
        m_logoInfos.clear();
    }
    goOn();
}

void LogoChecker::parseFromJson(const QByteArray& body)
{
    bool isJson = false;
    const std::optional<LogoInfos> list = parseLogoList(body, isJson);
    if (list)
        m_logoInfos = *list;
    else if (isJson)
        qDebug().noquote() << "The content received from getCustomerLogoUrl is invalid json array. "
                           << maskSecrets(body);
}

// Each logo

void LogoChecker::checkLogo()
{
    logDisplayInfo(tr("Check for custom Logo."));
    cache().create();
    QList<const LogoInfo*> missing;
    for (LogoInfo& info : m_logoInfos) {
        if (!info.isSucc)
            logDisplayWarning(
                tr("Orchestrator cannot generate a customized logo resource download URL."));
        else if (!loadCached(info) && !info.isSettled())
            missing.append(&info);
    }
    if (missing.isEmpty()) {
        qInfo("Custom Logo is up to date.");
        return goOn();
    }
    for (const LogoInfo* info : qAsConst(missing))
        downloadLogo(info->url, info->clientName);
}

// False: the cache has another file, or none.
bool LogoChecker::loadCached(LogoInfo& info) const
{
    const QByteArray file = cache().read(info.clientName);
    if (logoMd5(file) != info.md5)
        return false;
    load(info, file);
    return true;
}

// A file that is as it should be and shows no picture is not asked for again.
void LogoChecker::load(LogoInfo& info, const QByteArray& file)
{
    info.pixmap = logopicture::read(file);
    if (info.pixmap.isNull())
        info.retryCount = LogoInfo::kAttempts;
}

void LogoChecker::downloadLogo(const QString& url, const QString& clientName)
{
    if (!m_manager)
        m_manager = makeAccessManager(this);
    OrchRequest request = orchrequest::logoFile(url, storedIdentity(m_customerId));
    request.mostBytes = logopicture::kMostBytes;
    request.userData = clientName;
    sendOrchRequest(*m_manager, request,
                    m_attempt.step([this](const OrchReply& reply) { onFinished(reply); }));
}

void LogoChecker::onFinished(const OrchReply& reply)
{
    LogoInfo& info = m_logoInfos[reply.userData.toString()];
    if (reply.answered()) {
        onDownloaded(info, reply.body);
    } else {
        qWarning().noquote() << QStringLiteral("Failed to download file %1. Error code %2")
                                    .arg(info.clientName, QString::number(reply.status));
        retry(info);
    }
    checkLogoStatus();
}

void LogoChecker::onDownloaded(LogoInfo& info, const QByteArray& file)
{
    if (logoMd5(file) != info.md5) {
        qWarning().noquote()
            << QStringLiteral("MD5 checksum failed on the file %1.").arg(info.clientName);
        return retry(info);
    }
    qInfo().noquote() << QStringLiteral("File %1 download successfully.").arg(info.clientName);
    if (!cache().write(info.clientName, file)) {
        qWarning().noquote() << "The file" << info.clientName << "was not kept.";
        warnOfOtherOwner(cacheFolder());
    }
    load(info, file);
}

void LogoChecker::retry(LogoInfo& info)
{
    if (++info.retryCount < LogoInfo::kAttempts)
        downloadLogo(info.url, info.clientName);
}

// End

void LogoChecker::checkLogoStatus()
{
    for (const LogoInfo& info : qAsConst(m_logoInfos)) {
        if (!info.isSettled())
            return;
    }
    goOn();
}

void LogoChecker::usingCacheLogo()
{
    m_logoInfos.clear();
    for (const char* name : {kRoundLogo, kMainLogo}) {
        LogoInfo& info = m_logoInfos[QLatin1String(name)];
        info.isSucc = true;
        info.pixmap = logopicture::read(cache().read(QLatin1String(name)));
    }
}

void LogoChecker::goOn()
{
    const std::function<void()> next = std::move(m_nextStep);
    m_nextStep = nullptr;
    for (LogoInfo& info : m_logoInfos)
        info.retryCount = 0;
    if (next)
        QTimer::singleShot(0, this, m_attempt.step(next));
}

QPixmap LogoChecker::logoPixmap(const QString& clientName) const
{
    return m_logoInfos.value(clientName).pixmap;
}
