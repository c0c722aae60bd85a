#include "upgrade/UpgradePolicy.h"

#include "app/ConfigUtil.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "orch/JsonUtil.h"
#include "orch/TextUtil.h"

namespace {

constexpr int kShortestPeriod = 30;   // minutes
constexpr int kLongestPeriod = 30000; // keeps the timer's milliseconds within an int
constexpr int kNoteLimit = 8000;
constexpr int kVersionLimit = 64;
constexpr int kUrlLimit = 4096;

bool isOlder(const QString& version)
{
    return Util::compareVersion(QLatin1String(product::kVersion), version) == -1;
}

} // namespace

UpgradeReply UpgradeReply::fromJson(const QJsonObject& json, bool chinese)
{
    const auto text = [&json](const char* key) {
        return json.value(QLatin1String(key)).toString();
    };
    UpgradeReply reply;
    reply.version = text("version").left(kVersionLimit);
    reply.minVersion = text("minVersion").left(kVersionLimit);
    reply.checkingPeriod =
        qBound(kShortestPeriod, JsonUtil::getInt(json, QStringLiteral("checkingPeriod"), 600),
               kLongestPeriod);
    reply.ignore = json.value(QLatin1String("ignore")).toBool(false);
    reply.url = text("url");
    if (reply.url.size() > kUrlLimit)
        reply.url.clear();
    reply.note = text(chinese ? "releaseNote" : "releaseNoteEn").left(kNoteLimit);
    return reply;
}

bool UpgradeReply::isForced() const
{
    return isOlder(minVersion);
}

bool UpgradeReply::isNewer() const
{
    return isOlder(version);
}

UpgradeChoices UpgradeChoices::load()
{
    const auto text = [](const QString& key, const QString& missing) {
        return ConfigUtil::getvalue(key, missing).toString();
    };
    UpgradeChoices choices;
    choices.laterDate = text(ConfigUtil::UPGRADE_LATER_DATE, choices.laterDate);
    choices.laterVersion = text(ConfigUtil::UPGRADE_LATER_VERSION, QString());
    choices.skipVersion = text(ConfigUtil::SKIP_VERSION, QString());
    return choices;
}

void UpgradeChoices::putOff(const QString& version)
{
    ConfigUtil::writeValue(ConfigUtil::UPGRADE_LATER_DATE, upgradeToday());
    ConfigUtil::writeValue(ConfigUtil::UPGRADE_LATER_VERSION, version);
}

void UpgradeChoices::skip(const QString& version)
{
    ConfigUtil::writeValue(ConfigUtil::SKIP_VERSION, version);
}

UpgradeDecision decideUpgrade(const UpgradeOffer& offer, const UpgradeChoices& choices,
                              const QString& today, bool firstCheck)
{
    UpgradeDecision decision;
    if (!offer.newer || offer.ignored)
        return decision;
    decision.showNew = true;
    if (!choices.skipVersion.isEmpty() && choices.skipVersion == offer.version)
        return decision;
    decision.mark = true;
    if (offer.forced) {
        decision.displayLog.append(QStringLiteral("Force upgrade"));
        decision.pop = true;
    }
    decision.counts = true;
    decision.log =
        QStringLiteral("%1, last version is %2, new version is %3, last date is %4, "
                       "now is %5")
            .arg(firstCheck ? QStringLiteral("First check") : QStringLiteral("check again"),
                 choices.laterVersion, offer.version, choices.laterDate, today);
    // Dates of this form compare as text.
    const bool putOff = choices.laterVersion == offer.version &&
                        (firstCheck ? today <= choices.laterDate : today == choices.laterDate);
    if (!putOff)
        decision.pop = true;
    return decision;
}

QString upgradeToday()
{
    return platform().now().toString(QStringLiteral("yyyy-MM-dd"));
}
