#include "Requests.h"

#include "sim/Simulator.h"

#include <QDateTime>
#include <QEventLoop>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkAccessManager>

#include <openssl/evp.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>

namespace {

const QByteArray kSerial = "0123456789ABCDE0123456789ABCDE01";
const QByteArray kJson = "application/json";
const QByteArray kForm = "application/x-www-form-urlencoded";

QJsonObject clientInfo()
{
    return {{"internalIp", "192.168.1.20/24,10.8.0.2/32"},
            {"deviceName", "Maker"},
            {"deviceType", ""},
            {"opsType", "debian"},
            {"opsVersion", "12(kernel 6.1.0)"},
            {"hostName", "desk"},
            {"sn", QString::fromLatin1(kSerial)},
            {"osArchitecture", "X86"},
            {"clientType", "Veltaro"}};
}

QJsonObject connectBody()
{
    return {{"deviceModel", "linux"},
            {"mobileVersion", "6.1.20"},
            {"sn", QString::fromLatin1(kSerial)},
            {"deviceSupportMode", "native"},
            {"internalIp", "192.168.1.20"},
            {"mobileActionLogType", 1},
            {"supportFeature", QJsonObject{{"supportHttps", true},
                                           {"supportHeartBeat", true},
                                           {"supportIpFilterDownloadUrlV2", true},
                                           {"supportCheckToken", true}}}};
}

} // namespace

QJsonObject Request::json() const
{
    return QJsonDocument::fromJson(body).object();
}

void Request::setJson(const QJsonObject& object)
{
    body = QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QJsonObject Answer::json() const
{
    return QJsonDocument::fromJson(body).object();
}

Answer send(const Request& request)
{
    QNetworkAccessManager manager;
    QNetworkRequest wire(request.url);
    for (auto it = request.headers.begin(); it != request.headers.end(); ++it)
        wire.setRawHeader(it.key(), it.value());
    QNetworkReply* reply = manager.sendCustomRequest(wire, request.method, request.body);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    Answer answer;
    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    answer.error = reply->error();
    answer.body = reply->readAll();
    answer.location = reply->rawHeader("Location");
    return answer;
}

QByteArray encrypt(const QByteArray& text, const QByteArray& publicKey, bool oaep)
{
    const QByteArray der = QByteArray::fromBase64(publicKey);
    const auto* bytes = reinterpret_cast<const unsigned char*>(der.constData());
    EVP_PKEY* key = d2i_PUBKEY(nullptr, &bytes, der.size());
    EVP_PKEY_CTX* context = EVP_PKEY_CTX_new(key, nullptr);
    EVP_PKEY_encrypt_init(context);
    EVP_PKEY_CTX_set_rsa_padding(context, oaep ? RSA_PKCS1_OAEP_PADDING : RSA_PKCS1_PADDING);
    if (oaep) {
        EVP_PKEY_CTX_set_rsa_oaep_md(context, EVP_sha256());
        EVP_PKEY_CTX_set_rsa_mgf1_md(context, EVP_sha256());
    }
    QByteArray cipher(EVP_PKEY_size(key), '\0');
    auto size = static_cast<size_t>(cipher.size());
    EVP_PKEY_encrypt(context, reinterpret_cast<unsigned char*>(cipher.data()), &size,
                     reinterpret_cast<const unsigned char*>(text.constData()),
                     static_cast<size_t>(text.size()));
    EVP_PKEY_CTX_free(context);
    EVP_PKEY_free(key);
    return cipher.left(static_cast<int>(size)).toBase64();
}

Change member(const QString& name, const QJsonValue& value)
{
    return [=](Request& request) {
        QJsonObject json = request.json();
        if (value.isUndefined())
            json.remove(name);
        else
            json.insert(name, value);
        request.setJson(json);
    };
}

Client::Client(sim::Simulator& simulator, int customerId)
    : m_simulator(simulator), m_customerId(customerId)
{
}

Request Client::make(const QByteArray& method, const QString& path,
                     const QByteArray& contentType) const
{
    Request request;
    request.method = method;
    request.url = QUrl(m_simulator.orchRoot() + path);
    request.headers = {{"sn", kSerial}, {"customerId", QByteArray::number(m_customerId)}};
    if (!contentType.isEmpty())
        request.headers.insert("Content-Type", contentType);
    return request;
}

Request Client::withToken(const QString& path, const QJsonObject& body) const
{
    Request request = make("POST", path, kJson);
    request.headers.insert("type", "linux");
    request.headers.insert("X-TQ-AUTH-HEADER", token);
    request.setJson(body);
    return request;
}

Request Client::request(const QString& name) const
{
    const QString v2 = QStringLiteral("/api/mobile/v2/");
    const QString serial = QString::fromLatin1(kSerial);
    Request request;
    if (name == "lookup" || name == "lookup backup") {
        request = make("POST", {}, kForm);
        request.url = QUrl(name == "lookup" ? m_simulator.primaryUrl() : m_simulator.backupUrl());
        request.headers["customerId"] = typedCustomer;
        request.body = "customerId=" + typedCustomer + "&sn=" + kSerial + "&model=linux";
    } else if (name == "privacy") {
        request = make("GET", {}, {});
        request.url = QUrl(m_simulator.primaryUrl().section("/api", 0, 0) +
                           "/static/version/privacyversion.json");
        request.headers.remove("customerId");
    } else if (name == "key") {
        request = make("GET", "/s/mobile/pubkey/obtain", {});
    } else if (name == "config") {
        request = make("POST", "/api/mobile/auth/config", kJson);
        request.setJson({{"customerId", m_customerId}, {"supportMailboxFind", true}});
    } else if (name == "upgrade") {
        request = make("POST", "/s/mobile/v1/upgrade", kForm);
        request.body = "customerId=" + QByteArray::number(m_customerId) +
                       "&model=linux&version=6.1.20&subModel=ubuntu&cpuType=X86&type=Custom";
    } else if (name == "notice") {
        request = make("POST", v2 + "upgradeNotice", kJson);
        request.setJson(
            {{"customerId", QString::number(m_customerId)}, {"model", "linux"}, {"sn", serial}});
    } else if (name == "logos") {
        request = make("POST", v2 + "getCustomerLogoUrl", kJson);
        const auto picture = [](const char* keyName, const char* client, int height) {
            return QJsonObject{
                {"keyName", keyName}, {"clientName", client}, {"dpi", 96}, {"heightPixel", height}};
        };
        request.setJson({{"customerId", m_customerId},
                         {"resource", QJsonArray{picture("pictureLogo", "orvek-round.png", 50),
                                                 picture("textLogo", "logo.png", 40)}}});
    } else if (name == "error texts") {
        request = make("POST", "/s/mobile/error/resource/url", kForm);
    } else if (name == "connect") {
        request = withToken(v2 + "connect", connectBody());
    } else if (name == "heartbeat") {
        request = withToken(v2 + "heartbeat", {});
    } else if (name == "disconnect") {
        request = withToken(v2 + "disconnect", {{"customerId", m_customerId},
                                                {"mobileVersion", "6.1.20"},
                                                {"sn", serial},
                                                {"mobileActionLogType", 1}});
    } else if (name == "signout") {
        request = withToken(v2 + "signout", {{"mobileActionLogType", 1}});
    }
    return request;
}

Request Client::login(const QByteArray& user, const QByteArray& password, bool oaep) const
{
    QJsonObject body{{"customerId", m_customerId},
                     {"support2FA", true},
                     {"supportPollByRequestId", true},
                     {"supportOtp", true},
                     {"otpLogin", false},
                     {"automaticLogin", false},
                     {"privacyVersion", "20250115"},
                     {"deviceId", "1B2C-3D4E"},
                     {"mobileVersion", "6.1.20"},
                     {"agreeToPrivacy", true},
                     {"traceExtraInfo", clientInfo()}};
    const QByteArray stamp = "\n" + QByteArray::number(QDateTime::currentMSecsSinceEpoch());
    if (key.isEmpty()) {
        body["accountName"] = QString::fromUtf8(user);
        body["password"] = QString::fromUtf8(password);
    } else {
        body["encryptAccountName"] = QString::fromLatin1(encrypt(user + stamp, key, oaep));
        body["encryptPassword"] = QString::fromLatin1(encrypt(password + stamp, key, oaep));
        body["rsaType"] = oaep ? 1 : 0;
    }
    Request request = make("POST", "/api/mobile/v2/auth", kJson);
    request.headers.insert("type", "linux");
    request.setJson(body);
    return request;
}

Request Client::poll(const QString& address) const
{
    Request request = make("POST", {}, kJson);
    request.url = QUrl(address);
    request.headers.insert("type", "linux");
    return request;
}

bool Client::logIn(const QByteArray& user, const QByteArray& password, bool oaep)
{
    key = send(request("key")).json().value("key").toString().toLatin1();
    const Answer answer = send(login(user, password, oaep));
    token = answer.json().value("X-TQ-AUTH-HEADER").toString().toUtf8();
    return !token.isEmpty();
}

bool Client::logIn()
{
    return logIn("alice@acme.example", "Wonder-land1");
}
