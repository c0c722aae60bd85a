#include "app/Log.h"

#include "app/LogFormat.h"
#include "app/LogMarker.h"
#include "app/LogModel.h"
#include "app/Platform.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

std::mutex Log::mutex;
LogModel* Log::m_LogModel = nullptr;
std::deque<LogContent> Log::m_LogList;
QSet<QString> Log::m_LogTitleSet;
QSet<QString> Log::m_HisLogTitleSet;
QVector<Log::Insertion> Log::m_pending;

namespace {

constexpr int kKeepDays = 60;
constexpr int kHistoryDays = 15;

// The stamp of this second, made once in it: finding out the time zone costs more than the rest of
// a line. Called under the log's mutex.
const logformat::Stamp& currentStamp()
{
    static qint64 second = -1;
    static logformat::Stamp stamp;
    const qint64 msecs = platform().clock();
    if (msecs / 1000 != second) {
        second = msecs / 1000;
        stamp = logformat::stampOf(msecs);
    }
    return stamp;
}

QString logFile()
{
    return platform().programFile(QStringLiteral("ui.log"));
}

QByteArray readAll(QFile& file)
{
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The lines from `from` on, each trimmed, as they are written back.
QByteArray trimmedLines(const QByteArray& content, int from)
{
    QByteArray kept;
    kept.reserve(content.size() - from + 1);
    while (from < content.size()) {
        const int feed = content.indexOf('\n', from);
        const int end = feed < 0 ? content.size() : feed;
        kept += content.mid(from, end - from).trimmed();
        kept += '\n';
        from = end + 1;
    }
    return kept;
}

} // namespace

void Log::messageOut(QtMsgType type, const QMessageLogContext&, const QString& msg)
{
    const std::lock_guard lock(mutex);
    const logformat::Record record = logformat::makeRecord(type, msg, currentStamp());
    LogModel* model = nullptr;
    if (record.entry) {
        const bool newDate = !m_LogTitleSet.contains(record.stamp.date);
        const LogContent heading{record.stamp.date, ITEM_TITLE};
        const LogContent time{record.stamp.time, ITEM_TIME};
        if (newDate) {
            m_LogTitleSet.insert(record.stamp.date);
            m_LogList.push_front(heading);
        }
        m_LogList.insert(m_LogList.begin() + 1, {*record.entry, time});

        model = m_LogModel;
        if (model) {
            if (newDate)
                m_pending.append({0, {heading, *record.entry, time}});
            else
                m_pending.append({1, {*record.entry, time}});
        }
    }
    writeLog(record.fileLine);
    // The rows follow from the event loop of the model's thread: a model changes there alone, and
    // a view that logs while it takes the rows is then not inside this handler, where Qt would
    // not call it again. Posted under the lock, since the window takes its model back under it.
    if (model && m_pending.size() == 1)
        QMetaObject::invokeMethod(model, &Log::showPending, Qt::QueuedConnection);
}

void Log::showPending()
{
    std::unique_lock lock(mutex);
    LogModel* const model = m_LogModel;
    const QVector<Insertion> batch = std::move(m_pending);
    m_pending.clear();
    lock.unlock();
    if (!model)
        return;
    for (const Insertion& insertion : batch)
        model->insertContents(insertion.row, insertion.contents);
}

void Log::setLogModel(LogModel* model)
{
    const std::lock_guard lock(mutex);
    m_LogModel = model;
    m_pending.clear();
}

void Log::writeLog(const QString& line)
{
    // Plain calls: the line is appended by a single write, whole even if another process appends
    // too, and nothing here can log again.
    const int fd = ::open(QFile::encodeName(logFile()).constData(),
                          O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0644);
    if (fd < 0)
        return;
    const QByteArray bytes = line.toUtf8() + '\n';
    const ssize_t written = ::write(fd, bytes.constData(), size_t(bytes.size()));
    Q_UNUSED(written) // a full disk loses the line
    ::close(fd);
}

bool Log::needSaveLog(const QString& line, int days)
{
    return logformat::isRecent(line.toUtf8(), days, platform().now().date());
}

void Log::clearLog()
{
    QFile file(logFile());
    const QByteArray content = readAll(file);
    file.close();
    const int from = logformat::firstRecent(content, kKeepDays, platform().now().date());
    if (from == 0)
        return;
    if (!file.remove()) {
        logDisplayCritical(tr("Failed to remove old log file"));
        return;
    }
    if (file.open(QIODevice::WriteOnly | QIODevice::Append))
        file.write(trimmedLines(content, from));
}

void Log::getLogContent()
{
    std::unique_lock lock(mutex);
    LogModel* const model = m_LogModel;
    if (!model)
        return;
    std::deque<LogContent> rows = m_LogList;
    m_pending.clear();
    lock.unlock();
    model->setRows(std::move(rows));
}

void Log::getHisLog()
{
    QFile file(logFile());
    if (!file.open(QIODevice::ReadOnly))
        return;
    // Read without the lock: whoever logs meanwhile does not wait for it.
    QSet<QString> titles;
    const QVector<LogContent> rows =
        logformat::historyRows(file.readAll(), kHistoryDays, platform().now().date(), titles);
    std::unique_lock lock(mutex);
    LogModel* const model = m_LogModel;
    if (!model)
        return;
    m_HisLogTitleSet = titles;
    m_pending.clear();
    lock.unlock();
    model->setRows(std::deque<LogContent>(rows.cbegin(), rows.cend()));
}

void Log::tranLineToObj(const QString& line)
{
    std::unique_lock lock(mutex);
    LogModel* const model = m_LogModel;
    QSet<QString> titles;
    QVector<LogContent> rows = logformat::historyRows(line.toUtf8(), titles);
    if (!model || rows.isEmpty())
        return;
    const bool newDate = !m_HisLogTitleSet.contains(rows.constFirst().text);
    m_HisLogTitleSet.unite(titles);
    lock.unlock();
    if (!newDate)
        rows.removeFirst();
    model->insertContents(newDate ? 0 : 1, rows);
}
