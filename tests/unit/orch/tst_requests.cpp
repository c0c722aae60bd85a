#include "orch/ClientInfo.h"
#include "orch/OrchAddress.h"
#include "orch/OrchRequests.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QtTest>

using Headers = QMap<QByteArray, QByteArray>;

namespace {

const QString kAuthUrl = QStringLiteral("https://orch.example/api/mobile/v2/auth");
const QString kSerial = QStringLiteral("0123456789ABCDE0123456789ABCDE01");

OrchIdentity identity()
{
    return {kSerial, QStringLiteral("2000017"), QStringLiteral("tok")};
}

Headers headersOf(const OrchRequest& request)
{
    Headers headers;
    for (const auto& header : request.headers)
        headers.insert(header.first, header.second);
    return headers;
}

QJsonObject bodyOf(const OrchRequest& request)
{
    return QJsonDocument::fromJson(request.body).object();
}

QJsonObject json(const char* text)
{
    return QJsonDocument::fromJson(text).object();
}

Headers common(Headers more = {})
{
    more.insert("sn", kSerial.toUtf8());
    more.insert("customerId", "2000017");
    return more;
}

Headers withJson(Headers more)
{
    more.insert("Content-Type", "application/json");
    return more;
}

Headers withForm(Headers more)
{
    more.insert("Content-Type", "application/x-www-form-urlencoded");
    return more;
}

Headers withSession(Headers more)
{
    more.insert("X-TQ-AUTH-HEADER", "tok");
    more.insert("type", "linux");
    return more;
}

ipc::LoginParams loginParams()
{
    ipc::LoginParams params;
    params.customerId = QStringLiteral("2000017");
    params.username = QStringLiteral("alice");
    params.password = QStringLiteral("pw");
    params.requestIdForPoll = QStringLiteral("r1");
    return params;
}

QJsonObject loginBody(const ipc::LoginParams& params)
{
    return bodyOf(orchrequest::login(kAuthUrl, kSerial, params, {}));
}

} // namespace

Q_DECLARE_METATYPE(OrchRequest)
Q_DECLARE_METATYPE(OrchRequest::Method)

class RequestsTest : public QObject
{
    Q_OBJECT

private slots:
    void addresses_data();
    void addresses();
    void errorResourceRoots();
    void requests_data();
    void requests();
    void formValuesAreEncoded();
    void loginWithPlainCredentials();
    void loginWithEncryptedCredentials();
    void loginWithToken();
    void loginOptionalMembers();
    void clientInformation();
};

void RequestsTest::addresses_data()
{
    QTest::addColumn<QString>("authUrl");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("last");
    QTest::addColumn<QString>("sibling");
    const auto row = [](const char* name, const char* url, const char* first, const char* last,
                        const char* sibling) {
        QTest::newRow(name) << QString::fromLatin1(url) << QString::fromLatin1(first)
                            << QString::fromLatin1(last) << QString::fromLatin1(sibling);
    };
    row("usual", "https://o.example/api/mobile/v2/auth", "https://o.example/p",
        "https://o.example/p", "https://o.example/api/mobile/v2/p");
    row("twice", "https://o.example/api/x/api/auth", "https://o.example/p",
        "https://o.example/api/x/p", "https://o.example/api/x/api/p");
    row("host like it", "https://api.example/api/auth", "https://p", "https://api.example/p",
        "https://api.example/api/p");
    row("none", "https://o.example/auth", "https://o.example/auth/p", "https://o.example/auth",
        "https://o.example/p");
    row("no slash", "orch", "orch/p", "orch", "orch");
    row("empty", "", "/p", "", "");
}

void RequestsTest::addresses()
{
    QFETCH(QString, authUrl);
    const QString path = QStringLiteral("/p");
    QTEST(orchaddress::rootFirstApi(authUrl, path), "first");
    QTEST(orchaddress::rootLastApi(authUrl, path), "last");
    QTEST(orchaddress::sibling(authUrl, path), "sibling");
}

void RequestsTest::errorResourceRoots()
{
    for (const char* root : {"http://o.example", "http://o.example/", "http://o.example/api/v2"}) {
        QCOMPARE(orchaddress::errorResource(QString::fromLatin1(root), QStringLiteral("p")),
                 QStringLiteral("http://o.example/p"));
    }
}

void RequestsTest::requests_data()
{
    using namespace orchrequest;
    QTest::addColumn<OrchRequest>("request");
    QTest::addColumn<OrchRequest::Method>("method");
    QTest::addColumn<QString>("url");
    QTest::addColumn<Headers>("headers");
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char* name, const OrchRequest& request, OrchRequest::Method method,
                        const char* url, const Headers& headers, const QByteArray& body) {
        QTest::newRow(name) << request << method << QString::fromLatin1(url) << headers << body;
    };
    const auto get = OrchRequest::Method::Get;
    const auto post = OrchRequest::Method::Post;
    const QString lookup = QStringLiteral("https://l.example/api/mobile/v1/orchinfo");

    row("lookup", verifyCustomer(lookup, identity()), post,
        "https://l.example/api/mobile/v1/orchinfo", withForm(common()),
        "customerId=2000017&sn=" + kSerial.toUtf8() + "&model=linux");
    row("privacy version", privacyVersion(lookup, kSerial), get,
        "https://l.example/static/version/privacyversion.json", {{"sn", kSerial.toUtf8()}}, "");
    row("public key", publicKey(kAuthUrl, identity()), get,
        "https://orch.example/s/mobile/pubkey/obtain", common(), "");
    row("configuration", authConfig(kAuthUrl, identity()), post,
        "https://orch.example/api/mobile/auth/config", withJson(common()),
        R"({"customerId":2000017,"supportMailboxFind":true})");
    row("approval poll",
        asyncAuthPoll(kSerial, {QStringLiteral("2000017"), QStringLiteral("http://p.example/q")}),
        post, "http://p.example/q", withJson(common({{"type", "linux"}})), "");
    row("sign-out",
        signout(kAuthUrl, kSerial,
                {QStringLiteral("tok"), QStringLiteral("2000017"), ipc::DisConnOrchNotifyReason}),
        post, "https://orch.example/api/mobile/v2/signout", withJson(withSession(common())),
        R"({"mobileActionLogType":2})");
    row("connect",
        connectSession(kAuthUrl, identity(), ipc::DisConnModeChangedReason,
                       QStringLiteral("192.168.1.20")),
        post, "https://orch.example/api/mobile/v2/connect", withJson(withSession(common())),
        R"({"deviceModel":"linux","deviceSupportMode":"native","internalIp":"192.168.1.20",)"
        R"("mobileActionLogType":4,"mobileVersion":"6.1.20",)"
        R"("sn":"0123456789ABCDE0123456789ABCDE01","supportFeature":{"supportCheckToken":true,)"
        R"("supportHeartBeat":true,"supportHttps":true,"supportIpFilterDownloadUrlV2":true}})");
    row("upgrade check",
        upgradeCheck(kAuthUrl, identity(), QStringLiteral("ubuntu"), QStringLiteral("X86")), post,
        "https://orch.example/s/mobile/v1/upgrade", withForm(common()),
        "customerId=2000017&model=linux&version=6.1.20&subModel=ubuntu&cpuType=X86&type=Custom");
    row("maintenance", maintenanceNotice(kAuthUrl, identity()), post,
        "https://orch.example/api/mobile/v2/upgradeNotice", withJson(common()),
        R"({"customerId":"2000017","model":"linux","sn":"0123456789ABCDE0123456789ABCDE01"})");
    row("logos", customerLogo(kAuthUrl, identity()), post,
        "https://orch.example/api/mobile/v2/getCustomerLogoUrl", withJson(common()),
        R"({"customerId":2000017,"resource":[{"clientName":"orvek-round.png","dpi":96,)"
        R"("heightPixel":50,"keyName":"pictureLogo"},{"clientName":"logo.png","dpi":96,)"
        R"("heightPixel":40,"keyName":"textLogo"}]})");
    row("configuration without /api",
        authConfig(QStringLiteral("https://orch.example/auth"), identity()), post,
        "https://orch.example/auth", withJson(common()),
        R"({"customerId":2000017,"supportMailboxFind":true})");
    row("disconnect", disconnectNotice(kAuthUrl, identity(), ipc::DisConnNormalReason), post,
        "https://orch.example/api/mobile/v2/disconnect", withJson(withSession(common())),
        R"({"customerId":2000017,"mobileActionLogType":1,"mobileVersion":"6.1.20",)"
        R"("sn":"0123456789ABCDE0123456789ABCDE01"})");
    const QString beat = QStringLiteral("http://h.example/beat?id=1");
    row("heartbeat", heartbeat(beat, identity(), false), post, "http://h.example/beat?id=1",
        withJson(withSession(common())), "{}");
    row("heartbeat in intranet mode", heartbeat(beat, identity(), true), post,
        "http://h.example/beat?id=1", withJson(withSession(common())), R"({"intranetMode":true})");
    row("filter document", filterDocument(QStringLiteral("http://f.example/f.json"), identity()),
        get, "http://f.example/f.json", common({{"X-TQ-AUTH-HEADER", "tok"}}), "");
    row("error resource address",
        errorResourceAddress(kAuthUrl, QStringLiteral("s/mobile/error/resource/url"), identity()),
        post, "https://orch.example/s/mobile/error/resource/url", withForm(common()), "");
    row("error resource", errorResourceDocument(QStringLiteral("http://r.example/r"), kSerial), get,
        "http://r.example/r", {{"sn", kSerial.toUtf8()}}, "");
}

void RequestsTest::requests()
{
    QFETCH(OrchRequest, request);
    QTEST(request.method, "method");
    QTEST(request.url.toString(), "url");
    QTEST(headersOf(request), "headers");
    QCOMPARE(request.headers.size(), headersOf(request).size());
    QTEST(request.body, "body");
    QCOMPARE(request.timeoutMs, 40000);
}

void RequestsTest::formValuesAreEncoded()
{
    const OrchIdentity typed{kSerial, QString::fromUtf8("a+b c&\xe5\xbc\xa0"), QString()};
    const OrchRequest request = orchrequest::verifyCustomer(QStringLiteral("http://l"), typed);
    QVERIFY(request.body.startsWith("customerId=a%2Bb%20c%26%E5%BC%A0&sn="));
}

void RequestsTest::loginWithPlainCredentials()
{
    const QJsonObject expected =
        json(R"({"accountName":"alice","customerId":2000017,"support2FA":true,
                 "supportPollByRequestId":true,"supportOtp":true,"otpLogin":false,
                 "automaticLogin":false,"privacyVersion":"","deviceId":"",
                 "mobileVersion":"6.1.20","password":"pw","traceExtraInfo":{}})");
    QCOMPARE(loginBody(loginParams()), expected);
    const OrchRequest request = orchrequest::login(kAuthUrl, kSerial, loginParams(), {});
    QCOMPARE(request.url.toString(), kAuthUrl);
    QCOMPARE(headersOf(request), withJson(common({{"type", "linux"}})));
}

void RequestsTest::loginWithEncryptedCredentials()
{
    ipc::LoginParams params = loginParams();
    params.encryptedUsername = QStringLiteral("EU");
    params.encryptedPassword = QStringLiteral("EP");
    params.rsaType = OAEP_SHA;
    const QJsonObject body = loginBody(params);
    QCOMPARE(body.value(QStringLiteral("encryptAccountName")).toString(), QStringLiteral("EU"));
    QCOMPARE(body.value(QStringLiteral("encryptPassword")).toString(), QStringLiteral("EP"));
    QCOMPARE(body.value(QStringLiteral("rsaType")).toInt(), 1);
    QVERIFY(!body.contains(QStringLiteral("accountName")));
    QVERIFY(!body.contains(QStringLiteral("password")));
}

void RequestsTest::loginWithToken()
{
    ipc::LoginParams params = loginParams();
    params.token = QStringLiteral("tok");
    params.encryptedPassword = QStringLiteral("EP");
    params.autoLogin = true;
    const OrchRequest request = orchrequest::login(kAuthUrl, kSerial, params, {});
    const QJsonObject body = bodyOf(request);
    QCOMPARE(headersOf(request), withJson(withSession(common())));
    QVERIFY(!body.contains(QStringLiteral("password")));
    QVERIFY(!body.contains(QStringLiteral("encryptPassword")));
    QCOMPARE(body.value(QStringLiteral("automaticLogin")), QJsonValue(true));
}

void RequestsTest::loginOptionalMembers()
{
    ipc::LoginParams params = loginParams();
    params.verifyNum = QStringLiteral("123456");
    params.otpMiddleToken = QStringLiteral("mid");
    params.agreePolicy = true;
    params.asynAuth = true;
    const QJsonObject body = loginBody(params);
    QCOMPARE(body.value(QStringLiteral("supportOtpCode")).toString(), QStringLiteral("123456"));
    QCOMPARE(body.value(QStringLiteral("otpMiddleToken")).toString(), QStringLiteral("mid"));
    QCOMPARE(body.value(QStringLiteral("agreeToPrivacy")), QJsonValue(true));
    QCOMPARE(body.value(QStringLiteral("requestIdForPoll")).toString(), QStringLiteral("r1"));

    params.customerId = QStringLiteral("4000000001"); // beyond 32 bits
    params.requestIdForPoll.clear();
    QCOMPARE(loginBody(params).value(QStringLiteral("customerId")).toDouble(), 4000000001.0);
    QVERIFY(!loginBody(params).contains(QStringLiteral("requestIdForPoll")));
}

void RequestsTest::clientInformation()
{
    ClientFacts facts;
    facts.interfaces = {{true, true, {{0x7F000001, 8}}},
                        {false, false, {{0x0A000001, 8}}},
                        {true, false, {{0xC0A80114, 24}, {0xAC100005, -1}}},
                        {true, false, {{0x0A080002, 32}}}};
    facts.productType = QStringLiteral("uos");
    facts.productVersion = QStringLiteral("20");
    facts.kernelVersion = QStringLiteral("4.19.0-%1");
    facts.serial = kSerial;
    facts.cpuArchitecture = QStringLiteral("X86");
    const QJsonObject expected =
        json(R"json({"internalIp":"192.168.1.20/24,172.16.0.5,10.8.0.2/32","deviceName":"",
                 "deviceType":"","opsType":"uos","opsVersion":"20(kernel 4.19.0-%1)",
                 "hostName":"","sn":"0123456789ABCDE0123456789ABCDE01",
                 "osArchitecture":"X86","clientType":"Veltaro"})json");
    QCOMPARE(clientInfo(facts), expected);
    QCOMPARE(internalAddresses({}), QString());
}

QTEST_GUILESS_MAIN(RequestsTest)
#include "tst_requests.moc"
