#include "upgrade/UpgradePolicy.h"
#include "app/Platform.h"
#include "upgrade/DlgUpgrade.h"
#include "upgrade/InstallerHandover.h"

#include <QDir>
#include <QFile>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

/// When a newer client is offered, and how the user is handed over to the installer.
class UpgradePolicyTest : public QObject
{
    Q_OBJECT

private slots:
    void decision_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("later"); // version and date that an offer was put off with
        QTest::addColumn<QString>("skipped");
        QTest::addColumn<QString>("first"); // of the run; p pops up, m marks, s shows, c counts
        QTest::addColumn<QString>("repeated");
        const QByteArray newer = R"({"version":"6.2.0"})";
        const QByteArray forced = R"({"version":"6.2.0","minVersion":"6.2.0"})";
        const QString today = QStringLiteral("6.2.0 2026-03-05");
        const QString yesterday = QStringLiteral("6.2.0 2026-03-04");
        QTest::newRow("newer") << newer << ""
                               << ""
                               << "pmsc"
                               << "pmsc";
        QTest::newRow("same version") << QByteArray(R"({"version":"6.1.20"})") << ""
                                      << ""
                                      << ""
                                      << "";
        QTest::newRow("more parts are newer") << QByteArray(R"({"version":"6.1.20.1"})") << ""
                                              << ""
                                              << "pmsc"
                                              << "pmsc";
        QTest::newRow("nothing known") << QByteArray("{}") << ""
                                       << ""
                                       << ""
                                       << "";
        QTest::newRow("mistyped") << QByteArray(R"({"version":7,"ignore":"no"})") << ""
                                  << ""
                                  << ""
                                  << "";
        QTest::newRow("put off today") << newer << today << ""
                                       << "msc"
                                       << "msc";
        QTest::newRow("put off yesterday") << newer << yesterday << ""
                                           << "pmsc"
                                           << "pmsc";
        QTest::newRow("put off tomorrow: the clock went back") << newer << "6.2.0 2026-03-06"
                                                               << ""
                                                               << "msc"
                                                               << "pmsc";
        QTest::newRow("another one put off") << newer << "6.1.30 2026-03-05"
                                             << ""
                                             << "pmsc"
                                             << "pmsc";
        QTest::newRow("skipped") << newer << ""
                                 << "6.2.0"
                                 << "s"
                                 << "s";
        QTest::newRow("another one skipped") << newer << ""
                                             << "6.1.30"
                                             << "pmsc"
                                             << "pmsc";
        QTest::newRow("forced and put off") << forced << today << ""
                                            << "pmsc"
                                            << "pmsc";
        QTest::newRow("forced but skipped") << forced << ""
                                            << "6.2.0"
                                            << "s"
                                            << "s";
        QTest::newRow("forced but to be ignored")
            << QByteArray(R"({"version":"6.2.0","minVersion":"6.2.0","ignore":true})") << ""
            << ""
            << ""
            << "";
        QTest::newRow("too old, yet nothing newer")
            << QByteArray(R"({"version":"6.1.20","minVersion":"6.2.0"})") << ""
            << ""
            << ""
            << "";
    }

    void decision()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, later);
        QFETCH(QString, skipped);
        UpgradeChoices choices;
        choices.laterVersion = later.section(QLatin1Char(' '), 0, 0);
        if (!later.isEmpty())
            choices.laterDate = later.section(QLatin1Char(' '), 1);
        choices.skipVersion = skipped;
        const auto decided = [&](bool first) {
            const UpgradeDecision d = decideUpgrade(UpgradeReply::fromJson(body, false), choices,
                                                    QStringLiteral("2026-03-05"), first);
            return QString(d.pop ? "p" : "") + (d.mark ? "m" : "") + (d.showNew ? "s" : "") +
                   (d.counts ? "c" : "");
        };
        QTEST(decided(true), "first");
        QTEST(decided(false), "repeated");
    }

    void theLogNamesTheValues()
    {
        UpgradeChoices choices;
        const UpgradeReply reply = UpgradeReply::fromJson(R"({"version":"6.2.0"})", false);
        QCOMPARE(decideUpgrade(reply, choices, QStringLiteral("2026-03-05"), true).log,
                 QStringLiteral("First check, last version is , new version is 6.2.0, last date "
                                "is 0, now is 2026-03-05"));
    }

    void replyDefaultsAndBounds_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("chinese");
        QTest::addColumn<int>("period");
        QTest::addColumn<QString>("note");
        QTest::newRow("empty") << QByteArray() << false << 600 << "";
        QTest::newRow("short period") << QByteArray(R"({"checkingPeriod":5})") << false << 30 << "";
        QTest::newRow("endless period")
            << QByteArray(R"({"checkingPeriod":2000000000})") << false << 30000 << "";
        const QByteArray notes = R"({"releaseNote":"zh","releaseNoteEn":"en"})";
        QTest::newRow("English") << notes << false << 600 << "en";
        QTest::newRow("Chinese") << notes << true << 600 << "zh";
        QTest::newRow("a note as a number")
            << QByteArray(R"({"releaseNoteEn":1})") << false << 600 << "";
    }

    void replyDefaultsAndBounds()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, chinese);
        const UpgradeReply reply = UpgradeReply::fromJson(body, chinese);
        QTEST(reply.checkingPeriod, "period");
        QTEST(reply.note, "note");
    }

    void linesAreBrokenToWidth_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("broken");
        QTest::newRow("fits") << "abcd"
                              << "abcd";
        QTest::newRow("one more") << "abcde"
                                  << "abcd\ne";
        QTest::newRow("own breaks stay") << "ab\n\ncdefg"
                                         << "ab\n\ncdef\ng";
        QTest::newRow("a pair stays together")
            << QStringLiteral("abc\U0001F600d") << QStringLiteral("abc\U0001F600\nd");
        QTest::newRow("empty") << ""
                               << "";
    }

    void linesAreBrokenToWidth()
    {
        QFETCH(QString, text);
        const auto characters = [](const QString& line) {
            int width = 0;
            for (const QChar c : line)
                width += c.isHighSurrogate() ? 0 : 1;
            return width;
        };
        QTEST(brokenToWidth(text, 4, characters), "broken");
    }

    void desktopEntries_data()
    {
        QTest::addColumn<QByteArray>("entry");
        QTest::addColumn<QString>("program");
        QTest::newRow("with field code")
            << QByteArray("[Desktop Entry]\nName=S\nExec=/usr/bin/store %U\n") << "/usr/bin/store";
        QTest::newRow("alone on its line")
            << QByteArray("[Desktop Entry]\nExec=/usr/bin/store\nIcon=a b\n") << "/usr/bin/store";
        QTest::newRow("action before") << QByteArray("[Desktop Action x]\nExec=/bad x\n[Desktop "
                                                     "Entry]\nExec = \"/opt/my store\" %U\n")
                                       << "/opt/my store";
        QTest::newRow("other keys")
            << QByteArray("[Desktop Entry]\nTryExec=/bad\nExecutable=/bad\nComment=Exec=/bad x\n")
            << "";
        QTest::newRow("action only") << QByteArray("[Desktop Action x]\nExec=/bad x\n") << "";
        QTest::newRow("empty") << QByteArray() << "";
    }

    void desktopEntries()
    {
        QFETCH(QByteArray, entry);
        QTEST(desktopEntryProgram(entry), "program");
    }

    void handover_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QString>("url");
        QTest::addColumn<QString>("program");
        QTest::addColumn<bool>("libraryPathKept");
        QTest::newRow("ordinary") << QByteArray("GNOME") << ""
                                  << "/usr/bin/deepin-store" << false;
        QTest::newRow("unset") << QByteArray() << ""
                               << "/usr/bin/deepin-store" << false;
        QTest::newRow("upper case") << QByteArray("UKUI") << ""
                                    << "/usr/bin/kylin-store" << true;
        QTest::newRow("no web page") << QByteArray("ukui") << "file:///tmp/x.sh"
                                     << "/usr/bin/kylin-store" << true;
    }

    void handover()
    {
        QFETCH(QByteArray, desktop);
        QFETCH(QString, url);
        QTemporaryDir root;
        const QString folder = root.path() + QStringLiteral("/usr/share/applications/");
        QVERIFY(QDir().mkpath(folder));
        for (const char* store : {"deepin-app-store", "kylin-software-center"}) {
            QFile entry(folder + QLatin1String(store) + QStringLiteral(".desktop"));
            QVERIFY(entry.open(QIODevice::WriteOnly));
            entry.write(QByteArray("[Desktop Entry]\nExec=/usr/bin/") +
                        QByteArray(store).split('-').first() + "-store %U\n");
        }
        platform().fileRoot = root.path();
        QString opened;
        QString started;
        bool libraryPath = false;
        platform().openUrl = [&](const QUrl& address) {
            opened = address.toString();
            return true;
        };
        platform().startDetached = [&](const QString& program,
                                       const QProcessEnvironment& environment) {
            started = program;
            libraryPath = environment.contains(QStringLiteral("LD_LIBRARY_PATH"));
            return true;
        };
        qputenv("XDG_CURRENT_DESKTOP", desktop);
        qputenv("LD_LIBRARY_PATH", "/opt/veltaro");
        handOverToInstaller(url);
        qunsetenv("LD_LIBRARY_PATH");
        qputenv("XDG_CURRENT_DESKTOP", "");
        platform() = Platform();
        QCOMPARE(opened, QString());
        QTEST(started, "program");
        QTEST(libraryPath, "libraryPathKept");
    }
};

QTEST_GUILESS_MAIN(UpgradePolicyTest)
#include "UpgradePolicyTest.moc"
