#include "orch/TextUtil.h"

#include <algorithm>

#include <QRegularExpression>
#include <QStringList>
#include <QVector>

namespace {

/// Characters, not UTF-16 units: half of one must never be left at the end of a cut text.
template <typename Cost>
QString cut(const QString& text, int limit, Cost cost)
{
    const QVector<uint> characters = text.toUcs4();
    int total = 0;
    for (int i = 0; i < characters.size(); ++i) {
        total += cost(characters[i]);
        if (total > limit)
            return QString::fromUcs4(characters.constData(), i) + QStringLiteral("...");
    }
    return text;
}

bool isAsciiAlphanumeric(uint c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isInvisible(QChar c)
{
    const ushort code = c.unicode();
    return code <= 31 || (code >= 127 && code <= 159);
}

} // namespace

bool Util::checkIp(const QString& text)
{
    static const QRegularExpression pattern(QRegularExpression::anchoredPattern(
        QStringLiteral("(part)\\.(part)\\.(part)\\.(part)")
            .replace(QStringLiteral("part"),
                     QStringLiteral("\\d{1,2}|1\\d\\d|2[0-4]\\d|25[0-5]"))));
    return pattern.match(text).hasMatch();
}

int Util::compareVersion(const QString& a, const QString& b)
{
    if (a == b)
        return 0;
    const QStringList left = a.split(QLatin1Char('.'));
    const QStringList right = b.split(QLatin1Char('.'));
    if (left.size() != right.size())
        return left.size() > right.size() ? 1 : -1;
    for (int i = 0; i < left.size(); ++i) {
        const qulonglong leftPart = left[i].toULongLong();
        const qulonglong rightPart = right[i].toULongLong();
        if (leftPart != rightPart)
            return leftPart > rightPart ? 1 : -1;
    }
    return 0;
}

bool Util::isTokenValid(const QString& token)
{
    const auto characters = token.toUcs4();
    for (const uint c : characters) {
        const bool valid = c < 128 ? isAsciiAlphanumeric(c) : QChar::isLetterOrNumber(c);
        if (!valid)
            return false;
    }
    return true;
}

QString Util::trimmedHost(const QString& host)
{
    return host.left(host.indexOf(QLatin1Char(':'))); // left(-1) is the whole text
}

QString Util::GetStringWithLength(const QString& text, int width)
{
    return cut(text, width, [](uint c) { return c >= 1 && c <= 254 ? 1 : 2; });
}

QString Util::GetUrlEncodeStringOfLength(const QString& text, int length)
{
    return cut(text, length, [](uint c) { return isAsciiAlphanumeric(c) ? 1 : 9; });
}

QString Util::removeUnvisibleUnicode(const QString& text)
{
    QString visible;
    visible.reserve(text.size());
    for (const QChar c : text) {
        if (!isInvisible(c))
            visible += c;
    }
    return visible.trimmed();
}

QString Util::oneLine(QString text)
{
    constexpr int kLongest = 2000;
    text.truncate(kLongest);
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; },
        QChar(QLatin1Char(' ')));
    return text;
}

QString Util::transToReadableBps(long long bps, QString& unit)
{
    static constexpr struct
    {
        double kbps;
        const char* name;
    } kUnits[] = {{1e6, "Gbps"}, {1e3, "Mbps"}, {1.0, "Kbps"}};

    double value = static_cast<double>(bps) / 1000.0;
    unit = QStringLiteral("Kbps");
    for (const auto& candidate : kUnits) {
        if (value / candidate.kbps > 1.0) {
            unit = QLatin1String(candidate.name);
            value /= candidate.kbps;
            break;
        }
    }
    return QString::number(value, 'f', 1);
}
