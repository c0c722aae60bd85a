#include "app/Log.h"

#include "app/ConfigUtil.h"
#include "app/LogFormat.h"
#include "app/LogMarker.h"
#include "app/LogModel.h"
#include "app/OtherUser.h"
#include "app/Platform.h"
#include "app/ProgramFile.h"

#include <utility>

std::mutex Log::mutex;
LogModel* Log::m_LogModel = nullptr;
std::deque<LogContent> Log::m_LogList;
QSet<QString> Log::m_LogTitleSet;
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

QString commonFile()
{
    return platform().programFile(QStringLiteral("ui.log"));
}

// For a user whom the program's folder offers no log; empty before the settings folder is known.
QString ownFile()
{
    const QString folder = ConfigUtil::getConfigPath();
    return folder.isEmpty() ? QString() : folder + QStringLiteral("ui.log");
}

// What the log in the user's folder begins a run with.
QString whyElsewhere()
{
    const QString owner = otherOwner(commonFile());
    QString why = commonFile() + QStringLiteral(" can not be written, this log is used instead");
    if (!owner.isEmpty())
        why += QStringLiteral("; it belongs to the user ") + owner;
    return logformat::makeRecord(QtWarningMsg, why, currentStamp()).fileLine;
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
        const bool newDate =
            logformat::putOnTop(m_LogList, m_LogTitleSet, record.stamp, *record.entry);
        model = m_LogModel;
        if (model && newDate)
            m_pending.append({0, {m_LogList[0], m_LogList[1], m_LogList[2]}});
        else if (model)
            m_pending.append({1, {m_LogList[1], m_LogList[2]}});
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
    // The line is appended by a single write, whole even if another process appends too, and
    // nothing here can log again. A full disk loses it.
    const QByteArray bytes = line.toUtf8() + '\n';
    if (const ProgramFile file = ProgramFile::toAppend(commonFile()); file.isOpen()) {
        file.write(bytes);
        return;
    }
    if (ownFile().isEmpty())
        return;
    static bool said = false;
    const bool first = !std::exchange(said, true);
    ProgramFile::toAppend(ownFile()).write(first ? whyElsewhere().toUtf8() + '\n' + bytes : bytes);
}

QString Log::file()
{
    const bool own = !ownFile().isEmpty() && !ProgramFile::toAppend(commonFile()).isOpen();
    return own ? ownFile() : commonFile();
}

void Log::clearLog()
{
    const QByteArray content = [] {
        const ProgramFile log = ProgramFile::toRead(file());
        return log.read(log.size()).value_or(QByteArray());
    }();
    const int from = logformat::firstRecent(content, kKeepDays, platform().now().date());
    if (from == 0)
        return;
    if (ProgramFile::replace(file(), trimmedLines(content, from)) ==
        ProgramFile::Replaced::NotRemoved)
        logDisplayCritical(tr("Failed to remove old log file"));
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
    // What has been logged up to here is in the file, and what follows reaches the model by itself,
    // after the listing. The file is read without the lock: nobody who logs meanwhile waits for it.
    std::unique_lock lock(mutex);
    LogModel* const model = m_LogModel;
    const ProgramFile log = ProgramFile::toRead(file());
    const qint64 size = log.size();
    if (!model || !log.isOpen())
        return;
    m_pending.clear();
    lock.unlock();

    model->setRows(logformat::historyRows(log.read(size).value_or(QByteArray()), kHistoryDays,
                                          platform().now().date()));
}
