#include "orch/RequestParts.h"

#include "app/Product.h"

#include <QJsonDocument>

namespace {

using Method = OrchRequest::Method;

constexpr char kJson[] = "application/json";
constexpr char kForm[] = "application/x-www-form-urlencoded";

OrchRequest customerPost(const QString& url, const OrchIdentity& identity, const char* contentType,
                         const QByteArray& body)
{
    OrchRequest request = requestparts::makeRequest(Method::Post, url, identity.serial);
    requestparts::addCustomer(request, identity.customerId);
    request.headers.prepend({QByteArrayLiteral("Content-Type"), contentType});
    request.body = body;
    return request;
}

QByteArray compact(const QJsonObject& body)
{
    return QJsonDocument(body).toJson(QJsonDocument::Compact);
}

} // namespace

namespace requestparts {

QString version()
{
    return QString::fromLatin1(product::kVersion);
}

QString model()
{
    return QString::fromLatin1(product::kModel);
}

OrchRequest makeRequest(Method method, const QString& url, const QString& serial)
{
    OrchRequest request;
    request.method = method;
    request.url = QUrl(url);
    request.headers.append({QByteArrayLiteral("sn"), serial.toUtf8()});
    return request;
}

void addCustomer(OrchRequest& request, const QString& customerId)
{
    request.headers.append({QByteArrayLiteral("customerId"), customerId.toUtf8()});
}

void addType(OrchRequest& request)
{
    request.headers.append({QByteArrayLiteral("type"), QByteArray(product::kModel)});
}

void addToken(OrchRequest& request, const QString& token)
{
    request.headers.append({QByteArrayLiteral("X-TQ-AUTH-HEADER"), token.toUtf8()});
}

OrchRequest emptyPost(const QString& url, const OrchIdentity& identity)
{
    return customerPost(url, identity, kJson, QByteArray());
}

OrchRequest jsonPost(const QString& url, const OrchIdentity& identity, const QJsonObject& body)
{
    return customerPost(url, identity, kJson, compact(body));
}

void setJson(OrchRequest& request, const QJsonObject& body)
{
    request.headers.prepend({QByteArrayLiteral("Content-Type"), kJson});
    request.body = compact(body);
}

OrchRequest sessionPost(const QString& url, const OrchIdentity& identity, const QJsonObject& body)
{
    OrchRequest request = jsonPost(url, identity, body);
    addToken(request, identity.token);
    addType(request);
    return request;
}

OrchRequest formPost(const QString& url, const OrchIdentity& identity, const Fields& fields)
{
    QByteArray body;
    for (const auto& field : fields) {
        if (!body.isEmpty())
            body += '&';
        body += QUrl::toPercentEncoding(field.first) + '=' + QUrl::toPercentEncoding(field.second);
    }
    return customerPost(url, identity, kForm, body);
}

qint64 numericId(const QString& customerId)
{
    return customerId.toLongLong();
}

void setUnlessEmpty(QJsonObject& body, const char* key, const QString& value)
{
    if (!value.isEmpty())
        body.insert(QLatin1String(key), value);
}

} // namespace requestparts
