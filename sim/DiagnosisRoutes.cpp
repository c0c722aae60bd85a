#include "sim/Route.h"

#include <QProcess>

namespace sim {

namespace {

constexpr char kBundle[] = "/files/bundle";
constexpr char kFolder[] = "linux_diagnosis/";
constexpr char kLost[] = "diagnosis file destroyed";

void checkAddress(JsonCheck& body)
{
    body.customerText();
    body.serial();
    body.matches(
        "fileName",
        QStringLiteral("linux_%1_\\d{8}_\\d{6}\\.tar\\.gz").arg(body.call.serial().left(10)));
    if (body.has("cpeId"))
        body.integer("cpeId");
    // A bundle that was lost has no size, and nobody who asked for it.
    const bool lost = !body.has("type");
    if ((body.integer("fileSize") == 0) != lost)
        body.findings.add("fileSize and type do not fit each other");
    if (!lost)
        body.integer("type", {0, 1});
}

HttpReply handOutAddress(const Call& call, World& world)
{
    world.bundle = {call.text("fileName"), qint64(call.json["fileSize"].toDouble()),
                    call.json["type"].toInt(), randomName(), randomName()};
    return success({{"uploadUrl", world.orchestratorRoot() + kBundle + "?to=" + world.bundle.logId},
                    {"requestId", world.bundle.requestId},
                    {"logId", world.bundle.logId}});
}

/// The names in a gzip archive; none when it is not one.
QStringList filesOf(const QByteArray& archive)
{
    QProcess tar;
    tar.start("tar", {"-tzf", "-"});
    tar.write(archive);
    tar.closeWriteChannel();
    const bool good = tar.waitForFinished() && tar.exitCode() == 0;
    return QString::fromUtf8(good ? tar.readAllStandardOutput() : QByteArray())
        .split('\n', Qt::SkipEmptyParts);
}

void checkArchive(const Call& call, const World& world, Findings& findings)
{
    if (world.bundle.logId.isEmpty() || call.query() != "to=" + world.bundle.logId.toUtf8())
        findings.add("not the address that was handed out");
    if (call.body.size() != world.bundle.size)
        findings.add("%1 bytes were announced, %2 have come", QString::number(world.bundle.size),
                     QString::number(call.body.size()));
    const QStringList files = filesOf(call.body);
    for (const char* needed : {"", "device.log", "network.log"}) {
        if (!files.contains(QString(kFolder) + needed))
            findings.add("the archive has no %1%2", kFolder, needed);
    }
    for (const QString& file : files) {
        if (!file.startsWith(kFolder) || file.contains(".."))
            findings.add("the archive holds %1", file);
    }
}

void markSent(const Call&, World& world)
{
    world.bundle.sent = true;
}

HttpReply takeArchive(const Call& call, World& world)
{
    markSent(call, world);
    world.bundle.content = call.body;
    world.bundle.files = filesOf(call.body);
    return {};
}

void checkReport(JsonCheck& body)
{
    const Bundle& bundle = body.world.bundle;
    body.text("logId", bundle.logId);
    body.text("requestId", bundle.requestId);
    const bool uploaded = body.flag("uploaded");
    if (uploaded && !bundle.sent)
        body.findings.add("nothing has been uploaded");
    body.integer("errorCode", uploaded ? QVector<int>{200} : QVector<int>{28, 10001});
    const QString reason = body.text("reason");
    if (uploaded != reason.isEmpty() || (bundle.size == 0) != (reason == kLost))
        body.findings.add("the reason is \"%1\"", reason);
    const qint64 time = body.integer("uploadedTime");
    if (qAbs(QDateTime::currentSecsSinceEpoch() - time) > 24 * 60 * 60)
        body.findings.add("uploadedTime is not of today");
}

HttpReply takeReport(const Call& call, World& world)
{
    world.bundle.report = call.json;
    return success();
}

} // namespace

std::vector<Route> diagnosisRoutes()
{
    const HeaderRules session{Json, Numeric, RequiredToken};
    return {
        {"/api/mobile/v2/log/url", session, json(checkAddress), handOutAddress},
        {kBundle, {Gzip}, checkArchive, takeArchive, true, markSent},
        {"/api/mobile/v2/log/result", session, json(checkReport), takeReport},
    };
}

} // namespace sim
