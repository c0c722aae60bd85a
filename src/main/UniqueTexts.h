#pragma once

#include <QJsonArray>
#include <QSet>
#include <QString>

/// A text of a document that a stranger may have made. Its hash is one that nobody outside can
/// aim at.
struct ForeignText
{
    QString text;
};

inline bool operator==(const ForeignText& a, const ForeignText& b)
{
    return a.text == b.text;
}

uint qHash(const ForeignText& foreign, uint seed);

/// The texts of a list, each once, in the order of their first appearance. Linear in their number
/// and length, whoever chose them.
class UniqueTexts
{
public:
    /// Takes the texts of a received list; what is no text is left out.
    explicit UniqueTexts(const QJsonArray& received);

    /// Adds one at the end, unless it is there.
    void add(const QString& text);

    const QJsonArray& texts() const { return m_texts; }

    /// The beginning of the texts joined with ",": more than `kJoined` characters of them, or all.
    const QString& joined() const { return m_joined; }
    static constexpr int kJoined = 20;

private:
    bool isNew(const QString& text);
    void keepOnly(const QJsonArray& received, int count);

    QSet<ForeignText> m_seen;
    QJsonArray m_texts;
    bool m_ownList = false; ///< m_texts is no longer what was received
    QString m_joined;
};
