// The main job from outside: the built client, staged as an installation, on a desktop of its
// own, against the simulated service and the stand-in datapath as processes.
#include "support/Scene.h"
#include "support/Wait.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using support::ChildProcess;
using support::Kind;
using support::waitFor;

namespace {

const QString kCustomer = QStringLiteral("acme");
const QString kUsername = QStringLiteral("alice@acme.example");
const QString kPassword = QStringLiteral("Wonder-land1");

/// What every client writes to its log once it is in.
const QString kStarted = QStringLiteral(" login successful");

const QByteArray kFilterSent =
    R"({"whiteIpSet":["192.0.2.0/24"],"note":{"kept":[1,null]},"code":0,"ipSetMode":-1,)"
    R"("blackIpSet":["203.0.113.9","203.0.113.9",5,null]})";
const QByteArray kFilterWritten =
    R"({"blackIpSet":["203.0.113.9"],"code":0,"ipSetMode":-1,"note":{"kept":[1,null]},)"
    R"("whiteIpSet":["192.0.2.0/24"]})"
    "\n";
const QByteArray kAgentConfiguration = "orchid=12\n"
                                       "cpeid=4711\n"
                                       "customerid=1001\n"
                                       "commaddr=comm1.veltaro.example:4500\n"
                                       "bakcommaddr=comm1.veltaro.example:4501\n"
                                       "bakcommaddr=comm2.veltaro.example\n";

} // namespace

class JourneyTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void newUserConnectsStopsAndQuits();
    void secondCopyLeavesTheFirstAlone();
    void savedLoginConnectsWithoutAClick();
    void crashDoesNotLockOut();

private:
    bool logInByHand();
    bool startRemembered();

    support::Scene m_scene;
    bool m_remembered = false;
};

void JourneyTest::initTestCase()
{
    QVERIFY2(m_scene.start(), qPrintable(m_scene.error()));
    const QJsonObject scenario{{QStringLiteral("filterDocument"), QString::fromUtf8(kFilterSent)}};
    QVERIFY(m_scene.service().command({{QStringLiteral("scenario"), scenario}}));
}

void JourneyTest::init()
{
    QVERIFY(m_scene.service().reset());
}

void JourneyTest::cleanup()
{
    if (QTest::currentTestFailed()) {
        qInfo("%s", qPrintable(m_scene.app().dump()));
        qInfo("%s", qPrintable(m_scene.program().log()));
    }
    m_scene.program().killEverything();
}

bool JourneyTest::logInByHand()
{
    m_remembered = m_scene.logInByHand(kCustomer, kUsername, kPassword, true) &&
                   m_scene.driver().awaitConnected();
    return m_remembered;
}

/// A client that connected by itself, with a log that begins with its start.
bool JourneyTest::startRemembered()
{
    if (!m_remembered && !logInByHand())
        return false;
    m_scene.program().killEverything();
    m_scene.program().remove(QStringLiteral("ui.log"));
    return m_scene.program().start() && m_scene.driver().awaitConnected();
}

void JourneyTest::newUserConnectsStopsAndQuits()
{
    support::StagedProgram& program = m_scene.program();
    support::ClientDriver& driver = m_scene.driver();
    QVERIFY(logInByHand());
    QVERIFY(driver.awaitTraffic());

    QCOMPARE(program.read(QStringLiteral("cpeagent.conf")), kAgentConfiguration);
    QCOMPARE(program.read(QStringLiteral("filterConfig.conf")), kFilterWritten);
    QVERIFY(!program.datapathProcesses().isEmpty());

    const QString token = program.setting(QStringLiteral("TOKEN")).toString();
    QVERIFY(!token.isEmpty());
    QCOMPARE(program.setting(QStringLiteral("PASSWORD")).toString(),
             QString(kPassword.size(), QLatin1Char('*')));
    const QFileDevice::Permissions others =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    QVERIFY(!(QFileInfo(program.settingsFile()).permissions() & others));
    QVERIFY(!program.log().contains(token));
    QVERIFY(!program.log().contains(kPassword));

    QVERIFY(driver.stop());
    const QList<QJsonObject> notices =
        m_scene.service().requests(QStringLiteral("/api/mobile/v2/disconnect"));
    QCOMPARE(notices.size(), 1);
    const QJsonObject notice =
        QJsonDocument::fromJson(notices.first().value(QStringLiteral("body")).toString().toUtf8())
            .object();
    QCOMPARE(notice.value(QStringLiteral("mobileActionLogType")).toInt(), 1);
    QVERIFY(waitFor([&] { return program.datapathProcesses().isEmpty(); }));

    QVERIFY(m_scene.app().press(QStringLiteral("Connect")));
    QVERIFY(driver.awaitConnected());
    QVERIFY(!program.datapathProcesses().isEmpty());
    QVERIFY(driver.quit());
    QCOMPARE(program.awaitExit(5000), 0);
    QCOMPARE(program.datapathProcesses(), QList<qint64>());
    QCOMPARE(m_scene.service().violations(), QStringList());
}

void JourneyTest::secondCopyLeavesTheFirstAlone()
{
    support::StagedProgram& program = m_scene.program();
    QVERIFY(startRemembered());
    const qint64 first = program.pid();
    const QByteArray settings = program.settingsBytes();
    const QString logBefore = program.log();

    QCOMPARE(program.runSecondCopy(5000), 0);

    QCOMPARE(program.pid(), first);
    QCOMPARE(program.settingsBytes(), settings);
    // What the first copy wrote is still there, and nobody started up since.
    const QString logAfter = program.log();
    QVERIFY(logAfter.startsWith(logBefore));
    QCOMPARE(logAfter.count(kStarted), 1);
    // The agent still reaches the first copy: it can stop and connect again.
    QVERIFY(m_scene.driver().stop());
    QVERIFY(m_scene.app().press(QStringLiteral("Connect")));
    QVERIFY(m_scene.driver().awaitConnected());

    QCOMPARE(program.runSecondCopy(5000), 0);
    QVERIFY(m_scene.driver().quit());
    QCOMPARE(m_scene.service().violations(), QStringList());
}

void JourneyTest::savedLoginConnectsWithoutAClick()
{
    QVERIFY(startRemembered());
    QVERIFY(m_scene.driver().awaitTraffic());
    QVERIFY(m_scene.program().log().contains(QStringLiteral("Reconnecting")));
    QVERIFY(!m_scene.program().log().contains(QStringLiteral("Manual connect triggered")));
    QVERIFY(m_scene.driver().quit());
    QCOMPARE(m_scene.service().violations(), QStringList());
}

void JourneyTest::crashDoesNotLockOut()
{
    support::StagedProgram& program = m_scene.program();
    QVERIFY(startRemembered());
    program.killClient();
    QVERIFY(QFileInfo::exists(program.path(QStringLiteral("UI_SOCKET"))));
    QVERIFY(!program.datapathProcesses().isEmpty());

    // The datapath outlived the client; a new client takes over all the same.
    QVERIFY(program.start());
    QVERIFY(m_scene.driver().awaitConnected());
    QCOMPARE(program.runSecondCopy(5000), 0);
    QVERIFY(m_scene.driver().quit());
    QCOMPARE(program.datapathProcesses(), QList<qint64>());
    QCOMPARE(m_scene.service().violations(), QStringList());
}

QTEST_GUILESS_MAIN(JourneyTest)
#include "JourneyTest.moc"
