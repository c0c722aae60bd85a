#pragma once

#include <QChar>
#include <QString>

#include <array>

/// A code of six digits while it is typed, a cell for each digit: what the cells hold and which one
/// is active. A value; any thread.
class DigitCells
{
public:
    static constexpr int kCount = 6;

    /// The digits of the cells, joined; a cell that is left out is missing.
    QString text() const;

    /// One cell's digit, empty while it has none.
    QString at(int cell) const;

    /// The cell that takes the next digit; kCount behind the last one.
    int active() const { return m_curActivateIdx; }

    /// Puts a digit of any script into the active cell and goes on to the next one. Whatever is no
    /// digit, or comes behind the last cell, changes nothing.
    void type(QChar digit);

    /// Backspace: empties the active cell, or the one before when it is empty already.
    void erase();

    void select(int cell) { m_curActivateIdx = cell; }

    /// A text from elsewhere: six digits make up the whole code, fewer are typed from the active
    /// cell on. Spaces and hyphens between them do not matter. False, and nothing has changed, for
    /// any other text.
    bool paste(const QString& pasted);

    void clear() { *this = DigitCells(); }

private:
    std::array<QChar, kCount> m_digits = {}; ///< secret; null where there is none yet
    int m_curActivateIdx = 0;
};
