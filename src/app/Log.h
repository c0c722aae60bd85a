#pragma once

#include "app/LogContent.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QVector>

#include <deque>
#include <mutex>

class LogModel;

/// The program's log: every message that passes through Qt's message functions becomes a line of
/// "ui.log" in the program's folder and, when it carries the display marker (LogMarker.h), rows
/// of the activity log. The file is readable by its owner alone; a link or anything but a regular
/// file in its place is neither written nor read. Where the program's folder gives us no such file,
/// as beside another user's, the log is "ui.log" in the settings folder, and says so. Used through
/// static functions only.
class Log : public QObject
{
    Q_OBJECT

public:
    /// The message handler. Any thread; entries reach the model through the event loop of its
    /// thread, in the order in which they were logged.
    static void messageOut(QtMsgType type, const QMessageLogContext& context, const QString& msg);

    /// The log page's model, or null when no window shows one. GUI thread.
    static void setLogModel(LogModel* model);

    /// The file as things stand: the one in the program's folder, made when there is none, or else
    /// the one in the settings folder. Any thread.
    static QString file();

    /// Appends one line to the file, under the log's lock. A file that cannot be opened loses the
    /// line. Any thread.
    static void writeLog(const QString& line);

    /// Drops the leading lines older than 60 days from the file; a file without such lines is
    /// left untouched. Called once, before any other thread logs.
    static void clearLog();

    /// Fills the model with the entries of this run. GUI thread.
    static void getLogContent();

    /// Fills the model with the last 15 days of the file; what other threads log meanwhile follows.
    /// GUI thread; linear in the file's size.
    static void getHisLog();

private:
    struct Insertion
    {
        int row;
        QVector<LogContent> contents;
    };

    static void showPending();

    static std::mutex
        mutex; ///< guards everything below; of a kind that the thread sanitizer follows
    static LogModel* m_LogModel;
    static std::deque<LogContent> m_LogList; ///< this run's entries, newest first
    static QSet<QString> m_LogTitleSet;      ///< dates with a heading in m_LogList
    static QVector<Insertion> m_pending;     ///< logged, not yet in the model
};
