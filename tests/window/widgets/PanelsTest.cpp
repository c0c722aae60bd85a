#include "app/Deployment.h"
#include "widgets/BackButton.h"
#include "widgets/QLabelAnim.h"
#include "widgets/Style.h"
#include "widgets/WidgeAbout.h"
#include "widgets/WidgeDiagnoseResult.h"
#include "window/widgets/Looks.h"

#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

class PanelsTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { looks::prepare(); }
    void diagnosisNamesItsFindings_data();
    void diagnosisNamesItsFindings();
    void spinnerTurnsAndStops();
    void backButtonDrawsArrowAndText();
    void aboutTellsTheVersion_data();
    void aboutTellsTheVersion();
    void aboutOffersOnlyWhatIsNew();
    void aboutLinksOpenOutside_data();
    void aboutLinksOpenOutside();
};

namespace {

QImage grabbed(QWidget& widget)
{
    return widget.grab().toImage();
}

bool hasInk(const QImage& image, int left, int right)
{
    const QRgb paper = image.pixel(image.width() - 1, 0);
    for (int x = left; x <= right; ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (image.pixel(x, y) != paper)
                return true;
        }
    }
    return false;
}

} // namespace

void PanelsTest::diagnosisNamesItsFindings_data()
{
    QTest::addColumn<bool>("network");
    QTest::addColumn<bool>("orch");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    const QString good = QStringLiteral("Network Normal");
    const QString bad = QStringLiteral("Network Anormaly");
    const QString on = QStringLiteral("Orchestrator Connected");
    const QString off = QStringLiteral("Orchestrator Not Connected");
    QTest::newRow("both") << true << true << good << on;
    QTest::newRow("network only") << true << false << good << off;
    QTest::newRow("orchestrator only") << false << true << bad << on;
    QTest::newRow("neither") << false << false << bad << off;
}

void PanelsTest::diagnosisNamesItsFindings()
{
    QFETCH(bool, network);
    QFETCH(bool, orch);
    WidgeDiagnoseResult panel;
    panel.setStyleSheet(styleSheetFor("main"));
    panel.setDiagnoseResult(network, orch);
    panel.show();
    const auto child = [&panel](const char* name) {
        return panel.findChild<QLabel*>(QLatin1String(name));
    };
    QTEST(child("labelNetwork")->text(), "first");
    QTEST(child("labelOrch")->text(), "second");
    const bool sameIcon = child("labelNetworkIcon")->pixmap(Qt::ReturnByValue).toImage() ==
                          child("labelOrchIcon")->pixmap(Qt::ReturnByValue).toImage();
    QCOMPARE(sameIcon, network == orch);
    QCOMPARE(looks::clipped(&panel), QStringList());
    QCOMPARE(looks::unnamed(&panel), QStringList());
    QTest::mouseClick(panel.findChild<QPushButton*>(QStringLiteral("pushBtnClose")),
                      Qt::LeftButton);
    QVERIFY(!panel.isVisible());
}

void PanelsTest::spinnerTurnsAndStops()
{
    QLabelAnim spinner;
    spinner.resize(16, 16);
    spinner.init(pictureIcon(QStringLiteral("version_loading.png")).pixmap(16, 16));
    auto* timer = spinner.findChild<QTimer*>(QStringLiteral("m_AnimTimer"));
    QVERIFY(!timer->isActive());
    spinner.start();
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 200);
    spinner.stop();
    QVERIFY(!timer->isActive());

    const QImage start = grabbed(spinner);
    const auto tick = [timer] { return QMetaObject::invokeMethod(timer, "timeout"); };
    QVERIFY(tick());
    QVERIFY(grabbed(spinner) != start);
    for (int i = 1; i < 36; ++i)
        QVERIFY(tick());
    QCOMPARE(grabbed(spinner), start);
}

// The application's style sheet draws push buttons itself; the back button must win against it.
void PanelsTest::backButtonDrawsArrowAndText()
{
    QWidget window;
    window.setStyleSheet(styleSheetFor("login"));
    BackButton button(QStringLiteral("Back"), &window);
    button.adjustSize();
    window.show();
    QApplication::setActiveWindow(&window);
    button.clearFocus();
    const QImage image = grabbed(button);
    QVERIFY(hasInk(image, 0, 5));
    QVERIFY(!hasInk(image, 7, 12));
    QVERIFY(hasInk(image, 13, image.width() - 2));
    QVERIFY(image.width() >= 13 + button.fontMetrics().horizontalAdvance(button.text()));
    button.setFocus();
    QVERIFY2(grabbed(button) != image, "the focus cannot be seen");
}

void PanelsTest::aboutTellsTheVersion_data()
{
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("showNew");
    QTest::addColumn<bool>("failed");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("offered");
    const QString latest = QStringLiteral("Already the Latest Version");
    QTest::newRow("new") << QStringLiteral("6.2.0") << true << false
                         << QStringLiteral("Discover A New Version 6.2.0") << true;
    QTest::newRow("not to be shown")
        << QStringLiteral("6.2.0") << false << false << latest << false;
    QTest::newRow("new without a name") << QString() << true << false << latest << false;
    QTest::newRow("latest") << QString() << false << false << latest << false;
    QTest::newRow("failed") << QString() << false << true
                            << QStringLiteral("Check failed, please try again") << false;
}

void PanelsTest::aboutTellsTheVersion()
{
    QFETCH(QString, version);
    QFETCH(bool, showNew);
    QFETCH(bool, failed);
    QFETCH(bool, offered);
    WidgeAbout about;
    about.setStyleSheet(styleSheetFor("main"));
    about.resize(528, 352);
    about.show();
    auto* button = about.findChild<QPushButton*>(QStringLiteral("btnNewVersion"));
    auto* spinner = about.findChild<QLabelAnim*>(QStringLiteral("m_rotatePng"));
    auto* timer = spinner->findChild<QTimer*>(QStringLiteral("m_AnimTimer"));

    about.startCheck();
    QVERIFY(spinner->isVisible() && timer->isActive() && !button->isVisible());
    about.showVersion(version, showNew, failed);
    QVERIFY(!spinner->isVisible() && !timer->isActive() && button->isVisible());
    QTEST(button->text(), "text");
    QCOMPARE(button->isEnabled(), offered);
    QCOMPARE(about.findChild<QLabel*>(QStringLiteral("labelUpgradeIcon"))->isVisible(), offered);
    QCOMPARE(looks::clipped(&about), QStringList());
    QCOMPARE(looks::unnamed(&about), QStringList());
}

void PanelsTest::aboutOffersOnlyWhatIsNew()
{
    WidgeAbout about;
    about.show();
    QSignalSpy requested(&about, &WidgeAbout::newVersionRequested);
    auto* button = about.findChild<QPushButton*>(QStringLiteral("btnNewVersion"));
    about.showVersion(QString(), false, false);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(requested.size(), 0);
    about.showVersion(QStringLiteral("6.2.0"), true, false);
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(requested.size(), 1);
}

void PanelsTest::aboutLinksOpenOutside_data()
{
    QTest::addColumn<bool>("chinese");
    QTest::newRow("English") << false;
    QTest::newRow("Chinese") << true;
}

void PanelsTest::aboutLinksOpenOutside()
{
    QFETCH(bool, chinese);
    const looks::Language language(chinese);
    platform().clock = [] { return QDateTime(QDate(2031, 5, 6), QTime(7, 8)).toMSecsSinceEpoch(); };
    QStringList opened;
    platform().openUrl = [&opened](const QUrl& url) {
        opened.append(url.toString());
        return true;
    };
    WidgeAbout about;
    about.resize(528, 352);
    about.show();
    QApplication::setActiveWindow(&about);
    platform().clock = &QDateTime::currentMSecsSinceEpoch;
    const auto text = [&about](const char* name) {
        return about.findChild<QLabel*>(QLatin1String(name))->text();
    };
    QVERIFY(text("labelVersion").endsWith(QStringLiteral("6.1.20")));
    QCOMPARE(text("labelMaker"), deployment::makerName());
    QVERIFY(text("labelRights").contains(QStringLiteral("© 2031 ") + deployment::makerName()));
    QCOMPARE(looks::clipped(&about), QStringList());

    auto* links = about.findChild<QLabel*>(QStringLiteral("labelLinks"));
    links->setFocus();
    for (int i = 0; i < 2; ++i) {
        QTest::keyClick(links, Qt::Key_Tab);
        QTest::keyClick(links, Qt::Key_Return);
    }
    platform().openUrl = [](const QUrl&) { return false; };
    QCOMPARE(opened, QStringList({deployment::userAgreementUrl(chinese),
                                  deployment::privacyPolicyUrl(chinese)}));
}

QTEST_MAIN(PanelsTest)
#include "PanelsTest.moc"
