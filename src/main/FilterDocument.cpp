#include "main/FilterDocument.h"

#include "orch/JsonUtil.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QJsonDocument>

namespace {

constexpr int kModeMissing = 99;

const QString kWhite = QStringLiteral("whiteIpSet");
const QString kBlack = QStringLiteral("blackIpSet");

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(FilterDocument)
};

QString summary(const std::optional<UniqueTexts>& list)
{
    if (!list || list->joined().isEmpty())
        return QStringLiteral("[]");
    const QString& joined = list->joined();
    if (joined.size() <= UniqueTexts::kJoined)
        return joined;
    return joined.left(UniqueTexts::kJoined) + QStringLiteral("...");
}

} // namespace

FilterDocument::FilterDocument(const QByteArray& received)
    : m_received(received), m_document(JsonUtil::object(received)),
      m_code(JsonUtil::getInt(m_document, QStringLiteral("code"), 0)),
      m_IpSetMode(JsonUtil::getInt(m_document, QStringLiteral("ipSetMode"), kModeMissing))
{
}

void FilterDocument::_removeDuplicatesJson()
{
    if (m_document.contains(kBlack))
        m_BlackIpSet.emplace(m_document.value(kBlack).toArray());
    if (m_document.contains(kWhite))
        m_WhiteIpSet.emplace(m_document.value(kWhite).toArray());
}

void FilterDocument::_rebuildFilterJson(const QStringList& commServIp)
{
    if (!m_BlackIpSet)
        return;
    for (const QString& address : commServIp)
        m_BlackIpSet->add(address);
}

QByteArray FilterDocument::bytes() const
{
    if (!m_BlackIpSet && !m_WhiteIpSet)
        return m_received;
    QJsonObject document = m_document;
    if (m_BlackIpSet)
        document.insert(kBlack, m_BlackIpSet->texts());
    if (m_WhiteIpSet)
        document.insert(kWhite, m_WhiteIpSet->texts());
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

QStringList FilterDocument::logLines() const
{
    QStringList lines;
    if (m_IpSetMode == 1)
        lines << Texts::tr("Mode: inclusive filtering");
    else if (m_IpSetMode == -1)
        lines << Texts::tr("Mode: exclusive filtering");
    else
        lines << Texts::tr("Mode: inclusive and exclusive filtering");
    if (m_IpSetMode == 0 || m_IpSetMode == 1)
        lines << Texts::tr("Inclusive filtering ") + summary(m_WhiteIpSet);
    if (m_IpSetMode == 0 || m_IpSetMode == -1)
        lines << Texts::tr("Exclusive filtering ") + summary(m_BlackIpSet);
    return lines;
}

QString FilterDocument::verifyOf(const QByteArray& bytes)
{
    return QString::fromLatin1(QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex());
}
