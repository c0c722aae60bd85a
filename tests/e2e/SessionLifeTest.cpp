// What a connected session goes through, from outside: the service's orders, a datapath that dies,
// and every way out, with the program really starting anew.
#include "support/Scene.h"
#include "support/TrayHost.h"
#include "support/Wait.h"

#include <QTest>

#include <csignal>

using support::ChildProcess;
using support::Kind;
using support::waitFor;

namespace {

constexpr char kConnect[] = "/api/mobile/v2/connect";
constexpr char kDisconnect[] = "/api/mobile/v2/disconnect";
constexpr char kSignout[] = "/api/mobile/v2/signout";

} // namespace

class SessionLifeTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void theServiceOrders_data();
    void theServiceOrders();
    void theServiceEndsTheSession_data();
    void theServiceEndsTheSession();
    void aKilledDatapathIsBackByItself();
    void theAccountIsSwitched();
    void theTrayOpensAndQuits();
    void connectingAndStoppingLeavesNothingBehind();

private:
    int asked(const char* path);
    bool startsAnewAfter(qint64 pid);

    support::Scene m_scene;
    std::unique_ptr<support::TrayHost> m_tray;
};

void SessionLifeTest::initTestCase()
{
    QVERIFY2(m_scene.start(), qPrintable(m_scene.error()));
    const QProcessEnvironment session = m_scene.desktop().session();
    m_tray = std::make_unique<support::TrayHost>(
        session.value(QStringLiteral("DBUS_SESSION_BUS_ADDRESS")));
    QVERIFY(m_tray->isUp());
}

void SessionLifeTest::init()
{
    // The test before may have ended the session for good.
    if (m_scene.program().setting(QStringLiteral("TOKEN")).toString().isEmpty())
        QVERIFY(m_scene.rememberLogin());
    QVERIFY(m_scene.service().reset());
    const QJsonObject quick{{QStringLiteral("heartbeatInterval"), 1}};
    QVERIFY(m_scene.service().command(
        {{QStringLiteral("scenario"), QJsonObject{{QStringLiteral("connectReply"), quick}}}}));
    QVERIFY(m_scene.startRemembered());
    QVERIFY(m_scene.driver().awaitConnected());
}

void SessionLifeTest::cleanup()
{
    const QString log = m_scene.program().log();
    if (QTest::currentTestFailed()) {
        qInfo("%s", qPrintable(m_scene.app().dump()));
        qInfo("%s", qPrintable(log));
    }
    m_scene.program().killEverything();
    QVERIFY(!log.contains(m_scene.token()));
    QVERIFY(!log.contains(m_scene.account().password));
    QCOMPARE(m_scene.service().violations(), QStringList());
}

int SessionLifeTest::asked(const char* path)
{
    return m_scene.service().requests(QLatin1String(path)).size();
}

// True once another process than `pid` shows the login window's second page.
bool SessionLifeTest::startsAnewAfter(qint64 pid)
{
    const auto another = [this, pid] {
        const qint64 now = m_scene.program().pid();
        return now != 0 && now != pid;
    };
    return waitFor(another, 20000) &&
           m_scene.app().await(Kind::Field, QStringLiteral("Username")).isValid();
}

void SessionLifeTest::theServiceOrders_data()
{
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QString>("prompt");
    QTest::addColumn<QString>("reason");
    QTest::addColumn<int>("connects");
    QTest::newRow("reconnect") << "Reconnect, with a reason"
                               << "" // the connection's own words may already stand there
                               << "[ERROR] The gateway is being moved." << 2;
    QTest::newRow("disconnect") << "Disconnect, no reason"
                                << "message from the server for disconnecting to the network."
                                << "[ERROR] Disconnecting due to receiving ORCH notification." << 1;
}

void SessionLifeTest::theServiceOrders()
{
    QFETCH(QString, situation);
    QFETCH(QString, prompt);
    QFETCH(QString, reason);
    QFETCH(int, connects);
    QVERIFY(m_scene.service().enter(situation));
    QVERIFY(waitFor([&] { return m_scene.program().log().contains(reason); }, 20000));
    QVERIFY(prompt.isEmpty() || m_scene.driver().awaitText(prompt));
    if (connects == 1)
        QVERIFY(m_scene.app().press(QStringLiteral("Connect")));
    QVERIFY(m_scene.driver().awaitConnected());
    QVERIFY(m_scene.driver().awaitTraffic());
    QCOMPARE(asked(kConnect), 2);
    QCOMPARE(asked(kDisconnect), 1);
    QCOMPARE(m_scene.program().log().contains(QStringLiteral("Manual connect triggered")),
             connects == 1);
}

void SessionLifeTest::theServiceEndsTheSession_data()
{
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QString>("explanation");
    QTest::addColumn<QString>("button");
    QTest::addColumn<QString>("message");
    QTest::newRow("forced") << "Log out, forced"
                            << "The account alice@acme.example logged into your device has been "
                               "forcibly logged out on Orchestrator."
                            << "Confirm"
                            << "";
    QTest::newRow("password changed") << "Log out, password changed"
                                      << "Password has been changed,please log in again."
                                      << "OK"
                                      << "";
    QTest::newRow("no reason") << "Log out, no reason"
                               << ""
                               << ""
                               << "6027 ";
}

void SessionLifeTest::theServiceEndsTheSession()
{
    QFETCH(QString, situation);
    QFETCH(QString, explanation);
    QFETCH(QString, button);
    QFETCH(QString, message);
    const qint64 before = m_scene.program().pid();
    QVERIFY(m_scene.service().enter(situation));
    if (!explanation.isEmpty()) {
        QVERIFY(m_scene.driver().awaitText(explanation, 20000));
        QCOMPARE(m_scene.program().pid(), before);
        QVERIFY(m_scene.app().press(button));
    }
    QVERIFY(startsAnewAfter(before));
    QVERIFY(message.isEmpty() || m_scene.driver().awaitText(message));
    QVERIFY(waitFor([&] { return m_scene.program().datapathProcesses().isEmpty(); }));
    QCOMPARE(m_scene.program().setting(QStringLiteral("TOKEN")).toString(), QString());
    QCOMPARE(m_scene.program().setting(QStringLiteral("PASSWORD")).toString(), QString());
    QCOMPARE(asked(kDisconnect), 0);
}

void SessionLifeTest::aKilledDatapathIsBackByItself()
{
    QVERIFY(m_scene.driver().awaitTraffic());
    const QList<qint64> first = m_scene.program().datapathProcesses();
    QVERIFY(!first.isEmpty());
    for (const qint64 pid : first)
        QCOMPARE(kill(static_cast<pid_t>(pid), SIGKILL), 0);
    QVERIFY(waitFor([this] { return asked(kConnect) == 2; }, 20000));
    QVERIFY(m_scene.driver().awaitConnected());
    QVERIFY(m_scene.driver().awaitTraffic());
    QVERIFY(m_scene.program().log().contains(
        QStringLiteral("The datapath process has exited, try to restart.")));
    for (const qint64 pid : m_scene.program().datapathProcesses())
        QVERIFY(!first.contains(pid));
}

void SessionLifeTest::theAccountIsSwitched()
{
    const qint64 before = m_scene.program().pid();
    QVERIFY(m_scene.app().press(QStringLiteral("Quit")));
    QVERIFY(m_scene.app().press(QStringLiteral("Switch Account")));
    QVERIFY(m_scene.app().press(QStringLiteral("Yes")));
    QVERIFY(startsAnewAfter(before));
    QVERIFY(waitFor([this] { return asked(kSignout) == 1; }));
    QCOMPARE(asked(kDisconnect), 1);
    QVERIFY(waitFor([this] {
        return m_scene.program().setting(QStringLiteral("TOKEN")).toString().isEmpty();
    }));
}

void SessionLifeTest::theTrayOpensAndQuits()
{
    QVERIFY(waitFor([this] { return m_tray->toolTip() == QStringLiteral("Veltaro"); }));
    QCOMPARE(m_tray->menu(), (QStringList{QStringLiteral("Open Veltaro"), QStringLiteral("Exit")}));
    QVERIFY(m_scene.app().press(QStringLiteral("Close")));
    QVERIFY(waitFor([this] { return !m_scene.app().find(Kind::Button, "Stop").isValid(); }));
    QVERIFY(!m_scene.program().datapathProcesses().isEmpty());
    QVERIFY(m_tray->choose(QStringLiteral("Open Veltaro")));
    QVERIFY(m_scene.driver().awaitConnected());

    QVERIFY(m_tray->choose(QStringLiteral("Exit")));
    QCOMPARE(m_scene.program().awaitExit(10000), 0);
    QCOMPARE(asked(kDisconnect), 1);
    QCOMPARE(m_scene.program().datapathProcesses(), QList<qint64>());
    QCOMPARE(m_scene.program().setting(QStringLiteral("TOKEN")).toString(), m_scene.token());
}

void SessionLifeTest::connectingAndStoppingLeavesNothingBehind()
{
    const auto cycle = [this] {
        return m_scene.driver().stop() && m_scene.app().press(QStringLiteral("Connect")) &&
               m_scene.driver().awaitConnected();
    };
    QVERIFY(cycle());
    const qint64 pid = m_scene.program().pid();
    const int descriptors = ChildProcess::descriptors(pid);
    const int threads = ChildProcess::threads(pid);
    QVERIFY(descriptors > 0 && threads > 0);
    for (int i = 0; i < 10; ++i)
        QVERIFY(cycle());
    // A connection to the service or a resolver's thread may be idle or gone at either moment.
    constexpr int kIdle = 4;
    QVERIFY(waitFor([&] { return ChildProcess::descriptors(pid) <= descriptors + kIdle; }));
    QVERIFY(waitFor([&] { return ChildProcess::threads(pid) <= threads + kIdle; }));
}

QTEST_GUILESS_MAIN(SessionLifeTest)
#include "SessionLifeTest.moc"
