#include "diagnosis/DiagnosisBundle.h"
#include "diagnosis/DiagnosisOutcome.h"
#include "diagnosis/DisplayReport.h"
#include "support/Rows.h"

class DiagnosisDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void names()
    {
        const auto row = checked(
            [](const char* log, const char* name) { QCOMPARE(diagnosis::bundleName(log), name); });
        row("agent", "tq_agent.log.1", "cpeagent.log.1");
        row("datapath", "tarvelin_datapath.log", "tqconn.log");
        row("service", "tarvelin_serviced.", "service.");
        row("another", "tq_agent2.log", "tq_agent2.log");
        row("no dot", "tq_agent", "cpeagent");
        QCOMPARE(diagnosis::archiveName("SHORT", "20300102_030405"),
                 "linux_SHORT_20300102_030405.tar.gz");
    }

    void reports()
    {
        using Error = QNetworkReply::NetworkError;
        const auto row = checked([](int status, Error error, int code) {
            const auto report = diagnosis::uploadReport(OrchReply({}, status, error, "why"), 7);
            QCOMPARE(report.errorCode, code);
            QCOMPARE(report.uploaded, code == 200);
            QCOMPARE(report.reason, code == 200 ? QString() : "why");
            QCOMPARE(report.uploadedTime, 7);
        });
        row("taken", 200, Error::NoError, 200);
        row("broken off behind it", 200, Error::RemoteHostClosedError, 28);
        row("refused", 404, Error::ContentNotFoundError, 10001);
        row("nobody there", 0, Error::ConnectionRefusedError, 10001);
        row("another success", 201, Error::NoError, 10001);
    }

    void displays()
    {
        DisplayValues values;
        const DisplayValues::Screen screen{"A", {500, 300}, {0, 0, 1920, 1080},
                                           {},  {},         QVector<qreal>(6, 144.0)};
        values.screens = {screen, screen};
        DisplayProbes probes;
        const auto text = [&] { return displayReport(values, probes).join('\n'); };
        qunsetenv("WAYLAND_DISPLAY");
        const QString bare = text();
        QVERIFY(bare.startsWith(QString(44, '=') + "\n       DPI / Display Diagnostics\n"));
        QVERIFY(bare.contains("\n  WAYLAND_DISPLAY: \n"));
        QVERIFY(bare.contains("\n  GDK_SCALE: \"\"\n"));
        QVERIFY(bare.contains("\n\n  --- Screen 0 : A ---\n"));
        QVERIFY(bare.contains("\n\n  --- Screen 1 : A ---\n"));
        QCOMPARE(bare.count("    Scale Factor Estimate (logicalDPI/96): 1.5\n"), 2);
        QVERIFY(bare.contains("\n    (Unable to query xrdb)\n"));
        probes.xrdbAnswered = true;
        QVERIFY(text().contains("\n    (No DPI/Xft related entries found)\n"));
        probes.xrdb = "Other: 1\n  xft.DPI:\t96 \n";
        probes.kdeglobals = "[KScreen]\nScaleFactor=2\n";
        probes.textScalingFactor = "1.25";
        QVERIFY(text().contains("[X11 DPI Configuration]\n    xft.DPI:\t96\n\n[Desktop"));
        QVERIFY(text().contains("\n  GNOME text-scaling-factor: 1.25\n  KDE: ScaleFactor=2\n==="));
    }
};

QTEST_GUILESS_MAIN(DiagnosisDecisionsTest)
#include "DiagnosisDecisionsTest.moc"
