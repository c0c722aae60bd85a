#include "sim/Route.h"

#include <QJsonArray>

namespace sim {

namespace {

using Rules = HeaderRules;

constexpr char kErrorDocument[] = "/files/error-texts.json";

void checkNothing(const Call& call, const World&, Findings& findings)
{
    checkEmptyBody(call, findings);
}

HttpReply errorResourceAddress(const Call&, World& world)
{
    return jsonReply({{"code", 0},
                      {"errorResourceVersion", world.scenario.errorResourceVersion},
                      {"errorResourceDownloadUrl", world.orchestratorRoot() + kErrorDocument}});
}

HttpReply errorDocument(const Call&, World& world)
{
    return jsonReply(world.scenario.errorResource);
}

void checkUpgrade(const Call& call, const World&, Findings& findings)
{
    checkForm(call,
              {{"customerId", {call.header("customerid")}},
               {"model", {"linux"}},
               {"version", {"6.1.20"}},
               {"subModel", {"uosLinux", "kylinLinux", "ubuntu", "unknown"}},
               {"cpuType", {"X86", "ARM", "unknown"}},
               {"type", {"Custom"}}},
              findings);
}

HttpReply upgrade(const Call&, World& world)
{
    return jsonReply(world.scenario.upgradeReply);
}

void checkNotice(const Call& call, const World&, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    body.text("customerId", QString::fromUtf8(call.header("customerid")));
    body.text("model", "linux");
    body.text("sn", QString::fromUtf8(call.header("sn")));
    body.finish();
}

HttpReply notice(const Call&, World& world)
{
    QJsonObject reply = world.scenario.noticeReply;
    const double now = static_cast<double>(QDateTime::currentMSecsSinceEpoch());
    if (!reply.contains("currentTime"))
        reply.insert("currentTime", now);
    // A notice of the control page counts its times from now.
    const auto fromNow = [&](const char* minutes, const char* time) {
        const QJsonValue value = reply.take(QLatin1String(minutes));
        if (value.isDouble())
            reply.insert(QLatin1String(time), now + value.toDouble() * 60000);
    };
    fromNow("startsInMinutes", "startTime");
    fromNow("endsInMinutes", "endTime");
    return jsonReply(reply);
}

void checkPicture(const QJsonValue& value, const char* keyName, const char* clientName, int height,
                  Findings& findings)
{
    JsonCheck picture(value.toObject(), findings, "resource.");
    picture.text("keyName", QLatin1String(keyName));
    picture.text("clientName", QLatin1String(clientName));
    picture.integer("dpi", {96});
    picture.integer("heightPixel", {height});
    picture.finish();
}

void checkLogos(const Call& call, const World&, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const QJsonArray pictures = body.array("resource");
    if (pictures.size() != 2)
        findings.add("resource does not hold two pictures");
    checkPicture(pictures.at(0), "pictureLogo", "orvek-round.png", 50, findings);
    checkPicture(pictures.at(1), "textLogo", "logo.png", 40, findings);
    body.integer("customerId", {call.header("customerid").toInt()});
    body.finish();
}

HttpReply logos(const Call&, World& world)
{
    return jsonReply(world.scenario.logoReply);
}

} // namespace

std::vector<Route> resourceRoutes()
{
    const HeaderRules form{Rules::Content::Form, Rules::Customer::Numeric, Rules::Token::None,
                           false};
    const HeaderRules json{Rules::Content::Json, Rules::Customer::Numeric, Rules::Token::None,
                           false};
    return {
        {false, "POST", "/s/mobile/error/resource/url", form, checkNothing, errorResourceAddress},
        {false,
         "GET",
         kErrorDocument,
         {Rules::Content::None, Rules::Customer::None, Rules::Token::None, false},
         checkNothing,
         errorDocument},
        {false, "POST", "/s/mobile/v1/upgrade", form, checkUpgrade, upgrade},
        {false, "POST", "/api/mobile/v2/upgradeNotice", json, checkNotice, notice},
        {false, "POST", "/api/mobile/v2/getCustomerLogoUrl", json, checkLogos, logos},
    };
}

} // namespace sim
