#include "sim/Route.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>

namespace sim {

namespace {

constexpr char kErrorDocument[] = "/files/error-texts.json";
constexpr char kLogos[] = "/files/logos/";

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

QByteArray drawLogo(const QJsonObject& like)
{
    QImage image(like["width"].toInt(), like["height"].toInt(), QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(255 * x / image.width(), 96, 255 * y / image.height()));
    QBuffer file;
    image.save(&file, "PNG");
    return like["cut"].toBool() ? file.data().left(file.data().size() / 2) : file.data();
}

HttpReply logoList(const Call&, World& world)
{
    QJsonArray list;
    for (const QString& name : world.scenario.logos.keys()) {
        const QJsonObject like = world.scenario.logos[name].toObject();
        const QByteArray md5 = QCryptographicHash::hash(drawLogo(like), QCryptographicHash::Md5);
        QJsonObject logo{{"keyName", "logo"}, {"clientName", name}, {"success", !like.isEmpty()}};
        if (!like.isEmpty())
            insertAll(logo, {{"url", world.orchestratorRoot() + kLogos + name},
                             {"md5", QString::fromLatin1(md5.toHex())}});
        list.append(logo);
    }
    HttpReply reply;
    reply.body = QJsonDocument(list).toJson();
    return reply;
}

HttpReply logoFile(const Call& call, World& world)
{
    HttpReply reply;
    reply.body = drawLogo(world.scenario.logos[call.path().mid(sizeof kLogos - 1)].toObject());
    reply.contentType = "image/png";
    return reply;
}

} // namespace

std::vector<Route> resourceRoutes()
{
    const HeaderRules form{Form, Numeric};
    const HeaderRules plain{Json, Numeric};
    const HeaderRules file{NoContent, Numeric};
    return {
        {"/s/mobile/error/resource/url", form, nothing, errorResourceAddress},
        {kErrorDocument, {}, nothing, reply<&Scenario::errorResource>},
        {"/s/mobile/v1/upgrade", form, checkUpgrade, reply<&Scenario::upgradeReply>},
        {"/api/mobile/v2/upgradeNotice", plain, json(checkNotice), notice},
        {"/api/mobile/v2/getCustomerLogoUrl", plain, json(checkLogos), logoList},
        {QByteArray(kLogos) + "orvek-round.png", file, nothing, logoFile},
        {QByteArray(kLogos) + "logo.png", file, nothing, logoFile},
    };
}

} // namespace sim
