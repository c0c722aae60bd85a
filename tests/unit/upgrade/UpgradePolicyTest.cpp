#include "upgrade/UpgradePolicy.h"
#include "app/Platform.h"
#include "app/ProcessRun.h"
#include "app/Startup.h"
#include "orch/JsonUtil.h"
#include "support/Rows.h"
#include "unit/Files.h"
#include "upgrade/DlgUpgrade.h"
#include "upgrade/InstallerHandover.h"

#include <QDesktopServices>

/// When a newer client is offered, and how the user is handed over to the installer.
class UpgradePolicyTest : public QObject
{
    Q_OBJECT

private slots:
    void decision()
    {
        // "later": version and date that an offer was put off with. Then what follows at the first
        // check of the run and at a repeated one: p pops up, m marks, s shows, c counts.
        const auto row = checked([](const QByteArray& body, const QString& later,
                                    const QString& skipped, const QString& first,
                                    const QString& repeated) {
            UpgradeChoices choices;
            choices.laterVersion = later.section(' ', 0, 0);
            if (!later.isEmpty())
                choices.laterDate = later.section(' ', 1);
            choices.skipVersion = skipped;
            const auto reply = UpgradeReply::fromJson(JsonUtil::object(json(body)), false);
            for (const bool isFirst : {true, false}) {
                const UpgradeDecision d =
                    decideUpgrade({reply.version, reply.isNewer(), reply.isForced(), reply.ignore},
                                  choices, "2026-03-05", isFirst);
                QCOMPARE(QString(d.pop ? "p" : "") + (d.mark ? "m" : "") + (d.showNew ? "s" : "") +
                             (d.counts ? "c" : ""),
                         isFirst ? first : repeated);
            }
        });
        const QByteArray newer = "{'version':'6.2.0'}";
        const QByteArray forced = "{'version':'6.2.0','minVersion':'6.2.0'}";
        row("newer", newer, "", "", "pmsc", "pmsc");
        row("same version", "{'version':'6.1.20'}", "", "", "", "");
        row("more parts are newer", "{'version':'6.1.20.1'}", "", "", "pmsc", "pmsc");
        row("nothing known", "{}", "", "", "", "");
        row("mistyped", "{'version':7,'ignore':'no'}", "", "", "", "");
        row("put off today", newer, "6.2.0 2026-03-05", "", "msc", "msc");
        row("put off yesterday", newer, "6.2.0 2026-03-04", "", "pmsc", "pmsc");
        row("the clock went back", newer, "6.2.0 2026-03-06", "", "msc", "pmsc");
        row("another one put off", newer, "6.1.30 2026-03-05", "", "pmsc", "pmsc");
        row("skipped", newer, "", "6.2.0", "s", "s");
        row("another one skipped", newer, "", "6.1.30", "pmsc", "pmsc");
        row("forced and put off", forced, "6.2.0 2026-03-05", "", "pmsc", "pmsc");
        row("forced but skipped", forced, "", "6.2.0", "s", "s");
        row("forced but ignored", "{'version':'6.2.0','minVersion':'6.2.0','ignore':true}", "", "",
            "", "");
        row("too old, yet nothing newer", "{'version':'6.1.20','minVersion':'6.2.0'}", "", "", "",
            "");
    }

    void theLogNamesTheValues()
    {
        QCOMPARE(decideUpgrade({"6.2.0", true, false, false}, {}, "2026-03-05", true).log,
                 QString("First check, last version is , new version is 6.2.0, last date is 0, now "
                         "is 2026-03-05"));
    }

    void replyDefaultsAndBounds()
    {
        const auto read = [](const char* body, bool chinese = false) {
            const auto reply = UpgradeReply::fromJson(JsonUtil::object(json(body)), chinese);
            return QString::number(reply.checkingPeriod) + ' ' + reply.note;
        };
        QCOMPARE(read(""), QString("600 "));
        QCOMPARE(read("{'checkingPeriod':5}"), QString("30 "));
        QCOMPARE(read("{'checkingPeriod':2000000000}"), QString("30000 "));
        QCOMPARE(read("{'releaseNote':'zh','releaseNoteEn':'en'}"), QString("600 en"));
        QCOMPARE(read("{'releaseNote':'zh','releaseNoteEn':'en'}", true), QString("600 zh"));
        QCOMPARE(read("{'releaseNoteEn':1}"), QString("600 "));
    }

    void linesAreBrokenToWidth()
    {
        const auto broken = [](const QString& text) {
            return brokenToWidth(text, 4, [](const QString& line) { return line.toUcs4().size(); });
        };
        QCOMPARE(broken("abcd"), QString("abcd"));
        QCOMPARE(broken("abcde"), QString("abcd\ne"));
        QCOMPARE(broken("ab\n\ncdefg"), QString("ab\n\ncdef\ng"));
        QCOMPARE(broken("abc\U0001F600d"), QString("abc\U0001F600\nd")); // a pair stays together
        QCOMPARE(broken(""), QString());
    }

    void desktopEntries()
    {
        const auto check = [](const QByteArray& entry, const char* program) {
            QCOMPARE(desktopEntryProgram(entry), QString(program));
        };
        check("[Desktop Entry]\nName=S\nExec=/bin/store %U\n", "/bin/store");
        check("[Desktop Entry]\nExec=/bin/store\nIcon=a b\n", "/bin/store");
        check("[Desktop Action x]\nExec=/bad x\n[Desktop Entry]\nExec = \"/opt/my store\" %U\n",
              "/opt/my store");
        check("[Desktop Entry]\nTryExec=/bad\nExecutable=/bad\nComment=Exec=/bad x\n", "");
        check("[Desktop Action x]\nExec=/bad x\n", "");
        check("", "");
    }

    void handover_data()
    {
        const auto row = columns<QByteArray, QString, QString, bool>("desktop", "url", "program",
                                                                     "libraryPathKept");
        row("ordinary", "GNOME", "", "deepin-app-store", false);
        row("unset", {}, "", "deepin-app-store", false);
        row("upper case", "UKUI", "", "kylin-software-center", true);
        row("no web page", "ukui", "file:///tmp/x.sh", "kylin-software-center", true);
    }

    // Every kind of program that is started writes down the environment it got.
    void handover()
    {
        qputenv("XDG_CURRENT_DESKTOP", cell<QByteArray>("desktop"));
        qputenv("LD_LIBRARY_PATH", "/opt/veltaro");
        Variables session = ownVariables();
        startup::prepare();
        QVERIFY(ownVariables() != session);
        QCOMPARE(variables(runProcess("env", {}, 10000).output), session);

        QTemporaryDir root;
        const QString folder = root.path() + "/usr/share/applications/";
        QVERIFY(QDir().mkpath(folder));
        for (const char* store : {"deepin-app-store", "kylin-software-center"}) {
            const QString script = root.filePath(store);
            QVERIFY(writeFile(
                script, "#!/bin/sh\ntr '\\0' '\\n' </proc/$$/environ >$0.new; mv $0.new $0.got\n"));
            QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner);
            QVERIFY(writeFile(folder + store + ".desktop",
                              "[Desktop Entry]\nExec=" + script.toUtf8() + " %U\n"));
        }
        QVERIFY(QDir(root.path()).mkdir("etc"));
        QVERIFY(writeFile(root.filePath("etc/lsb-release"), "DISTRIB_ID=Ubuntu\n"));
        platform().fileRoot = root.path();
        m_browser.clear();
        for (const char* scheme : {"file", "https"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "browse");
        handOverToInstaller(cell<QString>("url"));
        QVERIFY(m_browser.isEmpty());
        handOverToInstaller("https://files.example/veltaro.deb"); // opened as it is on this system
        QCOMPARE(m_browser, session + Variables{"https://files.example/veltaro.deb"});
        platform() = Platform();
        qunsetenv("LD_LIBRARY_PATH");
        qputenv("XDG_CURRENT_DESKTOP", "");

        const QString got = root.filePath(cell<QString>("program") + ".got");
        QTRY_VERIFY(QFile::exists(got));
        if (!cell<bool>("libraryPathKept"))
            session.remove("LD_LIBRARY_PATH=/opt/veltaro");
        QCOMPARE(variables(readFile(got)), session);
    }

public slots:
    void browse(const QUrl& url) { m_browser = ownVariables() << url.toEncoded(); }

private:
    using Variables = QSet<QByteArray>;

    static Variables variables(const QByteArray& lines)
    {
        const QList<QByteArray> list = lines.trimmed().split('\n');
        return {list.begin(), list.end()};
    }

    static Variables ownVariables()
    {
        const QStringList list = QProcessEnvironment::systemEnvironment().toStringList();
        return variables(list.join(QLatin1Char('\n')).toLocal8Bit());
    }

    Variables m_browser;
};

QTEST_GUILESS_MAIN(UpgradePolicyTest)
#include "UpgradePolicyTest.moc"
