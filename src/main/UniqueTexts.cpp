#include "main/UniqueTexts.h"

#include <QRandomGenerator>

namespace {

// A text's value as a polynomial over the field of 2^61 - 1 at a point that nobody outside knows.
// Whoever makes the document can not choose texts that collide: Qt's own hash of a text has
// collisions that hold under every seed.
quint64 secretHash(const QString& text)
{
    __extension__ typedef unsigned __int128 Wide;
    constexpr quint64 kPrime = (quint64(1) << 61) - 1;
    static const quint64 point = QRandomGenerator::system()->generate64() % (kPrime - 2) + 2;
    quint64 value = 0;
    const auto take = [&value](quint64 digits) { // less than 2^61
        const Wide product = Wide(value + digits) * point;
        const quint64 folded = quint64(product & kPrime) + quint64(product >> 61);
        value = (folded & kPrime) + (folded >> 61);
    };
    take(quint64(text.size()));
    const QChar* unit = text.constData();
    const QChar* const end = unit + text.size();
    for (; end - unit >= 3; unit += 3)
        take(quint64(unit[0].unicode()) << 32 | quint64(unit[1].unicode()) << 16 |
             unit[2].unicode());
    for (; unit != end; ++unit)
        take(unit->unicode());
    return value;
}

} // namespace

uint qHash(const ForeignText& foreign, uint)
{
    return uint(secretHash(foreign.text));
}

// As long as all that is received belongs in it, the list is the received one itself: most are
// without a repetition.
UniqueTexts::UniqueTexts(const QJsonArray& received) : m_texts(received)
{
    m_seen.reserve(received.size());
    for (int i = 0; i < received.size(); ++i) {
        const QJsonValue value = received.at(i);
        if (value.isString() && isNew(value.toString())) {
            if (m_ownList)
                m_texts.append(value);
        } else if (!m_ownList) {
            keepOnly(received, i);
        }
    }
}

void UniqueTexts::add(const QString& text)
{
    if (isNew(text))
        m_texts.append(text);
}

bool UniqueTexts::isNew(const QString& text)
{
    const int before = m_seen.size();
    m_seen.insert({text});
    if (m_seen.size() == before)
        return false;
    if (m_joined.size() <= kJoined)
        m_joined += (before == 0 ? QString() : QStringLiteral(",")) + text;
    return true;
}

void UniqueTexts::keepOnly(const QJsonArray& received, int count)
{
    m_ownList = true;
    m_texts = QJsonArray();
    for (int i = 0; i < count; ++i)
        m_texts.append(received.at(i));
}
