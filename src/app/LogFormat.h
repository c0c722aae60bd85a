#pragma once

#include "app/LogContent.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QSet>
#include <QString>
#include <QVector>

#include <optional>

/// The log's formats as pure functions: what a message becomes in the file and on the screen,
/// which lines of the file are recent, and what the file's lines become as history. Any thread.
namespace logformat {

/// A moment in local time, as the log writes it.
struct Stamp
{
    QString date; ///< "yyyy-MM-dd"
    QString time; ///< "hh:mm:ss"
};

/// The stamp of a moment given in milliseconds since 1970-01-01 UTC.
Stamp stampOf(qint64 msecs);

/// A message on its way into the log.
struct Record
{
    Stamp stamp;
    QString fileLine;                ///< date, time, level tag and text, without a line end
    std::optional<LogContent> entry; ///< what the activity log shows, for display messages
};

/// Turns one message into its file line and, when it carries the display marker and is no debug
/// message, its entry.
Record makeRecord(QtMsgType type, const QString& message, const Stamp& stamp);

/// Whether a file line begins with a date (year 2021 or later) less than `days` days before
/// `today`. Lines without such a date are not recent.
bool isRecent(const QByteArray& line, int days, const QDate& today);

/// The offset of the first line of `file` that is recent, or the file's size when there is none.
int firstRecent(const QByteArray& file, int days, const QDate& today);

/// The rows of a history listing, newest first under date headings, from the lines of `file`
/// that follow the first one younger than `days` days. Lines without a level tag (debug lines,
/// continuation lines) are skipped. Linear in the file's size. `titles` receives the dates that
/// have a heading.
QVector<LogContent> historyRows(const QByteArray& file, int days, const QDate& today,
                                QSet<QString>& titles);

/// The rows of lines whose dates do not matter: the same from the first line on.
QVector<LogContent> historyRows(const QByteArray& lines, QSet<QString>& titles);

} // namespace logformat
