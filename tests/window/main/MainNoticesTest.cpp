#include "upgrade/DlgUpgrade.h"
#include "window/main/SessionScene.h"

#include <QFocusEvent>

using sim::Fault;

namespace {

constexpr char kNotice[] = "/api/mobile/v2/upgradeNotice";
constexpr char kConnect[] = "/api/mobile/v2/connect";
constexpr char kUpgrade[] = "/s/mobile/v1/upgrade";

} // namespace

/// What the main window tells beside the session: maintenance, new versions, and why a session
/// has ended.
class MainNoticesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<SessionScene>(); }

    void cleanup()
    {
        qApp->setProperty("OrchUpgradeNoticeTime", QVariant());
        QCOMPARE(SessionScene::end(m_scene), QString());
    }

    void maintenanceIsAskedForOnFocusReturn_data()
    {
        QTest::addColumn<int>("fromLogin"); // minutes that the login left behind
        QTest::addColumn<int>("tooEarly");  // seconds
        QTest::newRow("no value") << 0 << 3600;
        QTest::newRow("five minutes") << 5 << 300;
    }

    void maintenanceIsAskedForOnFocusReturn()
    {
        QFETCH(int, fromLogin);
        QFETCH(int, tooEarly);
        if (fromLogin != 0)
            qApp->setProperty("OrchUpgradeNoticeTime", fromLogin);
        announce("wait");
        const qint64 built = QDateTime::currentMSecsSinceEpoch();
        platform().clock = [built] { return built; };
        openIdle();
        focus(built + tooEarly * 1000LL);
        ModalGuard notice("OrchUpgradeDialog", [](QDialog* dialog) { dialog->accept(); });
        QCOMPARE(m_scene->service.count(kNotice), 0);
        focus(built + (tooEarly + 1) * 1000LL);
        QTRY_VERIFY(notice.seen());
        QTRY_VERIFY(!QApplication::activeModalWidget());
        // Known now, and not asked for again at once.
        focus(built + (tooEarly + 2) * 1000LL);
        QCOMPARE(m_scene->service.count(kNotice), 1);
        focus(built + (tooEarly + 2 + 3600) * 1000LL);
        QTRY_COMPARE(m_scene->service.count(kNotice), 2);
    }

    void an502DuringAMaintenanceShowsIt()
    {
        announce("run");
        m_scene->service.setFault(kConnect, Fault::withStatus(502));
        ModalGuard notice("OrchUpgradeDialog", [](QDialog* dialog) { dialog->accept(); });
        m_scene->open();
        QTRY_VERIFY(notice.seen());
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(promptText(m_scene->window.get()), QString());
    }

    void aNewVersionIsOffered_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<bool>("marked");
        QTest::newRow("later") << "btnLater" << true;
        QTest::newRow("skip") << "btnSkip" << false;
    }

    void aNewVersionIsOffered()
    {
        QFETCH(QString, button);
        upgrade("6.0.0");
        ModalGuard offer("DlgUpgrade", [button](QDialog* dialog) {
            QTest::mouseClick(dialog->findChild<QPushButton*>(button), Qt::LeftButton);
        });
        openIdle();
        QTRY_VERIFY(offer.seen());
        QTRY_VERIFY(!QApplication::activeModalWidget());
        const QPushButton* about = m_scene->button("btnAbout");
        QTEST(about->styleSheet().contains(QStringLiteral("info_notice.png")), "marked");
        QTEST(about->size() == QSize(15, 12), "marked");
        QCOMPARE(m_scene->child<QTimer>("m_checkUpgradeTimer")->interval(), 45 * 60000);
        QVERIFY(m_scene->child<QTimer>("m_checkUpgradeTimer")->isActive());

        m_scene->child<QPushButton>("btnAbout")->click();
        auto* version = m_scene->child<QPushButton>("btnNewVersion");
        QTRY_COMPARE(version->text(), QStringLiteral("Discover A New Version 6.2.0"));
        QTRY_COMPARE(m_scene->service.count(kUpgrade), 2);
        QTRY_VERIFY(version->isVisible() && version->isEnabled());
        // The user may still ask for it there.
        ModalGuard again("DlgUpgrade", [](QDialog* dialog) { dialog->accept(); });
        version->click();
        QTRY_VERIFY(again.seen());
    }

    void aForcedUpgradeEndsTheSession()
    {
        upgrade("6.2.0");
        ModalGuard forced("DlgForceUpgrade", [](QDialog* dialog) {
            part<QPushButton>(dialog, "btnUpgrade")->click(); // leaves it open
            QVERIFY(dialog->isVisible());
            part<QPushButton>(dialog, "btnClose")->click();
        });
        m_scene->open();
        QTRY_COMPARE(m_scene->quits, 1);
        QVERIFY(forced.seen());
        QCOMPARE(m_scene->started, QStringList{QStringLiteral("-logout")});
        QVERIFY(!WindowScene::setting(ConfigUtil::TOKEN).toString().isEmpty());
    }

    void aFailedCheckSaysSoAndIsRepeated()
    {
        m_scene->service.setFault(kUpgrade, Fault::withStatus(500));
        openIdle();
        QTRY_VERIFY(m_scene->child<QTimer>("m_checkUpgradeTimer")->isActive());
        QCOMPARE(m_scene->child<QTimer>("m_checkUpgradeTimer")->interval(), 30 * 60000);
        m_scene->child<QPushButton>("btnAbout")->click();
        auto* version = m_scene->child<QPushButton>("btnNewVersion");
        QTRY_COMPARE(version->text(), QStringLiteral("Check failed, please try again"));
        QVERIFY(!version->isEnabled());
        fireTimer(m_scene->window.get(), "m_checkUpgradeTimer");
        QTRY_COMPARE(m_scene->service.count(kUpgrade), 3);
    }

    void theEndOfASessionIsExplained_data()
    {
        QTest::addColumn<int>("reason");
        QTest::addColumn<QByteArray>("dialog");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("tokenKept");
        QTest::newRow("forced") << 3 << QByteArray("CommonTipsDialog")
                                << "has been forcibly logged out" << false;
        QTest::newRow("account changed")
            << 5 << QByteArray("CommonTipsDialog") << "extension property of your account" << false;
        QTest::newRow("password changed")
            << 1 << QByteArray("DlgChangePassPrompt") << "Password has been changed" << true;
    }

    void theEndOfASessionIsExplained()
    {
        QFETCH(int, reason);
        QFETCH(QByteArray, dialog);
        QFETCH(QString, text);
        m_scene->service.revokeSessions(reason);
        QString shown;
        ModalGuard explanation(dialog, [&shown](QDialog* open) {
            for (const QLabel* label : open->findChildren<QLabel*>())
                shown += label->text();
            open->accept();
        });
        m_scene->open();
        QTRY_COMPARE(m_scene->quits, 1);
        QVERIFY(explanation.seen());
        QVERIFY2(shown.contains(text), qPrintable(shown));
        QVERIFY(reason != 3 || shown.remove(QChar(0x200b)).contains(m_scene->username));
        QCOMPARE(m_scene->started, QStringList{QStringLiteral("-logout")});
        QTEST(!WindowScene::setting(ConfigUtil::TOKEN).toString().isEmpty(), "tokenKept");
    }

private:
    // Without a session: the connect request fails.
    void openIdle()
    {
        m_scene->service.setFault(kConnect, Fault::withStatus(503));
        m_scene->open();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
    }

    void focus(qint64 now)
    {
        platform().clock = [now] { return now; };
        QFocusEvent event(QEvent::FocusIn);
        QApplication::sendEvent(m_scene->window.get(), &event);
    }

    void announce(const char* state)
    {
        m_scene->service.edit([state](sim::Scenario& scenario) {
            scenario.noticeReply =
                QJsonObject{{"code", 0},       {"type", "upgrade"},      {"id", "n1"},
                            {"state", state},  {"startsInMinutes", -60}, {"endsInMinutes", 60},
                            {"noticeTime", 60}};
        });
    }

    void upgrade(const char* minVersion)
    {
        m_scene->service.edit([minVersion](sim::Scenario& scenario) {
            scenario.upgradeReply = QJsonObject{{"code", 0},
                                                {"version", "6.2.0"},
                                                {"minVersion", minVersion},
                                                {"checkingPeriod", 45},
                                                {"releaseNoteEn", "Faster."}};
        });
    }

    std::unique_ptr<SessionScene> m_scene;
};

QTEST_MAIN(MainNoticesTest)
#include "MainNoticesTest.moc"
