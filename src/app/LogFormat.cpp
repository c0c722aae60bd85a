#include "app/LogFormat.h"

#include "app/LogMarker.h"

#include <QStringBuilder>

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace logformat {

namespace {

constexpr int kMarkerLength = int(sizeof kDisplay) - 1;
const QLatin1String kNotice("NOTICE");

// Numbers with leading zeros and a separator between them.
QString digits(std::initializer_list<std::pair<int, int>> numbers, char separator)
{
    char text[16];
    char* end = text;
    for (const auto& [number, width] : numbers) {
        if (end != text)
            *end++ = separator;
        int rest = number;
        for (int i = width - 1; i >= 0; --i, rest /= 10)
            end[i] = char('0' + rest % 10);
        end += width;
    }
    return QString::fromLatin1(text, int(end - text));
}

LOG_TYPE entryType(QtMsgType type, const QString& message)
{
    switch (type) {
    case QtWarningMsg:
        return ITEM_WARN_WITH_DOT;
    case QtCriticalMsg:
    case QtFatalMsg:
        return ITEM_ERROR_WITH_DOT;
    default:
        return message.contains(kNotice) ? ITEM_NOTICE_WITH_DOT : ITEM_INFO_WITH_DOT;
    }
}

// The level tag; a leading notice word is taken off the text.
QLatin1String takeTag(QtMsgType type, QString& text)
{
    switch (type) {
    case QtDebugMsg:
        return QLatin1String("[DEBUG]");
    case QtWarningMsg:
        return QLatin1String("[WARN]");
    case QtCriticalMsg:
    case QtFatalMsg:
        return QLatin1String("[ERROR]");
    case QtInfoMsg:
        break;
    }
    if (!text.startsWith(kNotice))
        return QLatin1String("[INFO]");
    text.remove(0, kNotice.size());
    return QLatin1String("[NOTICE]");
}

// Cuts the text before the first space off `rest`; both ends are trimmed.
QByteArray takeField(QByteArray& rest)
{
    const int space = rest.indexOf(' ');
    const QByteArray field = space < 0 ? rest : rest.left(space);
    rest = space < 0 ? QByteArray() : rest.mid(space).trimmed();
    return field.trimmed();
}

std::optional<LOG_TYPE> historyType(const QByteArray& tag)
{
    if (tag.contains("[INFO]"))
        return ITEM_INFO_WITH_DOT;
    if (tag.contains("[NOTICE]"))
        return ITEM_NOTICE_WITH_DOT;
    if (tag.contains("[WARN]"))
        return ITEM_WARN_WITH_DOT;
    if (tag.contains("[ERROR]"))
        return ITEM_ERROR_WITH_DOT;
    return std::nullopt;
}

// The end of the line that begins at `from`: its line feed or the end of the file.
int lineEnd(const QByteArray& file, int from)
{
    const int feed = file.indexOf('\n', from);
    return feed < 0 ? file.size() : feed;
}

// The rows of one date, oldest first; a time row stands before its message row, so that reading
// the block backwards gives the order of the listing.
struct DateBlock
{
    QString date;
    QVector<LogContent> rows;
};

void addLine(QVector<DateBlock>& blocks, QSet<QString>& titles, QByteArray line)
{
    const bool shown = line.contains("[NOTICE]") || line.contains("[INFO]") ||
                       line.contains("[ERROR]") || line.contains("[WARN]");
    if (!shown)
        return;
    const QString date = QString::fromUtf8(takeField(line));
    const QString time = QString::fromUtf8(takeField(line));
    const std::optional<LOG_TYPE> type = historyType(takeField(line));
    if (!titles.contains(date)) {
        titles.insert(date);
        blocks.append({date, {}});
    }
    blocks.last().rows.append({time, ITEM_TIME});
    blocks.last().rows.append({QString::fromUtf8(line), type.value_or(ITEM_INFO_WITH_DOT)});
}

} // namespace

Stamp stampOf(qint64 msecs)
{
    const QDateTime moment = QDateTime::fromMSecsSinceEpoch(msecs);
    const QDate date = moment.date();
    const QTime time = moment.time();
    return {digits({{date.year(), 4}, {date.month(), 2}, {date.day(), 2}}, '-'),
            digits({{time.hour(), 2}, {time.minute(), 2}, {time.second(), 2}}, ':')};
}

Record makeRecord(QtMsgType type, const QString& message, const Stamp& stamp)
{
    const bool marked = message.contains(QLatin1String(kDisplay));
    QString text = marked ? message.mid(kMarkerLength) : message;

    Record record;
    if (marked && type != QtDebugMsg) {
        record.entry = LogContent{QString(), entryType(type, message)};
    }
    const QLatin1String tag = takeTag(type, text);
    if (record.entry)
        record.entry->text = text;
    const QLatin1Char space(' ');
    record.stamp = stamp;
    record.fileLine = stamp.date % space % stamp.time % space % tag % space % text;
    return record;
}

bool isRecent(const QByteArray& line, int days, const QDate& today)
{
    const int space = line.indexOf(' ');
    if (space < 0)
        return false;
    const QList<QByteArray> parts = line.left(space).trimmed().split('-');
    if (parts.size() != 3)
        return false;
    const int year = parts.at(0).toInt();
    if (year < 2021)
        return false;
    const QDate date(year, parts.at(1).toInt(), parts.at(2).toInt());
    return date.isValid() && date.addDays(days) > today;
}

int firstRecent(const QByteArray& file, int days, const QDate& today)
{
    for (int from = 0; from < file.size();) {
        const int end = lineEnd(file, from);
        if (isRecent(file.mid(from, end - from).trimmed(), days, today))
            return from;
        from = end + 1;
    }
    return file.size();
}

static QVector<LogContent> rowsFrom(int from, const QByteArray& file, QSet<QString>& titles)
{
    QVector<DateBlock> blocks;
    while (from < file.size()) {
        const int end = lineEnd(file, from);
        addLine(blocks, titles, file.mid(from, end - from).trimmed());
        from = end + 1;
    }

    QVector<LogContent> rows;
    int count = 0;
    for (const DateBlock& block : qAsConst(blocks))
        count += block.rows.size() + 1;
    rows.reserve(count);
    for (auto block = blocks.crbegin(); block != blocks.crend(); ++block) {
        rows.append({block->date, ITEM_TITLE});
        std::copy(block->rows.crbegin(), block->rows.crend(), std::back_inserter(rows));
    }
    return rows;
}

QVector<LogContent> historyRows(const QByteArray& file, int days, const QDate& today,
                                QSet<QString>& titles)
{
    return rowsFrom(firstRecent(file, days, today), file, titles);
}

QVector<LogContent> historyRows(const QByteArray& lines, QSet<QString>& titles)
{
    return rowsFrom(0, lines, titles);
}

} // namespace logformat
