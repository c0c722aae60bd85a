#include "orch/OrchUpgradeReply.h"

#include "app/Platform.h"

namespace {

constexpr int kIdLimit = 256;
constexpr int kTitleLimit = 200;

} // namespace

OrchUpgradeReply parseOrchUpgradeReply(const QJsonObject& json)
{
    const bool chinese = platform().isChinese();
    const auto text = [&json](const char* key) {
        return json.value(QLatin1String(key)).toString();
    };
    const auto number = [&json](const char* key, qlonglong missing) {
        // Beyond the range of exact integers a double is no time any more.
        const double value = json.value(QLatin1String(key)).toDouble(double(missing));
        return qAbs(value) < 9e15 ? qlonglong(value) : missing;
    };
    OrchUpgradeReply reply;
    reply.type = text("type");
    reply.templates = text("template");
    reply.id = text("id").left(kIdLimit); // kept in the settings for good
    reply.startTime = number("startTime", 0);
    reply.endTime = number("endTime", 0);
    reply.currentTime = number("currentTime", 0);
    reply.noticeTime = number("noticeTime", 60);
    reply.message = text(chinese ? "message_zh" : "message_en");
    reply.title = text(chinese ? "title_zh" : "title_en").left(kTitleLimit);
    reply.state = text("state");
    return reply;
}
