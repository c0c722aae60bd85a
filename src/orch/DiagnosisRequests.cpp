#include "orch/DiagnosisRequests.h"

#include "orch/JsonUtil.h"
#include "orch/OrchAddress.h"
#include "orch/RequestParts.h"

using namespace requestparts;

DiagnosisAddress DiagnosisAddress::fromJson(const QJsonObject& json)
{
    const auto text = [&json](const char* key) {
        return JsonUtil::getQString(json, QLatin1String(key), QString());
    };
    return {text("uploadUrl"), text("requestId"), text("logId")};
}

namespace {

OrchRequest tokenPost(const QString& url, const OrchIdentity& identity, const QJsonObject& body)
{
    OrchRequest request = jsonPost(url, identity, body);
    addToken(request, identity.token);
    return request;
}

} // namespace

namespace orchrequest {

OrchRequest diagnosisAddress(const QString& authUrl, const OrchIdentity& identity,
                             const DiagnosisFile& file)
{
    QJsonObject body{{QStringLiteral("customerId"), identity.customerId},
                     {QStringLiteral("sn"), identity.serial},
                     {QStringLiteral("fileName"), file.name},
                     {QStringLiteral("fileSize"), file.size}};
    if (file.trigger)
        body.insert(QStringLiteral("type"), *file.trigger);
    if (file.cpeId != -1)
        body.insert(QStringLiteral("cpeId"), file.cpeId);
    return tokenPost(orchaddress::sibling(authUrl, QStringLiteral("/log/url")), identity, body);
}

OrchRequest diagnosisArchive(const QString& uploadUrl)
{
    OrchRequest request;
    request.method = OrchRequest::Method::Put;
    request.url = QUrl(uploadUrl);
    request.headers.append(
        {QByteArrayLiteral("Content-Type"), QByteArrayLiteral("application/gzip")});
    request.deadlineMs = 0; // it may be large, and a line that has stopped is noticed
    return request;
}

OrchRequest diagnosisReport(const QString& authUrl, const OrchIdentity& identity,
                            const DiagnosisAddress& address, const DiagnosisReport& report)
{
    const QString url = authUrl.contains(QLatin1Char('/'))
                            ? orchaddress::sibling(authUrl, QStringLiteral("/log/result"))
                            : QString();
    return tokenPost(url, identity,
                     {{QStringLiteral("logId"), address.logId},
                      {QStringLiteral("requestId"), address.requestId},
                      {QStringLiteral("errorCode"), report.errorCode},
                      {QStringLiteral("reason"), report.reason},
                      {QStringLiteral("uploaded"), report.uploaded},
                      {QStringLiteral("uploadedTime"), report.uploadedTime}});
}

} // namespace orchrequest
