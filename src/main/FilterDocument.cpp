#include "main/FilterDocument.h"

#include "orch/JsonUtil.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace {

constexpr int kSummaryLength = 20;

// The texts of a list, each once, in the order of their first appearance. As long as all that is
// received belongs in it, it is the received list itself: most are without a repetition.
class UniqueTexts
{
public:
    explicit UniqueTexts(const QJsonArray& received) : m_texts(received)
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

    void add(const QString& text)
    {
        if (isNew(text))
            m_texts.append(text);
    }

    const QJsonArray& texts() const { return m_texts; }
    const QString& joined() const { return m_joined; }

private:
    bool isNew(const QString& text)
    {
        const int before = m_seen.size();
        m_seen.insert(text);
        if (m_seen.size() == before)
            return false;
        if (m_joined.size() <= kSummaryLength)
            m_joined += (before == 0 ? QString() : QStringLiteral(",")) + text;
        return true;
    }

    void keepOnly(const QJsonArray& received, int count)
    {
        m_ownList = true;
        m_texts = QJsonArray();
        for (int i = 0; i < count; ++i)
            m_texts.append(received.at(i));
    }

    QSet<QString> m_seen;
    QJsonArray m_texts;
    bool m_ownList = false; ///< m_texts is no longer what was received
    QString m_joined;       ///< only as much as a summary needs
};

QString cleanList(QJsonObject& document, const QString& key, const QStringList& added)
{
    UniqueTexts unique(document.value(key).toArray());
    for (const QString& text : added)
        unique.add(text);
    document.insert(key, unique.texts());
    return unique.joined();
}

QString summary(const QString& list)
{
    if (list.isEmpty())
        return QStringLiteral("[]");
    if (list.size() <= kSummaryLength)
        return list;
    return list.left(kSummaryLength) + QStringLiteral("...");
}

} // namespace

FilterDocument FilterDocument::clean(const QByteArray& received, const QStringList& servers)
{
    FilterDocument filter;
    filter.bytes = received;
    QJsonObject document = JsonUtil::object(received);
    filter.code = JsonUtil::getInt(document, QStringLiteral("code"), filter.code);
    filter.ipSetMode = JsonUtil::getInt(document, QStringLiteral("ipSetMode"), filter.ipSetMode);

    const QString white = QStringLiteral("whiteIpSet");
    const QString black = QStringLiteral("blackIpSet");
    const bool hasWhite = document.contains(white);
    const bool hasBlack = document.contains(black);
    if (hasBlack)
        filter.blackIpSet = cleanList(document, black, servers);
    if (hasWhite)
        filter.whiteIpSet = cleanList(document, white, {});
    if (hasWhite || hasBlack)
        filter.bytes = QJsonDocument(document).toJson(QJsonDocument::Compact);
    return filter;
}

QStringList FilterDocument::logLines() const
{
    const auto tr = [](const char* text) { return QCoreApplication::translate("DlgMain", text); };
    QStringList lines;
    if (ipSetMode == 1)
        lines << tr(QT_TRANSLATE_NOOP("DlgMain", "Mode: inclusive filtering"));
    else if (ipSetMode == -1)
        lines << tr(QT_TRANSLATE_NOOP("DlgMain", "Mode: exclusive filtering"));
    else
        lines << tr(QT_TRANSLATE_NOOP("DlgMain", "Mode: inclusive and exclusive filtering"));
    if (ipSetMode == 0 || ipSetMode == 1)
        lines << tr(QT_TRANSLATE_NOOP("DlgMain", "Inclusive filtering ")) + summary(whiteIpSet);
    if (ipSetMode == 0 || ipSetMode == -1)
        lines << tr(QT_TRANSLATE_NOOP("DlgMain", "Exclusive filtering ")) + summary(blackIpSet);
    return lines;
}

QString FilterDocument::verifyOf(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}
