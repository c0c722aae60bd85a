#include "sim/Route.h"

namespace sim {

namespace {

constexpr char kErrorDocument[] = "/files/error-texts.json";

HttpReply errorResourceAddress(const Call&, World& world)
{
    return success({{"errorResourceVersion", world.scenario.errorResourceVersion},
                    {"errorResourceDownloadUrl", world.orchestratorRoot() + kErrorDocument}});
}

void checkUpgrade(const Call& call, const World&, Findings& findings)
{
    checkForm(call,
              {{"customerId", {call.header("customerid")}},
               {"model", {"linux"}},
               {"version", {kClientVersion}},
               {"subModel", {"uosLinux", "kylinLinux", "ubuntu", "unknown"}},
               {"cpuType", {"X86", "ARM", "unknown"}},
               {"type", {"Custom"}}},
              findings);
}

void checkNotice(JsonCheck& body)
{
    body.customerText();
    body.text("model", "linux");
    body.serial();
}

HttpReply notice(const Call&, World& world)
{
    QJsonObject reply = world.scenario.noticeReply;
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    if (!reply.contains("currentTime"))
        reply.insert("currentTime", now);
    // A notice of the control page counts its times from now.
    const auto fromNow = [&](const char* minutes, const char* time) {
        const QJsonValue value = reply.take(minutes);
        if (value.isDouble())
            reply.insert(time, now + value.toDouble() * 60000);
    };
    fromNow("startsInMinutes", "startTime");
    fromNow("endsInMinutes", "endTime");
    return jsonReply(reply);
}

void checkLogos(JsonCheck& body)
{
    struct Picture
    {
        const char* keyName;
        const char* clientName;
        int height;
    };
    constexpr Picture expected[] = {{"pictureLogo", "orvek-round.png", 50},
                                    {"textLogo", "logo.png", 40}};
    const QJsonArray pictures = body.array("resource");
    if (pictures.size() != 2)
        body.findings.add("resource does not hold two pictures");
    for (int i = 0; i < 2; ++i) {
        JsonCheck picture(body, "resource", pictures.at(i));
        picture.text("keyName", expected[i].keyName);
        picture.text("clientName", expected[i].clientName);
        picture.integer("dpi", {96});
        picture.integer("heightPixel", {expected[i].height});
    }
    body.customerNumber();
}

} // namespace

std::vector<Route> resourceRoutes()
{
    const HeaderRules form{Form, Numeric};
    const HeaderRules plain{Json, Numeric};
    return {
        {"/s/mobile/error/resource/url", form, nothing, errorResourceAddress},
        {kErrorDocument, {}, nothing, reply<&Scenario::errorResource>},
        {"/s/mobile/v1/upgrade", form, checkUpgrade, reply<&Scenario::upgradeReply>},
        {"/api/mobile/v2/upgradeNotice", plain, json(checkNotice), notice},
        {"/api/mobile/v2/getCustomerLogoUrl", plain, json(checkLogos), reply<&Scenario::logoReply>},
    };
}

} // namespace sim
