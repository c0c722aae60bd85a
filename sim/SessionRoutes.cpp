#include "sim/Route.h"

#include <QHostAddress>

namespace sim {

namespace {

constexpr char kHeartbeatPath[] = "/api/mobile/v2/heartbeat";
constexpr char kFilterPath[] = "/files/ip-filter.json";
// An escape and a second parameter: the address must come back exactly as it was given out.
constexpr char kFilterQuery[] = "site=T-31&kind=ip%2Ffilter";

void checkConnect(JsonCheck& body)
{
    body.text("deviceModel", "linux");
    body.text("mobileVersion", kClientVersion);
    body.serial();
    body.text("deviceSupportMode", "native");
    const QString ip = body.text("internalIp");
    QHostAddress address;
    if (!ip.isEmpty() && (!address.setAddress(ip) || address.toString() != ip ||
                          address.protocol() != QAbstractSocket::IPv4Protocol))
        body.findings.add("internalIp \"%1\" is no IPv4 address", ip);
    body.integer("mobileActionLogType", {1, 2, 4});
    JsonCheck features = body.object("supportFeature");
    for (const char* name :
         {"supportHttps", "supportHeartBeat", "supportIpFilterDownloadUrlV2", "supportCheckToken"})
        features.flag(name, true);
}

HttpReply connectSession(const Call& call, World& world)
{
    Session* session = world.sessionOf(call);
    const QString root = world.orchestratorRoot();
    QJsonObject reply{
        {"customerId", session->customerId},
        {"heartbeatUrl", root + kHeartbeatPath},
        {"mobileTrafficDownloadUrl", root + kFilterPath + '?' + kFilterQuery},
    };
    insertAll(reply, world.scenario.connectReply);
    session->connected = true;
    session->everConnected = true;
    session->intranet = reply.value("mobileDetect").toBool();
    return jsonReply(reply);
}

void checkDisconnect(JsonCheck& body)
{
    body.customerNumber();
    body.text("mobileVersion", kClientVersion);
    body.serial();
    body.integer("mobileActionLogType", {1, 2, 3, 4});
}

/// The answer, with the order that waits merged into it.
HttpReply withOrder(World& world, QJsonObject reply)
{
    if (world.orders.isEmpty())
        return jsonReply(reply);
    QJsonObject order = world.orders.takeFirst();
    const QString logfile = order.take("logfile").toString();
    insertAll(reply, order);
    HttpReply answer = jsonReply(reply);
    if (!logfile.isEmpty())
        answer.headers.append({"orch-logfile", logfile.toUtf8()});
    return answer;
}

HttpReply disconnectSession(const Call& call, World& world)
{
    world.sessionOf(call)->connected = false;
    return withOrder(world, {{"code", 0}});
}

void checkSignout(JsonCheck& body)
{
    body.integer("mobileActionLogType", {1, 2});
}

HttpReply signOut(const Call& call, World& world)
{
    Session* session = world.sessionOf(call);
    if (session == nullptr || !session->valid)
        return refusal(session);
    session->valid = false;
    session->connected = false;
    return success();
}

void checkConnected(const Call& call, const World& world, Findings& findings)
{
    const Session session = world.sessions.value(call.token());
    if (!session.token.isEmpty() && !session.everConnected)
        findings.add("the session has never connected");
}

void checkHeartbeat(JsonCheck& body)
{
    if (body.world.sessions.value(body.call.token()).intranet)
        body.flag("intranetMode", true);
    checkConnected(body.call, body.world, body.findings);
}

HttpReply heartbeat(const Call& call, World& world)
{
    ++world.sessionOf(call)->heartbeats;
    return withOrder(world, world.scenario.heartbeatReply);
}

void checkFilter(const Call& call, const World& world, Findings& findings)
{
    nothing(call, world, findings);
    if (call.query() != kFilterQuery)
        findings.add("the query is \"%1\", the address given out had \"%2\"", call.query(),
                     kFilterQuery);
    checkConnected(call, world, findings);
}

HttpReply filterDocument(const Call&, World& world)
{
    HttpReply reply;
    reply.body = world.scenario.filterDocument;
    return reply;
}

} // namespace

std::vector<Route> sessionRoutes()
{
    const HeaderRules session{Json, Numeric, RequiredToken, true};
    // A client that has already dropped its token still signs out, with an empty one.
    const HeaderRules signout{Json, Numeric, OptionalToken, true};
    const HeaderRules file{NoContent, Numeric, RequiredToken};
    return {
        {"/api/mobile/v2/connect", session, json(checkConnect), connectSession},
        {"/api/mobile/v2/disconnect", session, json(checkDisconnect), disconnectSession},
        {"/api/mobile/v2/signout", signout, json(checkSignout), signOut},
        {kHeartbeatPath, session, json(checkHeartbeat), heartbeat},
        {kFilterPath, file, checkFilter, filterDocument, true},
    };
}

} // namespace sim
