#include "app/Log.h"
#include "app/ConfigUtil.h"
#include "app/LogFormat.h"
#include "app/LogMarker.h"
#include "app/LogModel.h"
#include "app/Platform.h"
#include "support/Rows.h"
#include "unit/Files.h"

#include <thread>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QDateTime kNow(QDate(2026, 3, 5), QTime(7, 8, 9));

QString shown(const LogContent& content)
{
    return QString::number(content.type) + ':' + content.text;
}

QStringList shown(const LogModel& model)
{
    QStringList rows;
    for (int i = 0; i < model.rowCount(); ++i)
        rows << shown(model.index(i).data(LogModel::ContentRole).value<LogContent>());
    return rows;
}

} // namespace

/// The log: file format, activity entries, trimming, history, threads.
class LogTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_now = kNow;
        m_model = std::make_unique<LogModel>();
        Log::setLogModel(m_model.get());
        m_dir = std::make_unique<QTemporaryDir>();
        const QString path = m_dir->path();
        platform().programDir = [path] { return path; };
        platform().clock = [this] { return m_now.toMSecsSinceEpoch(); };
        m_previous = qInstallMessageHandler(&Log::messageOut);
    }

    void cleanup()
    {
        Log::setLogModel(nullptr);
        qInstallMessageHandler(m_previous);
    }

    void record()
    {
        // "entry": type and text of what the activity log shows, if anything
        const auto row = checked(
            [](int type, const QString& message, const QString& rest, const QString& entry) {
                const logformat::Record made = logformat::makeRecord(
                    QtMsgType(type), message, logformat::stampOf(kNow.toMSecsSinceEpoch()));
                QCOMPARE(made.fileLine, "2026-03-05 07:08:09 " + rest);
                QCOMPARE(made.entry ? shown(*made.entry) : QString(), entry);
            });
        row("unmarked info", QtInfoMsg, "hello", "[INFO] hello", "");
        row("warning", QtWarningMsg, "<DISPLAY> careful", "[WARN] careful", "3:careful");
        row("error", QtCriticalMsg, "<DISPLAY> bad", "[ERROR] bad", "2:bad");
        row("notice", QtInfoMsg, "<DISPLAY> NOTICE Connected", "[NOTICE]  Connected",
            "1: Connected");
        row("notice inside", QtInfoMsg, "<DISPLAY> a NOTICE", "[INFO] a NOTICE", "1:a NOTICE");
        row("lower case is no notice", QtInfoMsg, "notice x", "[INFO] notice x", "");
        row("a message is one line", QtWarningMsg,
            QStringLiteral("<DISPLAY> 1\r\n2\t3\u20284\u00855\u202e6\u20677"),
            "[WARN] 1  2 3 4 5 6 7", "3:1  2 3 4 5 6 7");
        row("a message has its bounds", QtInfoMsg, QString(20000, 'x'),
            "[INFO] " + QString(16384, 'x') + "... (20000 characters)", "");
        row("debug loses the marker", QtDebugMsg, "<DISPLAY> d", "[DEBUG] d", "");
    }

    void recent()
    {
        for (const char* line : {"2026-01-05 59 days", "2030-01-04 the future"})
            QVERIFY2(logformat::needSaveLog(line, 60, kNow.date()), line);
        for (const char* line :
             {"2026-01-04 60 days", "", "2026-03-05", "2026-02-30 no such day", "2026-03 two parts",
              "2026-03-05-1 four parts", "2020-12-31 before 2021", "hello world"})
            QVERIFY2(!logformat::needSaveLog(line, 60, kNow.date()), line);
    }

    void entriesStandNewestFirstUnderTheirDate()
    {
        m_now = kNow.addDays(100);
        logDisplayInfo("one");
        logDisplayWarning("two");
        m_now = m_now.addDays(1);
        logDisplayCritical("three");
        QCoreApplication::processEvents();
        QCOMPARE(shown(*m_model),
                 (QStringList{"5:2026-06-14", "2:three", "4:07:08:09", "5:2026-06-13", "3:two",
                              "4:07:08:09", "0:one", "4:07:08:09"}));
        const QStringList before = shown(*m_model);
        Log::getLogContent();
        QCOMPARE(shown(*m_model).mid(0, before.size()), before);
    }

    void messagesOfOtherThreadsReachTheModelOnItsOwn()
    {
        m_now = kNow.addDays(200);
        QSet<QThread*> changedOn;
        connect(
            m_model.get(), &QAbstractItemModel::rowsInserted, m_model.get(),
            [&changedOn] { changedOn << QThread::currentThread(); }, Qt::DirectConnection);
        constexpr int kEach = 200;
        std::thread workers[4];
        for (std::thread& worker : workers) {
            worker = std::thread([] {
                for (int i = 0; i < kEach; ++i)
                    logDisplayInfo("busy");
            });
        }
        for (std::thread& worker : workers)
            worker.join();
        QTRY_COMPARE(m_model->rowCount(), 1 + 2 * 4 * kEach);
        QCOMPARE(changedOn, QSet<QThread*>{thread()});
        QCOMPARE(readFile(file()).count('\n'), 4 * kEach);
    }

    void aViewThatLogsIsServedToo()
    {
        m_now = kNow.addDays(300);
        bool said = false;
        connect(m_model.get(), &QAbstractItemModel::rowsInserted, this, [&said] {
            if (!std::exchange(said, true))
                logDisplayInfo("from within");
        });
        logDisplayInfo("outside");
        QTRY_COMPARE(shown(*m_model).size(), 5);
        QCOMPARE(shown(*m_model).at(1), "0:from within");
        QVERIFY(readFile(file()).contains("[INFO] from within"));
    }

    void trimmingDropsLeadingOldLinesOnly()
    {
        const QByteArray kept = "2026-03-01 b\n2025-01-01 c\nno date\n";
        const QByteArray whole = "2026-03-01 b  \nlast";
        const QPair<QByteArray, QByteArray> files[] = {
            {"2025-01-01 a\nnonsense\n" + kept, kept},
            {"2025-01-01 a\n", ""},
            {whole, whole},
            {"old\n2026-03-01 b", "2026-03-01 b\n"},
        };
        for (const auto& [before, after] : files) {
            QVERIFY(writeFile(file(), before));
            Log::clearLog();
            QCOMPARE(readFile(file()), after);
        }
    }

    void historyIsNewestFirstUnderDates()
    {
        const QByteArray lines = "2026-01-01 01:00:00 [INFO] too old\n"
                                 "2026-03-04 01:00:00 [INFO] first\n"
                                 "2026-03-04 01:00:01 [DEBUG] hidden\n"
                                 "a continuation line\n"
                                 "2026-03-04 02:00:00 [NOTICE]  Connected\n"
                                 "2026-03-05 03:00:00 [ERROR] broken\n"
                                 "2026-01-01 04:00:00 [WARN] clock was set back\n";
        QVERIFY(writeFile(file(), lines));
        Log::getHisLog();
        QCOMPARE(shown(*m_model),
                 (QStringList{"5:2026-01-01", "3:clock was set back", "4:04:00:00", "5:2026-03-05",
                              "2:broken", "4:03:00:00", "5:2026-03-04", "1:Connected", "4:02:00:00",
                              "0:first", "4:01:00:00"}));
    }

    void aLineLoggedDuringTheHistoryFollowsIt()
    {
        m_now = kNow.addDays(350);
        logDisplayInfo("before");
        bool said = false;
        platform().clock = [this, &said] { // asked for while the file is looked through
            if (!std::exchange(said, true))
                std::thread([] { logDisplayInfo("meanwhile"); }).join();
            return m_now.toMSecsSinceEpoch();
        };
        Log::getHisLog();
        QCoreApplication::processEvents();
        QCOMPARE(shown(*m_model), (QStringList{"5:2027-02-18", "0:meanwhile", "4:07:08:09",
                                               "0:before", "4:07:08:09"}));
    }

    void whatIsPlantedInItsPlaceIsNeitherUsedNorWaitedFor()
    {
        const QByteArray old = "2025-01-01 00:00:00 [INFO] old\n2026-03-05 00:00:00 [INFO] new\n";
        QVERIFY(writeFile(file(), old));
        const QByteArray path = QFile::encodeName(file());
        const QByteArray target = path + ".target";
        QCOMPARE(::rename(path.constData(), target.constData()), 0);
        for (const bool link : {true, false}) {
            QCOMPARE(link ? ::symlink(target.constData(), path.constData())
                          : ::mkfifo(path.constData(), 0666),
                     0);
            Log::writeLog("line");
            Log::clearLog();
            QCOMPARE(::unlink(path.constData()), 0);
        }
        QCOMPARE(::rename(target.constData(), path.constData()), 0);
        QCOMPARE(readFile(file()), old);
        Log::writeLog("made by an earlier version, for all to read");
        QVERIFY(!(QFile::permissions(file()) & (QFile::ReadGroup | QFile::ReadOther)));
    }

    void aUserWhomTheFolderOffersNoLogKeepsOneInTheSettings()
    {
        platform().programDir = [] { return "/nonexistent/folder"; };
        m_now = kNow.addDays(400);
        logDisplayInfo("lost");
        QTRY_COMPARE(shown(*m_model).value(1), "0:lost");
        ConfigUtil::createConfigPath();
        const QString own = ConfigUtil::getConfigPath() + "ui.log";
        for (const char* line : {"one", "two"})
            logDisplayInfo(line);
        Log::getHisLog();
        QCOMPARE(Log::file(), own);
        QCOMPARE(shown(*m_model).filter(QRegularExpression("^[03]:")),
                 (QStringList{"0:two", "0:one",
                              "3:/nonexistent/folder/ui.log can not be written, this log is used "
                              "instead"}));
        m_now = m_now.addDays(100);
        Log::clearLog();
        QCOMPARE(readFile(own), QByteArray());
    }

private:
    QString file() const { return m_dir->filePath("ui.log"); }

    std::unique_ptr<QTemporaryDir> m_dir;
    std::unique_ptr<LogModel> m_model;
    QDateTime m_now = kNow;
    QtMessageHandler m_previous = nullptr;
};

QTEST_GUILESS_MAIN(LogTest)
#include "LogTest.moc"
