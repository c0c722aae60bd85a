#include "sim/Situations.h"
#include "upgrade/DlgUpgrade.h"
#include "window/main/SessionScene.h"

namespace {

constexpr char kNotice[] = "/api/mobile/v2/upgradeNotice";
constexpr char kUpgrade[] = "/s/mobile/v1/upgrade";

} // namespace

/// What the main window tells beside the session: maintenance and new versions.
class MainNoticesTest : public SessionScene
{
    Q_OBJECT

public slots:
    void cleanup() override
    {
        qApp->setProperty("OrchUpgradeNoticeTime", QVariant());
        SessionScene::cleanup();
    }

private slots:
    void maintenanceIsAskedForOnFocusReturn_data()
    {
        const auto row = columns<int, int>("fromLogin", "tooEarly"); // minutes; seconds
        row("no value", 0, 3600);
        row("five minutes", 5, 300);
    }

    void maintenanceIsAskedForOnFocusReturn()
    {
        const auto [fromLogin, tooEarly] = fetched<int, int>("fromLogin", "tooEarly");
        if (fromLogin != 0)
            qApp->setProperty("OrchUpgradeNoticeTime", fromLogin);
        service().edit([](sim::Scenario& now) {
            now.noticeReply = {{"type", "upgrade"},      {"id", "n1"},
                               {"state", "wait"},        {"noticeTime", 60},
                               {"startsInMinutes", -60}, {"endsInMinutes", 60}};
        });
        setClock(QDateTime::currentMSecsSinceEpoch());
        openIdle();
        focusAfter(tooEarly);
        ModalGuard notice("OrchUpgradeDialog");
        QCOMPARE(asked(kNotice), 0);
        focusAfter(1);
        QTRY_VERIFY(notice.seen());
        QTRY_VERIFY(!QApplication::activeModalWidget());
        focusAfter(1); // known now, and not asked for again at once
        QCOMPARE(asked(kNotice), 1);
        focusAfter(3600);
        QTRY_COMPARE(asked(kNotice), 2);
    }

    void a502DuringAMaintenanceShowsIt()
    {
        service().edit([](sim::Scenario& now) {
            now.apply(sim::situationCommand("Maintenance running")["scenario"].toObject());
        });
        answer(kConnect, 502);
        ModalGuard notice("OrchUpgradeDialog");
        open();
        QTRY_VERIFY(notice.seen());
        awaitIdle();
        QVERIFY(!logged("6046 "));
    }

    void aNewVersionIsOffered_data()
    {
        const auto row = columns<QString, bool>("button", "marked");
        row("later", "btnLater", true);
        row("skip", "btnSkip", false);
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
        auto* about = child<QPushButton>("btnAbout");
        QTEST(about->styleSheet().contains("info_notice.png"), "marked");
        QCOMPARE(timer("m_checkUpgradeTimer")->interval(), 45 * 60000);
        QVERIFY(timer("m_checkUpgradeTimer")->isActive());
        about->click();
        auto* version = child<QPushButton>("btnNewVersion");
        QTRY_COMPARE(version->text(), "Discover A New Version 6.2.0");
        QTRY_COMPARE(asked(kUpgrade), 2);
        QTRY_VERIFY(version->isVisible() && version->isEnabled());
        // The user may still ask for it there.
        ModalGuard again("DlgUpgrade");
        version->click();
    }

    void anAnswerUnderTheOfferDoesNotOfferAgain()
    {
        upgrade("6.0.0");
        int offers = 0;
        ModalGuard offer("DlgUpgrade", [this, &offers](QDialog* dialog) {
            ++offers;
            fire("m_checkUpgradeTimer");
            QTRY_VERIFY(logged("check again"));
            part<QPushButton>(dialog, "btnLater")->click();
        });
        openIdle();
        QTRY_COMPARE(offers, 1);
        QTRY_COMPARE(logged("check again"), 2); // decided anew
        settle();
        QVERIFY(!QApplication::activeModalWidget());
    }

    void aForcedUpgradeEndsTheSession()
    {
        upgrade("6.2.0");
        ModalGuard forced("DlgForceUpgrade", [](QDialog* dialog) {
            part<QPushButton>(dialog, "btnUpgrade")->click(); // leaves it open
            QVERIFY(dialog->isVisible());
            part<QPushButton>(dialog, "btnClose")->click();
        });
        open();
        QTRY_COMPARE(scene().quits, 1);
        QCOMPARE(scene().started, QStringList("-logout"));
        QVERIFY(!saved(ConfigUtil::TOKEN).isEmpty());
    }

    void aFailedCheckSaysSoAndIsRepeated()
    {
        answer(kUpgrade, 500);
        openIdle();
        QTRY_VERIFY(timer("m_checkUpgradeTimer")->isActive());
        QCOMPARE(timer("m_checkUpgradeTimer")->interval(), 30 * 60000);
        button("btnAbout")->click();
        auto* version = button("btnNewVersion");
        QTRY_COMPARE(version->text(), "Check failed, please try again");
        QVERIFY(!version->isEnabled());
        fire("m_checkUpgradeTimer");
        QTRY_COMPARE(asked(kUpgrade), 3);
    }

    void recoveryCodesAreShownOnce()
    {
        save(ConfigUtil::OTP_RECOVER_CODE, QStringList{"ABCD1234", "EFGH5678"});
        ModalGuard codes("OtpRecoverCodeDlg",
                         [](QDialog* dialog) { part<QPushButton>(dialog, "btnCopy")->click(); });
        openIdle();
        QTRY_VERIFY(codes.seen());
        QCOMPARE(QApplication::clipboard()->text(), "ABCD1234\nEFGH5678");
        fire("recoveryCodesTimer"); // would not come back with a dialog
        QVERIFY(!logged("ABCD1234"));
    }

private:
    // Without a session: the connect request fails.
    void openIdle()
    {
        answer(kConnect, 503);
        open();
        awaitIdle();
    }

    void focusAfter(int seconds)
    {
        advance(seconds);
        QFocusEvent event(QEvent::FocusIn);
        QApplication::sendEvent(window.get(), &event);
    }

    void upgrade(const QString& minVersion)
    {
        service().edit([&](sim::Scenario& now) {
            now.upgradeReply = {{"version", "6.2.0"},
                                {"minVersion", minVersion},
                                {"checkingPeriod", 45},
                                {"releaseNoteEn", "Faster."}};
        });
    }
};

QTEST_MAIN(MainNoticesTest)
#include "MainNoticesTest.moc"
