// The ways a login can go, from outside: the built client against a service in one situation after
// the other.
#include "support/Scene.h"
#include "support/Wait.h"

#include <QTest>

class LoginOutcomesTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();
    void anAnnouncedMaintenanceStopsTheFirstStartOnly();
    void thePrimaryLookupIsDown();
    void messages_data();
    void messages();
    void a502OfTheConnection_data();
    void a502OfTheConnection();

private:
    support::Scene m_scene;
};

void LoginOutcomesTest::initTestCase()
{
    QVERIFY2(m_scene.start(), qPrintable(m_scene.error()));
    QVERIFY(m_scene.rememberLogin());
}

void LoginOutcomesTest::init()
{
    QVERIFY(m_scene.service().command({{QStringLiteral("well"), true}}));
}

void LoginOutcomesTest::cleanup()
{
    const QString log = m_scene.program().log();
    if (QTest::currentTestFailed()) {
        qInfo("%s", qPrintable(m_scene.app().dump()));
        qInfo("%s", qPrintable(log));
    }
    m_scene.program().killEverything();
    QVERIFY(!log.isEmpty());
    QVERIFY(!log.contains(m_scene.account().password));
    QVERIFY(!log.contains(m_scene.token()));
    QVERIFY(!log.contains(QStringLiteral("simMiddle")));
    QVERIFY(!log.contains(QStringLiteral("simOtpMiddle")));
    QVERIFY(!log.contains(QStringLiteral("JBSWY3DPEHPK3PXP")));
    QCOMPARE(m_scene.service().violations(), QStringList());
}

void LoginOutcomesTest::anAnnouncedMaintenanceStopsTheFirstStartOnly()
{
    QVERIFY(m_scene.service().enter(QStringLiteral("Maintenance announced")));
    QVERIFY(m_scene.startRemembered());
    QVERIFY(m_scene.driver().awaitText(QStringLiteral("Maintenance Notifications")));
    QVERIFY(m_scene.app().press(QStringLiteral("Confirm")));
    QVERIFY(support::waitFor([this] {
        const QVariant handled = m_scene.program().setting(QStringLiteral("ORCH_UPGRADE_TASK_ID"));
        return handled.toStringList().join(QString()).contains(QStringLiteral("notice-"));
    }));
    m_scene.program().killEverything();

    QVERIFY(m_scene.program().start()); // with what the first start has learned
    QVERIFY(m_scene.driver().awaitConnected());
}

void LoginOutcomesTest::thePrimaryLookupIsDown()
{
    QVERIFY(m_scene.service().enter(QStringLiteral("Primary lookup down")));
    QVERIFY(m_scene.startRemembered());
    QVERIFY(m_scene.driver().awaitConnected());
}

void LoginOutcomesTest::messages_data()
{
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* situation, const char* text) {
        QTest::newRow(situation) << QString::fromLatin1(situation) << QString::fromLatin1(text);
    };
    row("Wrong password", "1001 The username or the password is wrong.");
    row("Token expired", "6027 ");
    row("Message code", "6014 ");
    row("Authenticator code", "6014 ");
    row("Client must be upgraded", "Your client is outdated");
    row("Client too old", "This version of the client is no longer supported.");
    row("Device disabled", "no longer permitted");
    row("502 without a maintenance", "6046 ");
}

void LoginOutcomesTest::messages()
{
    QFETCH(QString, situation);
    QFETCH(QString, text);
    QVERIFY(m_scene.service().enter(situation));
    QVERIFY(m_scene.startRemembered());
    QVERIFY(m_scene.driver().awaitText(text));
    QVERIFY(m_scene.driver().isResponsive());
}

void LoginOutcomesTest::a502OfTheConnection_data()
{
    QTest::addColumn<QString>("situation");
    QTest::addColumn<QString>("text");
    QTest::newRow("maintenance") << "502 during a maintenance"
                                 << "Maintenance and Upgrade Notifications";
    QTest::newRow("none") << "502 without a maintenance"
                          << "6046 ";
}

void LoginOutcomesTest::a502OfTheConnection()
{
    QFETCH(QString, situation);
    QFETCH(QString, text);
    QVERIFY(m_scene.startRemembered());
    QVERIFY(m_scene.driver().awaitConnected());
    QVERIFY(m_scene.driver().stop());
    QVERIFY(m_scene.service().enter(situation));
    QVERIFY(m_scene.app().press(QStringLiteral("Connect")));
    QVERIFY(m_scene.driver().awaitText(text));
}

QTEST_GUILESS_MAIN(LoginOutcomesTest)
#include "LoginOutcomesTest.moc"
