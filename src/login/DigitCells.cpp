#include "login/DigitCells.h"

#include <algorithm>

QString DigitCells::text() const
{
    QString joined;
    for (int cell = 0; cell < kCount; ++cell)
        joined += at(cell);
    return joined;
}

QString DigitCells::at(int cell) const
{
    const QChar digit = m_digits[std::size_t(cell)];
    return digit.isNull() ? QString() : QString(digit);
}

void DigitCells::type(QChar digit)
{
    const int value = digit.digitValue();
    if (value < 0 || m_curActivateIdx == kCount)
        return;
    m_digits[std::size_t(m_curActivateIdx)] = QLatin1Char(char('0' + value));
    ++m_curActivateIdx;
}

void DigitCells::erase()
{
    const bool filled = m_curActivateIdx < kCount && !at(m_curActivateIdx).isEmpty();
    if (!filled)
        m_curActivateIdx = std::max(0, m_curActivateIdx - 1);
    m_digits[std::size_t(m_curActivateIdx)] = QChar();
}

bool DigitCells::paste(const QString& pasted)
{
    constexpr int kLongest = 100; // of a text that may still be a code with its spaces
    QString digits;
    for (const QChar c : pasted.left(kLongest + 1)) {
        if (c.digitValue() >= 0)
            digits += c;
        else if (!c.isSpace() && c != QLatin1Char('-'))
            return false;
    }
    if (digits.isEmpty() || digits.size() > kCount || pasted.size() > kLongest)
        return false;
    if (digits.size() == kCount)
        clear();
    for (const QChar digit : digits)
        type(digit);
    return true;
}
