#include "Requests.h"

#include "sim/Simulator.h"

#include <QtTest>

Q_DECLARE_METATYPE(Change)

namespace {

Change header(const QByteArray& name, const QByteArray& value)
{
    return [=](Request& request) {
        request.headers.remove(name);
        if (!value.isNull())
            request.headers.insert(name, value);
    };
}

Change body(const QByteArray& bytes)
{
    return [=](Request& request) { request.body = bytes; };
}

Change path(const QString& text)
{
    return [=](Request& request) { request.url.setPath(text); };
}

const QJsonValue kGone(QJsonValue::Undefined);

} // namespace

class ViolationTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_simulator = std::make_unique<sim::Simulator>();
        QVERIFY(m_simulator->start());
    }

    void violationsAreRecorded_data();
    void violationsAreRecorded();
    void credentialsAreDecrypted_data();
    void credentialsAreDecrypted();

private:
    std::unique_ptr<sim::Simulator> m_simulator;
};

void ViolationTest::violationsAreRecorded_data()
{
    QTest::addColumn<QString>("request");
    QTest::addColumn<Change>("change");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const char* request, const Change& change,
                        const char* reason) {
        QTest::newRow(name) << QString(request) << change << QString(reason);
    };
    const QByteArray none;
    row("unknown path", "notice", path("/api/mobile/v2/nothing"), "unknown path");
    row("lookup on the orchestrator", "notice", path("/api/mobile/v1/orchinfo"), "unknown path");
    row(
        "method", "notice", [](Request& r) { r.method = "GET"; }, "the method is not POST");
    row(
        "query", "key", [](Request& r) { r.url.setQuery("a=b"); }, "unexpected query");
    row("serial missing", "key", header("sn", none), "header sn");
    row("serial alphabet", "key", header("sn", QByteArray(32, 'F')), "header sn");
    row("customer missing", "key", header("customerId", none), "customerId is missing");
    row("customer as typed", "key", header("customerId", "acme"), "no customer's number");
    row("customer uncalled for", "privacy", header("customerId", "1001"),
        "unexpected header customerId");
    row("type missing", "connect", header("type", none), "header type");
    row("type uncalled for", "notice", header("type", "linux"), "header type");
    row("content type", "connect", header("Content-Type", "text/plain"), "content type");
    row("unknown header", "key", header("X-More", "1"), "unexpected header x-more");
    row("token missing", "connect", header("X-TQ-AUTH-HEADER", none), "AUTH-HEADER is missing");
    row("token invented", "connect", header("X-TQ-AUTH-HEADER", "abc"), "never issued");
    row("token uncalled for", "notice", header("X-TQ-AUTH-HEADER", "abc"),
        "unexpected header X-TQ-AUTH-HEADER");
    row("token of another", "connect", header("customerId", "2002"), "another customer");
    row("no JSON", "connect", body("{"), "no JSON object");
    row("JSON with spaces", "heartbeat", body("{ }"), "not compact");
    row("member missing", "connect", member("internalIp", kGone), "internalIp is missing");
    row("member of another type", "notice", member("customerId", 1001), "customerId is no text");
    row("number as text", "config", member("customerId", "1001"), "customerId is no integer");
    row("broken number", "disconnect", member("mobileActionLogType", 1.5), "is no integer");
    row("member too many", "connect", member("more", true), "unexpected member more");
    row("nested member", "connect", member("supportFeature", QJsonObject()),
        "supportFeature.supportHttps is missing");
    row("reason out of range", "signout", member("mobileActionLogType", 3), "unexpected value 3");
    row("address", "connect", member("internalIp", "192.168.1"), "no IPv4 address");
    row("intranet uncalled for", "heartbeat", member("intranetMode", true), "intranetMode");
    row("not connected", "heartbeat", body("{}"), "never connected");
    row("form order", "lookup", body("sn=1&customerId=acme&model=linux"), "form fields are");
    row(
        "form value", "upgrade", [](Request& r) { r.body.replace("6.1.20", "6.1"); },
        "form field version");
    row("body uncalled for", "error texts", body("x"), "body of 1 bytes");
    row("login: not agreed", "login", member("agreeToPrivacy", false), "agreeToPrivacy");
    row("login: empty code", "login", member("supportOtpCode", ""), "present but empty");
    row("login: plain beside encrypted", "login", member("password", "x"),
        "unexpected member password");
    row("login: wrong padding named", "login", member("rsaType", 0), "rsaType has");
    row("login: not encrypted", "login", member("encryptPassword", "eHl6"),
        "encryptPassword does not decrypt");
    row(
        "login: client information", "login",
        [](Request& r) {
            QJsonObject info = r.json().value("traceExtraInfo").toObject();
            info.insert("opsVersion", "12");
            member("traceExtraInfo", info)(r);
        },
        "names no kernel");
    row("login: password beside token", "token login", member("password", "x"),
        "unexpected member password");
}

void ViolationTest::violationsAreRecorded()
{
    QFETCH(QString, request);
    QFETCH(Change, change);
    QFETCH(QString, reason);
    Client client(*m_simulator);
    QVERIFY(client.logIn());
    Request sent = request.endsWith("login") ? client.login("alice@acme.example", "Wonder-land1")
                                             : client.request(request);
    if (request == "token login") {
        sent.headers.insert("X-TQ-AUTH-HEADER", client.token);
        member("encryptPassword", kGone)(sent);
    }
    QCOMPARE(m_simulator->violations(), QStringList());
    change(sent);
    send(sent);
    const QString all = m_simulator->violations().join('\n');
    QVERIFY2(all.contains(reason), qPrintable(all));
    QVERIFY2(all.startsWith(QString::fromLatin1(sent.method) + ' ' + sent.url.path() + ": "),
             qPrintable(all));
}

void ViolationTest::credentialsAreDecrypted_data()
{
    QTest::addColumn<bool>("oaepOffered");
    QTest::addColumn<bool>("oaep");
    QTest::addColumn<QByteArray>("password");
    QTest::addColumn<qint64>("clockOff");
    QTest::addColumn<bool>("in");
    QTest::addColumn<QString>("violation");
    const QByteArray good = "Wonder-land1";
    QTest::newRow("OAEP") << true << true << good << qint64(0) << true << "";
    QTest::newRow("PKCS #1") << false << false << good << qint64(0) << true << "";
    QTest::newRow("wrong password") << true << true << QByteArray("no") << qint64(0) << false << "";
    QTest::newRow("padding not the best on offer")
        << true << false << good << qint64(0) << true << "does not decrypt";
    QTest::newRow("clock ahead") << true << true << good << qint64(120000) << false
                                 << "time stamp that is off";
    QTest::newRow("clock behind") << true << true << good << qint64(-120000) << false
                                  << "time stamp that is off";
}

void ViolationTest::credentialsAreDecrypted()
{
    QFETCH(bool, oaepOffered);
    QFETCH(bool, oaep);
    QFETCH(QByteArray, password);
    QFETCH(qint64, clockOff);
    QFETCH(bool, in);
    QFETCH(QString, violation);
    m_simulator->edit([&](sim::Scenario& scenario) {
        scenario.rsaTypes = {0};
        if (oaepOffered)
            scenario.rsaTypes.append(1);
    });
    Client client(*m_simulator);
    client.key = client.exchange("key").json().value("key").toString().toLatin1();
    Request login = client.login("alice@acme.example", password, oaep);
    if (clockOff != 0) {
        const qint64 stamp = QDateTime::currentMSecsSinceEpoch() + clockOff;
        const QByteArray text = password + "\n" + QByteArray::number(stamp);
        member("encryptPassword", QString::fromLatin1(encrypt(text, client.key, oaep)))(login);
    }
    const QJsonObject answer = send(login).json();
    QCOMPARE(answer.contains("X-TQ-AUTH-HEADER"), in);
    QCOMPARE(answer.value("code").toInt(), in ? 0 : 1001);
    const QString found = m_simulator->violations().join('\n');
    QVERIFY2(violation.isEmpty() ? found.isEmpty() : found.contains(violation), qPrintable(found));
}

QTEST_GUILESS_MAIN(ViolationTest)
#include "ViolationTest.moc"
