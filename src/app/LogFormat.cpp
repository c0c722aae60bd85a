#include "app/LogFormat.h"

#include "app/LogMarker.h"

#include <QDateTime>
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

constexpr int kLongestText = 16384;

// Whether a character ends a line, moves the terminal or the writing direction: with one of these
// in it, a text of a service could pass for lines of the log's own.
bool isControl(QChar c)
{
    const ushort code = c.unicode();
    return code < 0x20 || (code >= 0x7f && code <= 0x9f) || (code >= 0x2028 && code <= 0x202e) ||
           (code >= 0x2066 && code <= 0x2069);
}

// One line of bounded length, whatever the text; an ordinary text is not copied.
QString oneLine(const QString& text)
{
    QString line = text;
    if (text.size() > kLongestText)
        line = text.left(kLongestText) + QStringLiteral("... (%1 characters)").arg(text.size());
    if (std::any_of(line.cbegin(), line.cend(), isControl))
        std::replace_if(line.begin(), line.end(), isControl, QChar(QLatin1Char(' ')));
    return line;
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

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kSpaces = " \t\n\v\f\r";
    const size_t first = text.find_first_not_of(kSpaces);
    return first == text.npos ? std::string_view()
                              : text.substr(first, text.find_last_not_of(kSpaces) + 1 - first);
}

// Cuts the text before the first space off `rest`; both ends are trimmed.
std::string_view takeField(std::string_view& rest)
{
    const size_t space = rest.find(' ');
    const std::string_view field = trimmed(rest.substr(0, space));
    rest = space == rest.npos ? std::string_view() : trimmed(rest.substr(space));
    return field;
}

bool contains(std::string_view text, std::string_view part)
{
    return text.find(part) != text.npos;
}

QString toText(std::string_view text)
{
    return QString::fromUtf8(text.data(), int(text.size()));
}

LOG_TYPE historyType(std::string_view tag)
{
    if (contains(tag, "[INFO]"))
        return ITEM_INFO_WITH_DOT;
    if (contains(tag, "[NOTICE]"))
        return ITEM_NOTICE_WITH_DOT;
    if (contains(tag, "[WARN]"))
        return ITEM_WARN_WITH_DOT;
    if (contains(tag, "[ERROR]"))
        return ITEM_ERROR_WITH_DOT;
    return ITEM_INFO_WITH_DOT;
}

// The end of the line that begins at `from`: its line feed or the end of the file.
int lineEnd(const QByteArray& file, int from)
{
    const int feed = file.indexOf('\n', from);
    return feed < 0 ? file.size() : feed;
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
    QString text = oneLine(marked ? message.mid(kMarkerLength) : message);

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

bool needSaveLog(const QByteArray& line, int days, const QDate& today)
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
        if (needSaveLog(file.mid(from, end - from).trimmed(), days, today))
            return from;
        from = end + 1;
    }
    return file.size();
}

bool putOnTop(std::deque<LogContent>& rows, QSet<QString>& titles, const Stamp& stamp,
              const LogContent& entry)
{
    const bool newDate = !titles.contains(stamp.date);
    if (newDate) {
        titles.insert(stamp.date);
        rows.push_front({stamp.date, ITEM_TITLE});
    }
    rows.insert(rows.begin() + 1, {entry, {stamp.time, ITEM_TIME}});
    return newDate;
}

void tranLineToObj(std::string_view line, std::deque<LogContent>& rows, QSet<QString>& titles)
{
    const bool shown = contains(line, "[NOTICE]") || contains(line, "[INFO]") ||
                       contains(line, "[ERROR]") || contains(line, "[WARN]");
    if (!shown)
        return;
    const QString date = toText(takeField(line));
    const QString time = toText(takeField(line));
    const LOG_TYPE type = historyType(takeField(line));
    putOnTop(rows, titles, {date, time}, {toText(line), type});
}

std::deque<LogContent> historyRows(const QByteArray& file, int days, const QDate& today)
{
    std::deque<LogContent> rows;
    QSet<QString> titles;
    for (int from = firstRecent(file, days, today); from < file.size();) {
        const int end = lineEnd(file, from);
        tranLineToObj(trimmed({file.constData() + from, size_t(end - from)}), rows, titles);
        from = end + 1;
    }
    return rows;
}

} // namespace logformat
