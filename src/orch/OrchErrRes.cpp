#include "orch/OrchErrRes.h"

#include "app/ConfigUtil.h"
#include "app/Platform.h"
#include "orch/HostIdentity.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchRequest.h"
#include "orch/OrchRequests.h"
#include "orch/TextUtil.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QtDebug>

namespace {

// Larger ones are no error texts, and would burden every change of the settings.
constexpr int kLargestDocument = 1 << 20;

constexpr int kTransferTimeoutMs = 40000;

/// A published resource.
struct ResourceAddress
{
    QString version;
    QString url;

    static ResourceAddress in(const QJsonObject& object)
    {
        return {
            JsonUtil::getQString(object, QStringLiteral("errorResourceVersion"), QString()),
            JsonUtil::getQString(object, QStringLiteral("errorResourceDownloadUrl"), QString())};
    }
};

QJsonObject parametersOf(const QJsonObject& body)
{
    return JsonUtil::getObject(body, QStringLiteral("parameters"));
}

bool isHttp(const QUrl& url)
{
    return url.isValid() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https"));
}

QString invalidCustomerText(bool chinese)
{
    return chinese ? QStringLiteral("Customer ID 不正确，请重新输入或联系网络管理员。")
                   : QStringLiteral("Invalid Customer ID. Please enter again or contact your "
                                    "network administrator.");
}

} // namespace

OrchErrRes* OrchErrRes::m_pInstance = nullptr;

OrchErrRes* OrchErrRes::getInstance()
{
    if (!m_pInstance) {
        m_pInstance = new OrchErrRes;
        m_pInstance->init();
        qAddPostRoutine(&OrchErrRes::release);
    }
    return m_pInstance;
}

void OrchErrRes::release()
{
    qRemovePostRoutine(&OrchErrRes::release);
    delete m_pInstance;
    m_pInstance = nullptr;
}

OrchErrRes::OrchErrRes() = default;
OrchErrRes::~OrchErrRes() = default;

void OrchErrRes::init()
{
    version.clear();
    downVersion.clear();
}

void OrchErrRes::start(const OrchRequest& request)
{
    if (!m_NetMgr) {
        m_NetMgr = makeAccessManager(this);
        m_NetMgr->setTransferTimeout(kTransferTimeoutMs);
    }
    sendOrchRequest(*m_NetMgr, request,
                    m_alive.step([this](const OrchReply& reply) { netReply(reply); }));
}

void OrchErrRes::setCustomerId(const QString& customerId)
{
    m_customerId = customerId;
}

bool OrchErrRes::isComplete() const
{
    return !mapCn.isEmpty() && !mapEn.isEmpty();
}

void OrchErrRes::loadRes(const QString& path, const QString& authUrl)
{
    if (!version.isEmpty() && isComplete())
        return;
    const QString storedVersion = ConfigUtil::savedText(ConfigUtil::ORCH_ERROR_VERSION);
    const QString storedRes = ConfigUtil::savedText(ConfigUtil::ORCH_ERROR_RES);
    if (!storedVersion.isEmpty() && !storedRes.isEmpty()) {
        updateMemoryRes(JsonUtil::object(storedRes.toUtf8()));
        version = storedVersion;
    }
    updateResFromOrch(path, authUrl);
}

void OrchErrRes::updateResFromOrch(const QString& path, const QString& authUrl)
{
    const QString root = authUrl.isEmpty() ? ConfigUtil::savedText(ConfigUtil::AUTHURL) : authUrl;
    start(orchrequest::errorResourceAddress(root, path,
                                            {Util::getSerial(), m_customerId, QString()}));
}

void OrchErrRes::downloadAndUpdaeRes(const QJsonObject& body)
{
    ResourceAddress address = ResourceAddress::in(body);
    if (address.version.isEmpty() && address.url.isEmpty())
        address = ResourceAddress::in(parametersOf(body));
    if (address.version == version && isComplete())
        return;
    if (m_downloading && address.version == downVersion)
        return;
    const QUrl url(address.url);
    if (!isHttp(url)) {
        qDebug().noquote() << "No orch error resource to download at" << url.toDisplayString();
        return;
    }
    downVersion = address.version;
    OrchRequest request = orchrequest::errorResourceDocument(address.url, Util::getSerial());
    request.userData = downVersion; // another download may have started by the time this one ends
    m_downloading = true;
    start(request);
}

void OrchErrRes::saveResToLocal(const QString& res, const QString& resVersion)
{
    ConfigUtil::writeValue(ConfigUtil::ORCH_ERROR_RES, res);
    ConfigUtil::writeValue(ConfigUtil::ORCH_ERROR_VERSION, resVersion);
    version = resVersion;
}

void OrchErrRes::updateMemoryRes(const QJsonObject& document)
{
    mapCn.clear();
    mapEn.clear();
    m_mapVersionLow.clear();
    for (const QJsonValue& member : document) {
        const QJsonObject entry = member.toObject();
        if (!entry.value(QStringLiteral("error_Code")).isDouble())
            continue;
        const int code = JsonUtil::getInt(entry, QStringLiteral("error_Code"), 0);
        const QJsonObject texts = JsonUtil::getObject(entry, QStringLiteral("error_Desc"));
        mapEn.insert(code, JsonUtil::getQString(texts, QStringLiteral("en"), QString()));
        mapCn.insert(code, JsonUtil::getQString(texts, QStringLiteral("cn"), QString()));
        m_mapVersionLow.insert(code,
                               JsonUtil::getBool(entry, QStringLiteral("clientVersionLow"), false));
    }
}

bool OrchErrRes::isVersionLow(int code) const
{
    return m_mapVersionLow.value(code, false);
}

QString OrchErrRes::getOrchErrContent(const OrchReply& reply)
{
    const int code = JsonUtil::getInt(reply.json(), QStringLiteral("code"), -1);
    if (code == -1)
        return QString();
    const ResourceAddress address = ResourceAddress::in(parametersOf(reply.json()));
    if (!address.version.isEmpty() && !address.url.isEmpty() &&
        (address.version != version || !isComplete()))
        downloadAndUpdaeRes(reply.json());
    const bool chinese = platform().isChinese();
    const QString text = chinese ? mapCn.value(code) : mapEn.value(code);
    return renderOrchError(reply.json(), text, isVersionLow(code), chinese);
}

// Downloads carry a mark, their version; an address, which the service chooses, tells nothing.
void OrchErrRes::netReply(const OrchReply& reply)
{
    if (reply.userData.isValid())
        documentReply(reply);
    else
        addressReply(reply);
}

void OrchErrRes::addressReply(const OrchReply& reply)
{
    if (reply.answered()) {
        qDebug("Succeeded in obtaining orch error resource url");
        return downloadAndUpdaeRes(reply.json());
    }
    qDebug().noquote().nospace() << "Failed to get resource file of orch: "
                                 << " statuscode " << reply.status << " orch return text "
                                 << maskSecrets(reply.body);
}

void OrchErrRes::documentReply(const OrchReply& reply)
{
    if (reply.userData.toString() != downVersion)
        return; // a newer download is under way
    m_downloading = false;
    // A login page of the network in between answers 200 as well.
    const bool isDocument =
        reply.body.size() <= kLargestDocument && QJsonDocument::fromJson(reply.body).isObject();
    if (!reply.answered() || !isDocument) {
        qDebug().noquote().nospace()
            << "Failed to download orch resource: "
            << " statuscode " << reply.status << " orch return text " << maskSecrets(reply.body);
        return;
    }
    saveResToLocal(QString::fromUtf8(reply.body), downVersion);
    updateMemoryRes(reply.json());
}

QString renderOrchError(const QJsonObject& body, const QString& resourceText, bool versionLow,
                        bool chinese)
{
    const int code = JsonUtil::getInt(body, QStringLiteral("code"), -1);
    if (code == -1)
        return QString();
    QString text = resourceText;
    if (code == orchcode::kInvalidCustomerId)
        text = invalidCustomerText(chinese);
    if (code == orchcode::kLockedForDuration) {
        const int duration = JsonUtil::getInt(body, QStringLiteral("duration"), 30);
        text.replace(QStringLiteral("30"), QString::number(duration));
    }
    if (text.isEmpty())
        text = JsonUtil::getQString(body, QStringLiteral("message"), QString());
    return Util::oneLine(versionLow ? text : QString::number(code) + QLatin1Char(' ') + text);
}
