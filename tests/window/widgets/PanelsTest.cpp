#include "app/Deployment.h"
#include "main/DlgMainUi.h"
#include "main/widgeChronometer.h"
#include "widgets/QLabelAnim.h"
#include "widgets/Style.h"
#include "widgets/WidgeAbout.h"
#include "window/widgets/Looks.h"

class PanelsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { looks::prepare(); }
    void cleanup() { platform().clock = &QDateTime::currentMSecsSinceEpoch; }

    void aboutOffersOnlyWhatIsNew()
    {
        const auto row = checked([](const QString& version, bool showNew, bool failed,
                                    const QString& text, bool offered) {
            WidgeAbout about;
            about.setStyleSheet(styleSheetFor("main"));
            about.resize(528, 352);
            about.show();
            QSignalSpy requested(&about, &WidgeAbout::newVersionRequested);
            auto* button = about.findChild<QPushButton*>("btnNewVersion");
            auto* spinner = about.findChild<QLabelAnim*>("m_rotatePng");
            auto* timer = spinner->findChild<QTimer*>("m_AnimTimer");

            about.startCheck();
            QVERIFY(spinner->isVisible() && timer->isActive() && !button->isVisible());
            about.showVersion(version, showNew, failed);
            QVERIFY(!spinner->isVisible() && !timer->isActive() && button->isVisible());
            QCOMPARE(button->text(), text);
            QCOMPARE(about.findChild<QLabel*>("labelUpgradeIcon")->isVisible(), offered);
            QCOMPARE(looks::clipped(&about), QStringList());
            QCOMPARE(looks::unnamed(&about), QStringList());
            QTest::mouseClick(button, Qt::LeftButton);
            QCOMPARE(requested.size(), offered ? 1 : 0);
        });
        const QString latest = "Already the Latest Version";
        row("new", "6.2.0", true, false, "Discover A New Version 6.2.0", true);
        row("not to be shown", "6.2.0", false, false, latest, false);
        row("new without a name", "", true, false, latest, false);
        row("failed", "", false, true, "Check failed, please try again", false);
    }

    void aboutLinksOpenOutside()
    {
        for (const bool chinese : {false, true}) {
            const looks::Language language(chinese);
            platform().clock = [] { return QDateTime(QDate(2031, 5, 6), {}).toMSecsSinceEpoch(); };
            WidgeAbout about;
            about.resize(528, 352);
            about.show();
            const auto label = [&about](const char* name) {
                return about.findChild<QLabel*>(name);
            };
            QVERIFY(label("labelVersion")->text().endsWith("6.1.20"));
            QCOMPARE(label("labelMaker")->text(), deployment::makerName());
            QVERIFY(label("labelRights")->text().contains("© 2031 " + deployment::makerName()));
            QCOMPARE(looks::clipped(&about), QStringList());
            QCOMPARE(looks::opened(label("labelLinks")),
                     QStringList({deployment::userAgreementUrl(chinese),
                                  deployment::privacyPolicyUrl(chinese)}));
        }
    }

    void connectedTimeFits()
    {
        for (const bool chinese : {false, true}) {
            const looks::Language language(chinese);
            QDialog window;
            window.setStyleSheet(styleSheetFor("main"));
            const DlgMainUi ui(&window);
            const QRect place = ui.m_Chronometer->geometry();
            window.show();
            const qint64 start = platform().clock();
            ui.m_Chronometer->start();
            for (qint64 days : {20000, 365, 2, 1, 0}) {
                platform().clock = [start, days] { return start + days * 86400000; };
                QVERIFY(QMetaObject::invokeMethod(ui.m_Chronometer, "onChangeTimeTick"));
                QCOMPARE(looks::clipped(ui.m_Chronometer), QStringList());
                QVERIFY(window.rect().contains(ui.m_Chronometer->geometry()));
                QCOMPARE(ui.m_Chronometer->pos(), place.topLeft());
            }
            QCOMPARE(ui.m_Chronometer->geometry(), place);
        }
    }

    void fieldsSpeakTheLanguage()
    {
        for (const bool chinese : {false, true}) {
            const looks::Language language(chinese);
            QLineEdit field;
            const std::unique_ptr<QMenu> menu(field.createStandardContextMenu());
            QVERIFY(menu->actions().first()->text().startsWith(chinese ? "撤消" : "&Undo"));
        }
    }
};

QTEST_MAIN(PanelsTest)
#include "PanelsTest.moc"
