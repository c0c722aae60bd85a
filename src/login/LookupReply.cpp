#include "login/LookupReply.h"

#include "orch/JsonUtil.h"
#include "orch/TextUtil.h"

#include <algorithm>

LookupReply LookupReply::fromJson(const QJsonObject& json)
{
    return {JsonUtil::getInt(json, QStringLiteral("customerId"), 0),
            JsonUtil::getQString(json, QStringLiteral("orchDomain"), QString())};
}

QString customerIdOf(const LookupReply& reply, const QString& typed, const QString& current)
{
    if (reply.customerId != 0)
        return QString::number(reply.customerId);
    const QString text = typed.trimmed();
    const bool digitsAlone = std::all_of(text.cbegin(), text.cend(), [](QChar c) {
        return c >= QLatin1Char('0') && c <= QLatin1Char('9');
    });
    return digitsAlone ? text : current;
}

QString authUrlOf(const QString& orchDomain)
{
    if (orchDomain.isEmpty())
        return QString();
    QString domain = orchDomain;
    if (domain.endsWith(QLatin1Char('/')))
        domain.chop(1);
    const bool isAddress = Util::checkIp(domain);
    const QString url = (domain + QStringLiteral("/api/mobile/v2/auth")).toLower();
    if (url.startsWith(QLatin1String("http")))
        return url;
    return QLatin1String(isAddress ? "http://" : "https://") + url;
}
