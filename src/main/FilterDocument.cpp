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

// Collects texts once each, in the order of their first appearance.
class UniqueTexts
{
public:
    explicit UniqueTexts(int expected) { m_seen.reserve(expected); }

    void add(const QString& text)
    {
        const int before = m_seen.size();
        m_seen.insert(text);
        if (m_seen.size() == before)
            return;
        m_texts.append(text);
        if (m_joined.size() <= kSummaryLength)
            m_joined += (m_texts.size() == 1 ? QString() : QStringLiteral(",")) + text;
    }

    void add(const QJsonArray& values)
    {
        for (const QJsonValue& value : values) {
            if (value.isString())
                add(value.toString());
        }
    }

    const QJsonArray& texts() const { return m_texts; }
    const QString& joined() const { return m_joined; }

private:
    QSet<QString> m_seen;
    QJsonArray m_texts;
    QString m_joined; ///< only as much as a summary needs
};

QString cleanList(QJsonObject& document, const QString& key, const QStringList& added)
{
    const QJsonArray received = document.value(key).toArray();
    UniqueTexts unique(received.size() + added.size());
    unique.add(received);
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
