#include "app/Log.h"
#include "app/LogFormat.h"
#include "app/LogMarker.h"
#include "app/LogModel.h"
#include "app/Platform.h"

#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <memory>
#include <thread>

namespace {

const QDateTime kNow(QDate(2026, 3, 5), QTime(7, 8, 9));

QStringList shown(const LogModel& model)
{
    QStringList rows;
    for (int i = 0; i < model.rowCount(); ++i) {
        const auto content = model.index(i).data(LogModel::ContentRole).value<LogContent>();
        rows << QString::number(content.type) + QLatin1Char(':') + content.text;
    }
    return rows;
}

// Logs when a row arrives, as a view might.
class ChattyModel : public LogModel
{
public:
    ChattyModel()
    {
        connect(this, &QAbstractItemModel::rowsInserted, this, [this] {
            if (!std::exchange(m_said, true))
                logDisplayInfo(QStringLiteral("from within"));
        });
    }

private:
    bool m_said = false;
};

} // namespace

/// The log: file format, activity entries, trimming, history, threads.
class LogTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
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

    void record_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("rest");
        QTest::addColumn<int>("entry");
        QTest::addColumn<QString>("entryText");
        const int none = -1;
        QTest::newRow("unmarked info") << int(QtInfoMsg) << "hello"
                                       << "[INFO] hello" << none << "";
        QTest::newRow("warning") << int(QtWarningMsg) << "<DISPLAY> careful"
                                 << "[WARN] careful" << int(ITEM_WARN_WITH_DOT) << "careful";
        QTest::newRow("error") << int(QtCriticalMsg) << "<DISPLAY> bad"
                               << "[ERROR] bad" << int(ITEM_ERROR_WITH_DOT) << "bad";
        QTest::newRow("notice") << int(QtInfoMsg) << "<DISPLAY> NOTICE Connected"
                                << "[NOTICE]  Connected" << int(ITEM_NOTICE_WITH_DOT)
                                << " Connected";
        QTest::newRow("notice inside")
            << int(QtInfoMsg) << "<DISPLAY> a NOTICE"
            << "[INFO] a NOTICE" << int(ITEM_NOTICE_WITH_DOT) << "a NOTICE";
        QTest::newRow("lower case is no notice") << int(QtInfoMsg) << "notice x"
                                                 << "[INFO] notice x" << none << "";
        QTest::newRow("debug loses the marker") << int(QtDebugMsg) << "<DISPLAY> d"
                                                << "[DEBUG] d" << none << "";
    }

    void record()
    {
        QFETCH(int, type);
        QFETCH(QString, message);
        QFETCH(QString, rest);
        QFETCH(int, entry);
        QFETCH(QString, entryText);
        const logformat::Record made = logformat::makeRecord(
            QtMsgType(type), message, logformat::stampOf(kNow.toMSecsSinceEpoch()));
        QCOMPARE(made.fileLine, QStringLiteral("2026-03-05 07:08:09 ") + rest);
        QCOMPARE(made.entry.has_value(), entry >= 0);
        if (made.entry)
            QCOMPARE(*made.entry, (LogContent{entryText, LOG_TYPE(entry)}));
    }

    void recent_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<bool>("recent");
        QTest::newRow("59 days") << QByteArray("2026-01-05 x") << true;
        QTest::newRow("60 days") << QByteArray("2026-01-04 x") << false;
        QTest::newRow("future") << QByteArray("2030-01-04 x") << true;
        QTest::newRow("empty") << QByteArray() << false;
        QTest::newRow("no space") << QByteArray("2026-03-05") << false;
        QTest::newRow("no such day") << QByteArray("2026-02-30 x") << false;
        QTest::newRow("two parts") << QByteArray("2026-03 x") << false;
        QTest::newRow("four parts") << QByteArray("2026-03-05-1 x") << false;
        QTest::newRow("before 2021") << QByteArray("2020-12-31 x") << false;
        QTest::newRow("text") << QByteArray("hello world") << false;
    }

    void recent()
    {
        QFETCH(QByteArray, line);
        QFETCH(bool, recent);
        QCOMPARE(logformat::isRecent(line, 60, kNow.date()), recent);
    }

    void entriesStandNewestFirstUnderTheirDate()
    {
        LogModel model;
        Log::setLogModel(&model);
        m_now = kNow.addDays(100);
        logDisplayInfo(QStringLiteral("one"));
        logDisplayWarning(QStringLiteral("two"));
        m_now = m_now.addDays(1);
        logDisplayCritical(QStringLiteral("three"));
        QCoreApplication::processEvents();
        QCOMPARE(shown(model), (QStringList{"5:2026-06-14", "2:three", "4:07:08:09", "5:2026-06-13",
                                            "3:two", "4:07:08:09", "0:one", "4:07:08:09"}));
        const QStringList before = shown(model);
        Log::getLogContent();
        QCOMPARE(shown(model).mid(0, before.size()), before);
    }

    void messagesOfOtherThreadsReachTheModelOnItsOwn()
    {
        LogModel model;
        Log::setLogModel(&model);
        m_now = kNow.addDays(200);
        QThread* const gui = QThread::currentThread();
        QVector<QThread*> changedOn;
        connect(
            &model, &QAbstractItemModel::rowsInserted, &model,
            [&changedOn] { changedOn << QThread::currentThread(); }, Qt::DirectConnection);
        constexpr int kEach = 200;
        std::thread workers[4];
        for (std::thread& worker : workers) {
            worker = std::thread([] {
                for (int i = 0; i < kEach; ++i)
                    logDisplayInfo(QStringLiteral("busy"));
            });
        }
        for (std::thread& worker : workers)
            worker.join();
        QTRY_COMPARE(model.rowCount(), 1 + 2 * 4 * kEach);
        QVERIFY(!changedOn.isEmpty());
        for (QThread* thread : qAsConst(changedOn))
            QCOMPARE(thread, gui);
        QCOMPARE(fileLines().size(), 4 * kEach);
    }

    void aViewThatLogsIsServedToo()
    {
        ChattyModel model;
        Log::setLogModel(&model);
        m_now = kNow.addDays(300);
        logDisplayInfo(QStringLiteral("outside"));
        QTRY_COMPARE(shown(model).size(), 5);
        QCOMPARE(shown(model).at(1), QStringLiteral("0:from within"));
        QVERIFY(readFile().contains("[INFO] from within"));
    }

    void trimmingDropsLeadingOldLinesOnly_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QByteArray>("after");
        QTest::newRow("leading") << QByteArray(
                                        "2025-01-01 a\nnonsense\n2026-03-01 b\n2025-01-01 c\n"
                                        "no date\n")
                                 << QByteArray("2026-03-01 b\n2025-01-01 c\nno date\n");
        QTest::newRow("all old") << QByteArray("2025-01-01 a\n") << QByteArray();
        QTest::newRow("untouched")
            << QByteArray("2026-03-01 b  \nlast") << QByteArray("2026-03-01 b  \nlast");
        QTest::newRow("no line end")
            << QByteArray("old\n2026-03-01 b") << QByteArray("2026-03-01 b\n");
    }

    void trimmingDropsLeadingOldLinesOnly()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        m_now = kNow;
        writeFile(before);
        Log::clearLog();
        QCOMPARE(readFile(), after);
    }

    void historyIsNewestFirstUnderDates()
    {
        m_now = kNow;
        LogModel model;
        Log::setLogModel(&model);
        writeFile("2026-01-01 01:00:00 [INFO] too old\n"
                  "2026-03-04 01:00:00 [INFO] first\n"
                  "2026-03-04 01:00:01 [DEBUG] hidden\n"
                  "a continuation line\n"
                  "2026-03-04 02:00:00 [NOTICE]  Connected\n"
                  "2026-03-05 03:00:00 [ERROR] broken\n"
                  "2026-01-01 04:00:00 [WARN] clock was set back\n");
        Log::getHisLog();
        QCOMPARE(shown(model),
                 (QStringList{"5:2026-01-01", "3:clock was set back", "4:04:00:00", "5:2026-03-05",
                              "2:broken", "4:03:00:00", "5:2026-03-04", "1:Connected", "4:02:00:00",
                              "0:first", "4:01:00:00"}));
    }

    void aFileThatCannotBeWrittenLosesTheLineOnly()
    {
        platform().programDir = [] { return QStringLiteral("/nonexistent/folder"); };
        m_now = kNow.addDays(400);
        LogModel model;
        Log::setLogModel(&model);
        logDisplayInfo(QStringLiteral("still shown"));
        QTRY_COMPARE(shown(model).value(1), QStringLiteral("0:still shown"));
        Log::clearLog();
        Log::getHisLog();
    }

private:
    QString file() const { return m_dir->filePath(QStringLiteral("ui.log")); }

    void writeFile(const QByteArray& content)
    {
        QFile log(file());
        QVERIFY(log.open(QIODevice::WriteOnly));
        log.write(content);
    }

    QByteArray readFile() const
    {
        QFile log(file());
        return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    }

    QList<QByteArray> fileLines() const
    {
        QList<QByteArray> lines = readFile().split('\n');
        lines.removeLast();
        return lines;
    }

    std::unique_ptr<QTemporaryDir> m_dir;
    QDateTime m_now = kNow;
    QtMessageHandler m_previous = nullptr;
};

QTEST_GUILESS_MAIN(LogTest)
#include "LogTest.moc"
