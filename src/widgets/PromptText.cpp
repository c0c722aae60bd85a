#include "widgets/PromptText.h"

#include <QTextBoundaryFinder>

namespace {

bool endsWord(QChar c)
{
    return c == QLatin1Char(' ') || c == QLatin1Char('.') || c == QLatin1Char(',');
}

/// Where the second line starts, or -1.
int breakPosition(const QString& text, bool chinese)
{
    const int middle = text.size() / 2;
    if (chinese) {
        // A character outside the basic plane takes two units, which belong together.
        return text.at(middle).isLowSurrogate() ? middle + 1 : middle;
    }
    for (int i = middle; i < text.size() - 1; ++i) {
        if (endsWord(text.at(i)))
            return i + 1;
    }
    return -1;
}

} // namespace

QString breakPromptText(const QString& text, int width, bool chinese)
{
    if (width <= kPromptLineWidth || text.isEmpty())
        return text;
    const int position = breakPosition(text, chinese);
    return position < 0 ? text : QString(text).insert(position, QLatin1Char('\n'));
}

QString shortenedText(const QString& text, int longest)
{
    if (text.size() <= longest)
        return text;
    const bool pairCut = text.at(longest).isLowSurrogate();
    return text.left(pairCut ? longest - 1 : longest) + QChar(0x2026);
}

QString breakable(const QString& name)
{
    QString text;
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, name);
    for (int from = 0, to = 0; (to = characters.toNextBoundary()) > 0; from = to)
        text += name.mid(from, to - from) + QChar(0x200b); // zero width space
    return text;
}
