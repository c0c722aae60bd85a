#include "sim/Route.h"

#include <QHostAddress>
#include <QJsonArray>

namespace sim {

namespace {

using Rules = HeaderRules;

constexpr char kHeartbeatPath[] = "/api/mobile/v2/heartbeat";
constexpr char kFilterPath[] = "/files/ip-filter.json";
// An escape and a second parameter: the address must come back exactly as it was given out.
constexpr char kFilterQuery[] = "site=T-31&kind=ip%2Ffilter";

void checkInternalIp(const QString& ip, Findings& findings)
{
    QHostAddress address;
    if (!ip.isEmpty() && (!address.setAddress(ip) || address.toString() != ip ||
                          address.protocol() != QAbstractSocket::IPv4Protocol))
        findings.add(QStringLiteral("internalIp \"%1\" is no IPv4 address").arg(ip));
}

void checkConnect(const Call& call, const World&, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    body.text("deviceModel", "linux");
    body.text("mobileVersion", "6.1.20");
    body.text("sn", QString::fromUtf8(call.header("sn")));
    body.text("deviceSupportMode", "native");
    checkInternalIp(body.text("internalIp"), findings);
    body.integer("mobileActionLogType", {1, 2, 4});
    JsonCheck features(body.object("supportFeature"), findings, "supportFeature.");
    for (const char* name :
         {"supportHttps", "supportHeartBeat", "supportIpFilterDownloadUrlV2", "supportCheckToken"})
        features.flag(name, true);
    features.finish();
    body.finish();
}

void insertDefault(QJsonObject& object, const char* member, const QJsonValue& value)
{
    if (!object.contains(QLatin1String(member)))
        object.insert(QLatin1String(member), value);
}

HttpReply connectSession(const Call& call, World& world)
{
    Session* session = world.sessionOf(call);
    QJsonObject reply = world.scenario.connectReply;
    const QString root = world.orchestratorRoot();
    insertDefault(reply, "customerId", session->customerId);
    insertDefault(reply, "heartbeatUrl", root + kHeartbeatPath);
    insertDefault(reply, "mobileTrafficDownloadUrl", root + kFilterPath + '?' + kFilterQuery);
    session->connected = true;
    session->everConnected = true;
    session->intranet = reply.value("mobileDetect").toBool();
    return jsonReply(reply);
}

void checkDisconnect(const Call& call, const World&, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    body.integer("customerId", {call.header("customerid").toInt()});
    body.text("mobileVersion", "6.1.20");
    body.text("sn", QString::fromUtf8(call.header("sn")));
    body.integer("mobileActionLogType", {1, 2, 3, 4});
    body.finish();
}

/// The answer, with the order that waits merged into it.
HttpReply withOrder(World& world, QJsonObject reply)
{
    if (world.orders.isEmpty())
        return jsonReply(reply);
    QJsonObject order = world.orders.takeFirst();
    const QString logfile = order.take("logfile").toString();
    for (auto it = order.begin(); it != order.end(); ++it)
        reply.insert(it.key(), it.value());
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

void checkSignout(const Call& call, const World&, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    body.integer("mobileActionLogType", {1, 2});
    body.finish();
}

HttpReply signOut(const Call& call, World& world)
{
    Session* session = world.sessionOf(call);
    if (session == nullptr || !session->valid)
        return refusal(session == nullptr ? -1 : session->invalidReason);
    session->valid = false;
    session->connected = false;
    return jsonReply({{"code", 0}});
}

const Session* sessionOf(const Call& call, const World& world)
{
    const auto it = world.sessions.constFind(QString::fromUtf8(call.header("x-tq-auth-header")));
    return it == world.sessions.constEnd() ? nullptr : &*it;
}

void checkConnected(const Call& call, const World& world, Findings& findings)
{
    const Session* session = sessionOf(call, world);
    if (session != nullptr && !session->everConnected)
        findings.add("the session has never connected");
}

void checkHeartbeat(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const Session* session = sessionOf(call, world);
    if (session != nullptr && session->intranet)
        body.flag("intranetMode", true);
    body.finish();
    checkConnected(call, world, findings);
}

HttpReply heartbeat(const Call& call, World& world)
{
    ++world.sessionOf(call)->heartbeats;
    return withOrder(world, world.scenario.heartbeatReply);
}

void checkFilter(const Call& call, const World& world, Findings& findings)
{
    checkEmptyBody(call, findings);
    if (call.query() != kFilterQuery)
        findings.add(QStringLiteral("the query is \"%1\", the address given out had \"%2\"")
                         .arg(QString::fromUtf8(call.query()), kFilterQuery));
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
    const HeaderRules withToken{Rules::Content::Json, Rules::Customer::Numeric,
                                Rules::Token::Required, true};
    // A client that has already dropped its token still signs out, with an empty one.
    const HeaderRules signoutRules{Rules::Content::Json, Rules::Customer::Numeric,
                                   Rules::Token::Optional, true};
    return {
        {false, "POST", "/api/mobile/v2/connect", withToken, checkConnect, connectSession},
        {false, "POST", "/api/mobile/v2/disconnect", withToken, checkDisconnect, disconnectSession},
        {false, "POST", "/api/mobile/v2/signout", signoutRules, checkSignout, signOut},
        {false, "POST", kHeartbeatPath, withToken, checkHeartbeat, heartbeat},
        {false,
         "GET",
         kFilterPath,
         {Rules::Content::None, Rules::Customer::Numeric, Rules::Token::Required, false},
         checkFilter,
         filterDocument,
         true},
    };
}

} // namespace sim
