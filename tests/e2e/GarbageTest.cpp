// A client whose surroundings answer garbage: it says what it has to say or goes on, its window
// answers, and what it had saved is still saved.
#include "support/Scene.h"
#include "support/Wait.h"

#include <QJsonObject>
#include <QTest>

using support::Kind;
using support::waitFor;

namespace {

const QString kCustomer = QStringLiteral("acme");
const QString kUsername = QStringLiteral("alice@acme.example");
const QString kPassword = QStringLiteral("Wonder-land1");

/// What must survive any failure of a connection attempt.
const QStringList kSaved = {QStringLiteral("TOKEN"),      QStringLiteral("AUTHURL"),
                            QStringLiteral("CUSTOMERID"), QStringLiteral("CUSTOMERIDSTR"),
                            QStringLiteral("USERNAME"),   QStringLiteral("PASSWORD"),
                            QStringLiteral("AUTO_LOGIN"), QStringLiteral("AGREE_PRIVACY")};

QVariantMap savedValues(const support::StagedProgram& program)
{
    QVariantMap values;
    for (const QString& key : kSaved)
        values.insert(key, program.setting(key));
    return values;
}

/// The command that makes one piece of the stand-in datapath behave in some way.
QJsonObject behaviour(const char* piece, const char* way)
{
    return {{QStringLiteral("datapath"), QJsonObject{{QLatin1String(piece), QLatin1String(way)}}}};
}

} // namespace

class GarbageTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void cleanup();
    void lookupAnswersHtml();
    void keyIsNoKey();
    void connectAnswersEmptyObject();
    void filterDocumentIsBinary();
    void agentFloods();
    void dispatchClosesInMidReply();

private:
    support::Scene m_scene;
    QVariantMap m_saved;
};

void GarbageTest::initTestCase()
{
    QVERIFY2(m_scene.start(), qPrintable(m_scene.error()));
    QVERIFY(m_scene.logInByHand(kCustomer, kUsername, kPassword, true));
    QVERIFY(m_scene.driver().awaitConnected());
    QVERIFY(m_scene.driver().quit());
    m_saved = savedValues(m_scene.program());
    QVERIFY(!m_saved.value(QStringLiteral("TOKEN")).toString().isEmpty());
}

void GarbageTest::cleanup()
{
    if (QTest::currentTestFailed()) {
        qInfo("%s", qPrintable(m_scene.app().dump()));
        qInfo("%s", qPrintable(m_scene.program().log()));
    }
    m_scene.program().killEverything();
    m_scene.program().remove(QStringLiteral("ui.log"));
    m_scene.program().writeSettings(m_saved);
    QVERIFY(m_scene.service().reset());
}

void GarbageTest::lookupAnswersHtml()
{
    // No saved account: the customer step is done by hand, with no orchestrator known.
    support::StagedProgram& program = m_scene.program();
    program.writeSettings({{QStringLiteral("AUTHURL"), QString()},
                           {QStringLiteral("USERNAME"), QString()},
                           {QStringLiteral("TOKEN"), QString()},
                           {QStringLiteral("PASSWORD"), QString()}});
    QVERIFY(
        m_scene.service().replaceBody(QStringLiteral("/api/mobile/v1/orchinfo"),
                                      "<!DOCTYPE html><html><body>Sign in to the hotel</body>"));

    QVERIFY(program.start());
    QVERIFY(m_scene.app().type(QStringLiteral("Customer ID"), kCustomer));
    QVERIFY(m_scene.app().press(QStringLiteral("Continue")));
    // Without an orchestrator the next request has no address, and that is what it says.
    QVERIFY(m_scene.driver().awaitText(QStringLiteral("Protocol \"\" is unknown")));
    QVERIFY(m_scene.app().await(Kind::Button, QStringLiteral("Continue")).isEnabled());
    QCOMPARE(program.setting(QStringLiteral("AUTHURL")).toString(), QString());

    // The same window reaches the login page once the lookup answers properly.
    QVERIFY(m_scene.service().reset());
    QVERIFY(m_scene.driver().enterCustomer(kCustomer));
}

void GarbageTest::keyIsNoKey()
{
    QVERIFY(m_scene.service().replaceBody(QStringLiteral("/s/mobile/pubkey/obtain"),
                                          R"({"code":0,"key":"bm90IGEga2V5","rsaType":[0,1]})"));
    QVERIFY(m_scene.program().start());
    // As from an orchestrator that offers no key at all.
    QVERIFY(m_scene.driver().awaitConnected());
    QCOMPARE(savedValues(m_scene.program()), m_saved);
}

void GarbageTest::connectAnswersEmptyObject()
{
    support::StagedProgram& program = m_scene.program();
    QVERIFY(m_scene.service().replaceBody(QStringLiteral("/api/mobile/v2/connect"), "{}"));
    QVERIFY(program.start());
    QVERIFY(m_scene.app().await(Kind::Button, QStringLiteral("Home")).isValid());
    // No address for the filter document.
    QVERIFY(m_scene.driver().awaitText(QStringLiteral("Protocol \"\" is unknown")));
    QVERIFY(m_scene.app().await(Kind::Button, QStringLiteral("Connect")).isValid());
    QCOMPARE(program.read(QStringLiteral("cpeagent.conf")),
             QByteArray("orchid=0\ncpeid=0\ncustomerid=0\ncommaddr=\n"));
    QCOMPARE(program.setting(QStringLiteral("CPE_ID")).toInt(), -1);
    QCOMPARE(program.datapathProcesses(), QList<qint64>());
    QCOMPARE(savedValues(program), m_saved);

    QVERIFY(m_scene.service().reset());
    QVERIFY(m_scene.app().press(QStringLiteral("Connect")));
    QVERIFY(m_scene.driver().awaitConnected());
}

void GarbageTest::filterDocumentIsBinary()
{
    QByteArray binary("\x7f"
                      "ELF\x01\x02 no document ",
                      18);
    for (int byte = 0x80; byte <= 0xff; ++byte)
        binary.append(static_cast<char>(byte));
    QVERIFY(m_scene.service().replaceBody(QStringLiteral("/files/ip-filter.json"), binary));
    QVERIFY(m_scene.program().start());
    QVERIFY(m_scene.driver().awaitConnected());
    QVERIFY(m_scene.program().read(QStringLiteral("filterConfig.conf")).endsWith('\n'));
    QVERIFY(m_scene.driver().isResponsive());
    QCOMPARE(savedValues(m_scene.program()), m_saved);
}

void GarbageTest::agentFloods()
{
    QVERIFY(m_scene.service().command(behaviour("agent", "flood_ready")));
    QVERIFY(m_scene.program().start());
    QVERIFY(m_scene.driver().awaitConnected());
    QVERIFY(m_scene.driver().awaitTraffic());
    QCOMPARE(savedValues(m_scene.program()), m_saved);
}

void GarbageTest::dispatchClosesInMidReply()
{
    QVERIFY(m_scene.program().start());
    QVERIFY(m_scene.driver().awaitConnected());
    QVERIFY(m_scene.service().command(behaviour("dispatch", "close_midreply")));
    // The third poll in a row that fails ends the connection.
    QVERIFY(m_scene.app().await(Kind::Button, QStringLiteral("Connect"), 20000).isValid());
    QVERIFY(m_scene.program().log().contains(
        QStringLiteral("[ERROR] Check the DP status and find an exception(-5)")));
    QCOMPARE(m_scene.program().datapathProcesses(), QList<qint64>());
    QCOMPARE(savedValues(m_scene.program()), m_saved);
}

QTEST_GUILESS_MAIN(GarbageTest)
#include "GarbageTest.moc"
