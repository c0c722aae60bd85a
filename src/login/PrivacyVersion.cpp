#include "login/PrivacyVersion.h"

#include "orch/JsonUtil.h"

namespace privacyversion {

const QString kNewest = QStringLiteral("newest");

QString fromJson(const QJsonObject& json)
{
    return JsonUtil::getQString(json, QStringLiteral("veltaro_privacy_version"), QString());
}

static QString replaceNewest(const QString& received, const QString& saved)
{
    return saved == kNewest ? received : saved;
}

Decision afterPrimary(const QString& received, const QString& saved)
{
    if (received.isEmpty())
        return {Next::AskBackup, saved};
    const QString known = replaceNewest(received, saved);
    return {received > known ? Next::Prompt : Next::GoOn, known};
}

Decision afterBackup(const QString& received, const QString& saved)
{
    if (received.isEmpty())
        return {Next::GoOn, saved};
    const QString known = replaceNewest(received, saved);
    return {received != known ? Next::Prompt : Next::GoOn, known};
}

} // namespace privacyversion
