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

class RequestsTest : public QObject
{
    Q_OBJECT

private slots:
    void addresses_data()
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

    void addresses()
    {
        QFETCH(QString, authUrl);
        const QString path = QStringLiteral("/p");
        QTEST(orchaddress::rootFirstApi(authUrl, path), "first");
        QTEST(orchaddress::rootLastApi(authUrl, path), "last");
        QTEST(orchaddress::sibling(authUrl, path), "sibling");
    }

    void errorResourceRoots()
    {
        for (const char* root :
             {"http://o.example", "http://o.example/", "http://o.example/api/v2"}) {
            QCOMPARE(orchaddress::errorResource(QString::fromLatin1(root), QStringLiteral("p")),
                     QStringLiteral("http://o.example/p"));
        }
    }

    // The simulator judges every request that a window sends. What it lets pass in more than one
    // form, or is not sent yet, stands here.
    void whatNoServiceChecks()
    {
        const OrchRequest connect = orchrequest::connectSession(
            kAuthUrl, identity(), ipc::DisConnModeChangedReason, QStringLiteral("192.168.1.20"));
        QCOMPARE(bodyOf(connect).value("mobileActionLogType").toInt(), 4);
        QCOMPARE(bodyOf(connect).value("internalIp").toString(), QStringLiteral("192.168.1.20"));
        QCOMPARE(connect.timeoutMs, 40000);

        const auto noticeAddress = [](const QString& auth) {
            return orchrequest::disconnectNotice(auth, identity(), ipc::DisConnNormalReason)
                .url.toString();
        };
        QCOMPARE(noticeAddress(kAuthUrl),
                 QStringLiteral("https://orch.example/api/mobile/v2/disconnect"));
        QCOMPARE(noticeAddress("https://orch.example/"),
                 QStringLiteral("https://orch.example/disconnect"));
        QCOMPARE(noticeAddress("orch"), QStringLiteral("orch"));

        const OrchRequest logos = orchrequest::customerLogo(kAuthUrl, identity());
        QCOMPARE(logos.method, OrchRequest::Method::Post);
        QCOMPARE(logos.url.toString(),
                 QStringLiteral("https://orch.example/api/mobile/v2/getCustomerLogoUrl"));
        QCOMPARE(headersOf(logos), (Headers{{"Content-Type", "application/json"},
                                            {"sn", kSerial.toUtf8()},
                                            {"customerId", "2000017"}}));
        QCOMPARE(logos.body,
                 QByteArray(R"({"customerId":2000017,"resource":[{"clientName":"orvek-round.png",)"
                            R"("dpi":96,"heightPixel":50,"keyName":"pictureLogo"},)"
                            R"({"clientName":"logo.png","dpi":96,"heightPixel":40,)"
                            R"("keyName":"textLogo"}]})"));
        QCOMPARE(orchrequest::filterDocument(QString(), identity()).deadlineMs, 0);
    }

    void formValuesAreEncoded()
    {
        const OrchIdentity typed{kSerial, QString::fromUtf8("a+b c&\xe5\xbc\xa0"), QString()};
        const OrchRequest request = orchrequest::verifyCustomer(QStringLiteral("http://l"), typed);
        QVERIFY(request.body.startsWith("customerId=a%2Bb%20c%26%E5%BC%A0&sn="));
    }

    void loginOptionalMembers()
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

    void clientInformation()
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
};

QTEST_GUILESS_MAIN(RequestsTest)
#include "tst_requests.moc"
