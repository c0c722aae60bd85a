#include "orch/ClientInfo.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchAddress.h"
#include "orch/OrchReply.h"
#include "orch/OrchRequests.h"
#include "support/Rows.h"

namespace {

const QString kAuthUrl = "https://orch.example/api/mobile/v2/auth";
const QString kSerial = "0123456789ABCDE0123456789ABCDE01";
const OrchIdentity kIdentity{kSerial, "2000017", "tok"};

} // namespace

/// What goes over the wire: addresses, requests, the reading and masking of replies.
class WireTest : public QObject
{
    Q_OBJECT

private slots:
    void addresses()
    {
        const auto row = checked([](const QString& authUrl, const QString& first,
                                    const QString& last, const QString& sibling) {
            QCOMPARE(orchaddress::rootFirstApi(authUrl, "/p"), first);
            QCOMPARE(orchaddress::rootLastApi(authUrl, "/p"), last);
            QCOMPARE(orchaddress::sibling(authUrl, "/p"), sibling);
        });
        row("usual", "https://o.example/api/mobile/v2/auth", "https://o.example/p",
            "https://o.example/p", "https://o.example/api/mobile/v2/p");
        row("twice", "https://o.example/api/x/api/auth", "https://o.example/p",
            "https://o.example/api/x/p", "https://o.example/api/x/api/p");
        row("host like it", "https://api.example/api/auth", "https://p", "https://api.example/p",
            "https://api.example/api/p");
        row("none", "https://o.example/auth", "https://o.example/auth/p", "https://o.example/auth",
            "https://o.example/p");
        row("no slash", "orch", "orch/p", "orch", "orch");
        row("slash at its end", "https://o.example/", "https://o.example//p", "https://o.example/",
            "https://o.example/p");
        row("empty", "", "/p", "", "");
        for (const char* root :
             {"http://o.example", "http://o.example/", "http://o.example/api/v2"})
            QCOMPARE(orchaddress::errorResource(root, "p"), QString("http://o.example/p"));
    }

    // The simulator judges every request that a window sends, but for these.
    void whatNoServiceChecks()
    {
        const OrchRequest connect = orchrequest::connectSession(
            kAuthUrl, kIdentity, ipc::DisConnModeChangedReason, "192.168.1.20");
        QVERIFY(connect.body.contains(json("'mobileActionLogType':4")));
        QVERIFY(connect.body.contains(json("'internalIp':'192.168.1.20'")));
        QCOMPARE(connect.timeoutMs, 40000);
        QVERIFY(connect.deadlineMs >= 60000); // a slow answer may take longer than a silence

        for (const OrchRequest& document : {orchrequest::filterDocument(QString(), kIdentity),
                                            orchrequest::errorResourceDocument(QString(), kSerial)})
            QCOMPARE(document.deadlineMs, 0);
    }

    void formValuesAreEncoded()
    {
        const OrchIdentity typed{kSerial, QString::fromUtf8("a+b c&\xe5\xbc\xa0"), QString()};
        const OrchRequest request = orchrequest::verifyCustomer("http://l", typed);
        QVERIFY(request.body.startsWith("customerId=a%2Bb%20c%26%E5%BC%A0&sn="));
    }

    void loginBeyondTheUsual()
    {
        ipc::LoginParams params;
        params.agreePolicy = true;
        params.customerId = "4000000001"; // beyond 32 bits
        const QJsonObject body =
            JsonUtil::object(orchrequest::login(kAuthUrl, kSerial, params, {}).body);
        QCOMPARE(body.value("agreeToPrivacy"), QJsonValue(true));
        QCOMPARE(body.value("customerId").toDouble(), 4000000001.0);
    }

    void clientInformation()
    {
        ClientFacts facts;
        facts.interfaces = {{true, true, {{0x7F000001, 8}}},
                            {false, false, {{0x0A000001, 8}}},
                            {true, false, {{0xC0A80114, 24}, {0xAC100005, -1}}},
                            {true, false, {{0x0A080002, 32}}}};
        facts.productType = "uos";
        facts.productVersion = "20";
        facts.kernelVersion = "4.19.0-%1";
        facts.serial = kSerial;
        facts.cpuArchitecture = "X86";
        const QByteArray expected =
            json("{'clientType':'Veltaro','deviceName':'','deviceType':'','hostName':'',"
                 "'internalIp':'192.168.1.20/24,172.16.0.5,10.8.0.2/32','opsType':'uos',"
                 "'opsVersion':'20(kernel 4.19.0-%1)','osArchitecture':'X86',"
                 "'sn':'0123456789ABCDE0123456789ABCDE01'}");
        QCOMPARE(QJsonDocument(clientInfo(facts)).toJson(QJsonDocument::Compact), expected);
        QCOMPARE(internalAddresses({}), QString());
    }

    void numbers()
    {
        const auto row = checked([](const QByteArray& value, int whole, qulonglong wide) {
            const QByteArray body = json("{'inner':{'n':1},'n':" + value + "}");
            QCOMPARE(JsonUtil::getInt(body, "n", 7), whole);
            QCOMPARE(JsonUtil::getULongLong(body, "n", 7), wide);
        });
        row("plain", "5", 5, 5);
        row("whole written as real", "5.0", 5, 5);
        row("not whole", "5.5", 0, 5);
        row("negative", "-3", -3, 0);
        row("milliseconds", "1700000000123", 0, 1700000000123);
        row("more than a double holds", "9007199254740993", 0, 9007199254740993);
        row("beyond 64 bits", "1e300", 0, std::numeric_limits<qulonglong>::max());
        row("below 64 bits", "-1e300", 0, 0);
        row("number as text", "'5'", 7, 7);
        row("boolean", "true", 7, 7);
        row("null", "null", 7, 7);
    }

    void otherTypes()
    {
        const QByteArray body = json("{'text':'t','yes':true,'zero':0,'object':{'a':1}}");
        QCOMPARE(JsonUtil::getQString(body, "text", ""), QString("t"));
        QCOMPARE(JsonUtil::getQString(body, "zero", "d"), QString("d"));
        QCOMPARE(JsonUtil::getBool(body, "yes", false), true);
        QCOMPARE(JsonUtil::getBool(body, "zero", true), true);
        QCOMPARE(JsonUtil::getObject(body, "object").size(), 1);
        QVERIFY(JsonUtil::getObject(body, "text").isEmpty());
        // Members of inner objects are not found.
        QCOMPARE(JsonUtil::getInt(body, "a", -1), -1);
    }

    void arrays()
    {
        const QByteArray body = json("{'many':['a','b','c'],'none':[],'mixed':['a',1,'b'],'n':1}");
        QCOMPARE(JsonUtil::getArrayToString(body, "many"), QString("a,b,c"));
        for (const char* none : {"none", "n", "missing"})
            QCOMPARE(JsonUtil::getArrayToString(body, none), QString());
        QCOMPARE(JsonUtil::getArrayToStringList(body, "mixed"), (QStringList{"a", "", "b"}));
        QCOMPARE(JsonUtil::getArray(body, "many").size(), 3);
    }

    void bodiesWithoutObject()
    {
        const QByteArray bodies[] = {{},
                                     "",
                                     "<html>n</html>",
                                     json("[{'n':1}]"),
                                     json("{'n':1"),
                                     QByteArray("\0\xff\xfe{", 4),
                                     QByteArray(100000, '[')};
        for (const QByteArray& body : bodies) {
            QCOMPARE(JsonUtil::getInt(body, "n", 9), 9);
            QVERIFY(JsonUtil::getArray(body, "n").isEmpty());
            QCOMPARE(JsonUtil::setQString(body, "n", "x"), body);
        }
    }

    void setsExistingMembersOnly()
    {
        const QByteArray body = json("{'a': 1, 'b': 'keep'}");
        QCOMPARE(JsonUtil::setQString(body, "a", "***"), json("{'a':'***','b':'keep'}"));
        QCOMPARE(JsonUtil::setQString(body, "c", "x"), body);
    }

    void verdict()
    {
        for (const char* success : {"{}", "{'code':0}", "<html>", "{'code':'1007'}",
                                    "{'errorInfo':{}}", "{'errorInfo':'x'}"}) {
            QVERIFY2(OrchReply(json(success)).succeeded(), success);
            for (const int status : {204, 0})
                QVERIFY2(!OrchReply(json(success), status).succeeded(), success);
            const auto cutOff = QNetworkReply::RemoteHostClosedError;
            QVERIFY2(!OrchReply(json(success), 200, cutOff).succeeded(), success);
        }
        for (const char* failure : {"{'code':1007}", "{'code':0,'errorInfo':{'a':1}}"})
            QVERIFY2(!OrchReply(json(failure)).succeeded(), failure);
    }

    void masking()
    {
        const auto row = checked([](const QByteArray& body, const QByteArray& shown) {
            QCOMPARE(maskSecrets(json(body)).toUtf8(), json(shown));
        });
        row("text", "{'password':'p\\'w,}','a':1}", "{'password':'***','a':1}");
        row("nested", "{'p':{'deviceBindMiddleToken' : 'm'},'a':[{'otpKey':'k'}]}",
            "{'p':{'deviceBindMiddleToken':'***'},'a':[{'otpKey':'***'}]}");
        row("case", "{'x-tq-auth-header':'t'}", "{'x-tq-auth-header':'***'}");
        row("list", "{'otpRecoverCode':['1]','2'],'a':1}", "{'otpRecoverCode':'***','a':1}");
        row("object", "{'token':{'a':{'b':'}'}},'c':2}", "{'token':'***','c':2}");
        row("number", "{'verification':123456}", "{'verification':'***'}");
        row("person", "{'phoneNumber':'1','accountName':'a','userName':'u','mailbox':'m','sn':'s'}",
            "{'phoneNumber':'***','accountName':'***','userName':'***','mailbox':'***','sn':'s'}");
        row("as a setting", "{'OTP_RECOVER_CODE':['1']}", "{'OTP_RECOVER_CODE':'***'}");
        row("cut off in the value", "{'password':'secr", "{'password':'***'");
        row("cut off in a list", "{'otpRecoverCode':['12','3", "{'otpRecoverCode':'***'");
        for (const char* same : {"{'type':'password','b':'token'}", "{'passwordRule':'8'}",
                                 "<html>'</html>", "customerId=1&model=linux", ""})
            row(same, same, same);
    }

    void maskingIsBounded()
    {
        // The secret begins inside the part that is shown and ends outside it.
        const QByteArray body = json("{'password':'" + QByteArray(20 * 1024 * 1024, 's') + "'}");
        QCOMPARE(maskSecrets(body), QString(R"({"password":"***"... (%1 bytes))").arg(body.size()));
        const QString page = maskSecrets(QByteArray(5 * 1024 * 1024, '\xff'));
        QVERIFY(page.size() < kLogBodyLimit + 100);
    }
};

QTEST_GUILESS_MAIN(WireTest)
#include "tst_wire.moc"
