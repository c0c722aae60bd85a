#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/ReplyVerdict.h"

#include <QtTest>

#include <limits>

class JsonTest : public QObject
{
    Q_OBJECT

private slots:
    void numbers_data();
    void numbers();
    void otherTypes();
    void arrays();
    void bodiesWithoutObject_data();
    void bodiesWithoutObject();
    void setsExistingMembersOnly();
    void verdict_data();
    void verdict();
    void masking_data();
    void masking();
    void maskingIsBounded();
};

void JsonTest::numbers_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("whole");
    QTest::addColumn<qulonglong>("wide");
    const qulonglong most = std::numeric_limits<qulonglong>::max();
    QTest::newRow("plain") << QByteArray("5") << 5 << 5ULL;
    QTest::newRow("whole written as real") << QByteArray("5.0") << 5 << 5ULL;
    QTest::newRow("not whole") << QByteArray("5.5") << 0 << 5ULL;
    QTest::newRow("negative") << QByteArray("-3") << -3 << 0ULL;
    QTest::newRow("milliseconds") << QByteArray("1700000000123") << 0 << 1700000000123ULL;
    QTest::newRow("more than a double holds")
        << QByteArray("9007199254740993") << 0 << 9007199254740993ULL;
    QTest::newRow("beyond 64 bits") << QByteArray("1e300") << 0 << most;
    QTest::newRow("below 64 bits") << QByteArray("-1e300") << 0 << 0ULL;
    QTest::newRow("number as text") << QByteArray("\"5\"") << 7 << 7ULL;
    QTest::newRow("boolean") << QByteArray("true") << 7 << 7ULL;
    QTest::newRow("null") << QByteArray("null") << 7 << 7ULL;
}

void JsonTest::numbers()
{
    QFETCH(QByteArray, value);
    const QByteArray body = "{\"inner\":{\"n\":1},\"n\":" + value + "}";
    QTEST(JsonUtil::getInt(body, QStringLiteral("n"), 7), "whole");
    QTEST(JsonUtil::getULongLong(body, QStringLiteral("n"), 7), "wide");
}

void JsonTest::otherTypes()
{
    const QByteArray body = R"({"text":"t","yes":true,"zero":0,"object":{"a":1}})";
    QCOMPARE(JsonUtil::getQString(body, QStringLiteral("text"), QString()), QStringLiteral("t"));
    QCOMPARE(JsonUtil::getQString(body, QStringLiteral("zero"), QStringLiteral("d")),
             QStringLiteral("d"));
    QCOMPARE(JsonUtil::getBool(body, QStringLiteral("yes"), false), true);
    QCOMPARE(JsonUtil::getBool(body, QStringLiteral("zero"), true), true);
    QCOMPARE(JsonUtil::getObject(body, QStringLiteral("object")).size(), 1);
    QVERIFY(JsonUtil::getObject(body, QStringLiteral("text")).isEmpty());
    // Members of inner objects are not found.
    QCOMPARE(JsonUtil::getInt(body, QStringLiteral("a"), -1), -1);
}

void JsonTest::arrays()
{
    const QByteArray body = R"({"many":["a","b","c"],"none":[],"mixed":["a",1,"b"],"text":"a"})";
    const auto joined = [&body](const char* key) {
        return JsonUtil::getArrayToString(body, QLatin1String(key));
    };
    QCOMPARE(joined("many"), QStringLiteral("a,b,c"));
    QCOMPARE(joined("none"), QString());
    QCOMPARE(joined("text"), QString());
    QCOMPARE(joined("missing"), QString());
    QCOMPARE(JsonUtil::getArrayToStringList(body, QStringLiteral("mixed")),
             QStringList({QStringLiteral("a"), QString(), QStringLiteral("b")}));
    QCOMPARE(JsonUtil::getArray(body, QStringLiteral("many")).size(), 3);
}

void JsonTest::bodiesWithoutObject_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("null") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("page") << QByteArray("<html>n</html>");
    QTest::newRow("array") << QByteArray(R"([{"n":1}])");
    QTest::newRow("cut off") << QByteArray(R"({"n":1)");
    QTest::newRow("bytes") << QByteArray("\0\xff\xfe{", 4);
    QTest::newRow("deep") << QByteArray(100000, '[');
}

void JsonTest::bodiesWithoutObject()
{
    QFETCH(QByteArray, body);
    QCOMPARE(JsonUtil::getInt(body, QStringLiteral("n"), 9), 9);
    QVERIFY(JsonUtil::getArray(body, QStringLiteral("n")).isEmpty());
    QCOMPARE(JsonUtil::setQString(body, QStringLiteral("n"), QStringLiteral("x")), body);
}

void JsonTest::setsExistingMembersOnly()
{
    const QByteArray body = R"({"a": 1, "b": "keep"})";
    const QByteArray changed =
        JsonUtil::setQString(body, QStringLiteral("a"), QStringLiteral("***"));
    QCOMPARE(changed, QByteArray(R"({"a":"***","b":"keep"})"));
    QCOMPARE(JsonUtil::setQString(body, QStringLiteral("c"), QStringLiteral("x")), body);
}

void JsonTest::verdict_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("success");
    QTest::newRow("empty object") << 200 << QByteArray("{}") << true;
    QTest::newRow("code 0") << 200 << QByteArray(R"({"code":0})") << true;
    QTest::newRow("no JSON") << 200 << QByteArray("<html>") << true;
    QTest::newRow("other code") << 200 << QByteArray(R"({"code":1007})") << false;
    QTest::newRow("code as text") << 200 << QByteArray(R"({"code":"1007"})") << true;
    QTest::newRow("error object") << 200 << QByteArray(R"({"code":0,"errorInfo":{"a":1}})")
                                  << false;
    QTest::newRow("empty error object") << 200 << QByteArray(R"({"errorInfo":{}})") << true;
    QTest::newRow("error text") << 200 << QByteArray(R"({"errorInfo":"x"})") << true;
    QTest::newRow("other success status") << 204 << QByteArray() << false;
    QTest::newRow("no status") << 0 << QByteArray("{}") << false;
}

void JsonTest::verdict()
{
    QFETCH(int, status);
    QFETCH(QByteArray, body);
    QTEST(replySucceeded(QNetworkReply::NoError, status, body), "success");
    QVERIFY(!replySucceeded(QNetworkReply::RemoteHostClosedError, status, body));
}

void JsonTest::masking_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char* name, const QByteArray& body, const char* shown) {
        QTest::newRow(name) << body << QString::fromUtf8(shown);
    };
    row("text", R"({"password":"p\"w,}","a":1})", R"({"password":"***","a":1})");
    row("nested", R"({"p":{"deviceBindMiddleToken" : "m"},"a":[{"otpKey":"k"}]})",
        R"({"p":{"deviceBindMiddleToken":"***"},"a":[{"otpKey":"***"}]})");
    row("case", R"({"x-tq-auth-header":"t"})", R"({"x-tq-auth-header":"***"})");
    row("list", R"({"otpRecoverCode":["1]","2"],"a":1})", R"({"otpRecoverCode":"***","a":1})");
    row("object", R"({"token":{"a":{"b":"}"}},"c":2})", R"({"token":"***","c":2})");
    row("number", R"({"verification":123456})", R"({"verification":"***"})");
    row("cut off in the value", R"({"password":"secr)", R"({"password":"***")");
    row("cut off in a list", R"({"otpRecoverCode":["12","3)", R"({"otpRecoverCode":"***")");
    row("as value", R"({"type":"password","b":"token"})", R"({"type":"password","b":"token"})");
    row("longer name", R"({"passwordRule":"8"})", R"({"passwordRule":"8"})");
    row("line breaks", "{\"a\":1}\n2026-01-01 [INFO] forged\r\t",
        R"({"a":1} 2026-01-01 [INFO] forged  )");
    row("no JSON", "<html>\"</html>", "<html>\"</html>");
    row("form", "customerId=1&model=linux", "customerId=1&model=linux");
    row("empty", "", "");
}

void JsonTest::masking()
{
    QFETCH(QByteArray, body);
    QTEST(maskSecrets(body), "shown");
}

void JsonTest::maskingIsBounded()
{
    // The secret begins inside the part that is shown and ends outside it.
    const QByteArray body = "{\"password\":\"" + QByteArray(20 * 1024 * 1024, 's') + "\"}";
    QCOMPARE(maskSecrets(body),
             QStringLiteral("{\"password\":\"***\"... (%1 bytes)").arg(body.size()));
    const QString page = maskSecrets(QByteArray(5 * 1024 * 1024, '\xff'));
    QVERIFY(page.size() < kLogBodyLimit + 100);
}

QTEST_GUILESS_MAIN(JsonTest)
#include "tst_json.moc"
