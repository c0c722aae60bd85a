#pragma once

#include "app/LogContent.h"

#include <QByteArray>
#include <QDate>
#include <QSet>
#include <QString>

#include <deque>
#include <optional>
#include <string_view>

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
/// message, its entry. Both are one line of at most 16,384 characters and a note of the full
/// length: line ends, control characters and those that turn the writing direction become spaces,
/// so that callers may log what a service sent as it is.
Record makeRecord(QtMsgType type, const QString& message, const Stamp& stamp);

/// Whether a file line is recent: it begins with a date (year 2021 or later) less than `days` days
/// before `today`. Lines without such a date are not.
bool needSaveLog(const QByteArray& line, int days, const QDate& today);

/// The offset of the first line of `file` that is recent, or the file's size when there is none.
int firstRecent(const QByteArray& file, int days, const QDate& today);

/// Puts an entry and its time on top of `rows`, a listing that is newest first under headings of
/// dates: under the topmost heading, after that of its date when `titles`, the dates that have one,
/// lacks it. Returns whether it did. Constant time.
bool putOnTop(std::deque<LogContent>& rows, QSet<QString>& titles, const Stamp& stamp,
              const LogContent& entry);

/// Puts a file line, trimmed, on top of a listing; one without a level tag (debug lines,
/// continuation lines) is skipped.
void tranLineToObj(std::string_view line, std::deque<LogContent>& rows, QSet<QString>& titles);

/// The listing of the lines of `file` from the first recent one on. Linear in the file's size.
std::deque<LogContent> historyRows(const QByteArray& file, int days, const QDate& today);

} // namespace logformat
