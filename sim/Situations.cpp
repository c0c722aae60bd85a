#include "sim/Situations.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

namespace sim {

namespace {

constexpr char kAuth[] = "/api/mobile/v2/auth";
constexpr char kConnect[] = "/api/mobile/v2/connect";
constexpr char kFilter[] = "/files/ip-filter.json";
constexpr char kHeartbeat[] = "/api/mobile/v2/heartbeat";
constexpr char kNotice[] = "/api/mobile/v2/upgradeNotice";
constexpr char kStatus[] = "/api/mobile/smsStatus";

QJsonObject scenario(const char* member, const QJsonObject& values)
{
    return {{"scenario", QJsonObject{{QLatin1String(member), values}}}};
}

QJsonObject status(const char* path, int code)
{
    return {{"path", QLatin1String(path)}, {"status", code}};
}

/// Every request to `path` is answered with this document.
QJsonObject answer(const char* path, const QJsonObject& document)
{
    const QByteArray body = QJsonDocument(document).toJson(QJsonDocument::Compact);
    return {
        {"fault", QJsonObject{{"path", QLatin1String(path)}, {"body", QString::fromUtf8(body)}}}};
}

/// The next heartbeat's answer carries one action, or ten of them.
QJsonObject order(int action, const char* reasonEn, const char* reasonZh, int times = 1)
{
    QJsonArray actions;
    for (int i = 0; i < times; ++i)
        actions.append(QJsonObject{{"action", action},
                                   {"reason_en", QLatin1String(reasonEn)},
                                   {"reason_zh", QString::fromUtf8(reasonZh)}});
    return {{"order", QJsonObject{{"actionDataList", actions}}}};
}

QJsonObject orderOnNewSubnet()
{
    QJsonObject members = order(1, "", "").value(QStringLiteral("order")).toObject();
    members.insert(QStringLiteral("subnetIpChange"), true);
    members.insert(QStringLiteral("mobileDetectFailed"), QStringLiteral("客户端网段已改变。"));
    members.insert(QStringLiteral("mobileDetectFailedEn"),
                   QStringLiteral("The client's subnet has changed."));
    return {{"order", members}};
}

/// The link is encrypted from the next heartbeat or connect reply on.
QJsonObject encryption(const char* flag)
{
    const QJsonObject on{{QLatin1String(flag), true}};
    return {{"scenario", QJsonObject{{"connectReply", on}, {"heartbeatReply", on}}}};
}

QJsonObject datapath(const char* key, const char* value)
{
    return {{"datapath", QJsonObject{{QLatin1String(key), QLatin1String(value)}}}};
}

QJsonObject refusal(int code, const char* message, const QJsonObject& parameters = {})
{
    QJsonObject document{{"code", code}, {"message", QLatin1String(message)}};
    if (!parameters.isEmpty())
        document.insert(QStringLiteral("parameters"), parameters);
    return document;
}

QJsonObject notice(const char* state, int startsIn, int endsIn)
{
    return scenario("noticeReply", {{"type", "upgrade"},
                                    {"id", "notice-%NOW%"},
                                    {"template", "standard"},
                                    {"state", QLatin1String(state)},
                                    {"startsInMinutes", startsIn},
                                    {"endsInMinutes", endsIn}});
}

QJsonObject newer(const char* minVersion, bool ignore)
{
    return scenario("upgradeReply",
                    {{"version", "6.2.0"},
                     {"minVersion", QLatin1String(minVersion)},
                     {"ignore", ignore},
                     {"url", "https://files.veltaro.example/veltaro-6.2.0.deb"},
                     {"releaseNote", QStringLiteral("连接更快，诊断更准。")},
                     {"releaseNoteEn", "Faster connections and clearer diagnoses."}});
}

/// The orchestrator's gateway answers 502, with or without a maintenance behind it.
QJsonObject badGateway(bool running)
{
    QJsonObject command = running ? notice("run", -60, 60) : QJsonObject();
    command.insert(QStringLiteral("faults"), QJsonArray{status(kAuth, 502), status(kConnect, 502)});
    return command;
}

std::vector<Situation> refusals()
{
    struct Row
    {
        int code;
        const char* name;
        const char* message;
        QJsonObject parameters;
    };
    const std::vector<Row> rows{
        {1001, "Wrong password", "wrong password", {}},
        {1019, "Account locked", "locked", {}},
        {1025, "Saved credentials no longer valid", "password no longer valid", {}},
        {401, "Token expired", "token expired", {}},
        {401, "Password changed elsewhere", "token expired", {{"invalidReasonCode", 1}}},
        {1090, "Client too old", "outdated", {}},
        {1127, "Device association in process", "in process", {}},
        {1128, "Device disabled", "device disabled", {}},
        {1108, "Authenticator step expired", "authenticator step expired", {}},
        {1112, "Authenticator step refused", "authenticator step refused", {}},
    };
    std::vector<Situation> made;
    made.reserve(rows.size());
    for (const Row& row : rows)
        made.push_back({QStringLiteral("Login refused"), QLatin1String(row.name),
                        answer(kAuth, refusal(row.code, row.message, row.parameters))});
    return made;
}

std::vector<Situation> serverOrders()
{
    const QString group = QStringLiteral("Server orders");
    return {
        {group, QStringLiteral("Disconnect, with a reason"),
         order(1, "Your licence has expired.", "您的许可证已过期。")},
        {group, QStringLiteral("Disconnect, no reason"), order(1, "", "")},
        {group, QStringLiteral("Reconnect, with a reason"),
         order(4, "The gateway is being moved.", "网关正在迁移。")},
        {group, QStringLiteral("Reconnect, no reason"), order(4, "", "")},
        {group, QStringLiteral("Reconnect, ten times in one answer"), order(4, "", "", 10)},
        {group, QStringLiteral("Disconnect on a new subnet"), orderOnNewSubnet()},
        {group,
         QStringLiteral("Send a diagnosis bundle"),
         {{"order", QJsonObject{{"logfile", "bundle-1"}}}}},
    };
}

std::vector<Situation> datapaths()
{
    const QString group = QStringLiteral("Datapath");
    return {
        {group, QStringLiteral("Datapath dies"), {{"crashDatapath", true}}},
        {group, QStringLiteral("Tunnels lost"), datapath("tunnels", "down")},
        {group, QStringLiteral("Dispatch service silent"), datapath("dispatch", "silent")},
        {group, QStringLiteral("Agent silent"), datapath("agent", "silent")},
        {group, QStringLiteral("Agent refuses"), datapath("agent", "disconnect")},
        {group, QStringLiteral("Agent talks without end"), datapath("agent", "flood")},
        {group,
         QStringLiteral("Start script fails"),
         {{"datapath", QJsonObject{{"script_exit", "1"}, {"script_stderr", "no tun device"}}}}},
        {group, QStringLiteral("Stop script fails"), datapath("stop_exit", "2")},
    };
}

std::vector<Situation> build()
{
    const QString maintenance = QStringLiteral("Maintenance");
    const QString upgrade = QStringLiteral("Client versions");
    const QString lookup = QStringLiteral("Customer step");
    const QString codes = QStringLiteral("Codes and passwords");
    const QString session = QStringLiteral("Session");
    std::vector<Situation> all{
        {maintenance, QStringLiteral("Maintenance announced"), notice("wait", 60, 120)},
        {maintenance, QStringLiteral("Maintenance running"), notice("run", -60, 60)},
        {maintenance, QStringLiteral("502 during a maintenance"), badGateway(true)},
        {maintenance, QStringLiteral("502 without a maintenance"), badGateway(false)},
        {maintenance, QStringLiteral("Notices unknown"), {{"fault", status(kNotice, 404)}}},
        {upgrade, QStringLiteral("Newer client"), newer("6.0.0", false)},
        {upgrade, QStringLiteral("Client must be upgraded"), newer("6.2.0", false)},
        {upgrade, QStringLiteral("Newer client to be ignored"), newer("6.2.0", true)},
        {upgrade,
         QStringLiteral("Upgrade check fails"),
         {{"fault", status("/s/mobile/v1/upgrade", 500)}}},
        {lookup, QStringLiteral("Primary lookup down"), {{"stop", "primary"}}},
        {lookup, QStringLiteral("Customer unknown"),
         answer("/api/mobile/v1/orchinfo", refusal(1007, "unknown"))},
        {lookup, QStringLiteral("No key"),
         answer("/s/mobile/pubkey/obtain", {{"code", 0}, {"key", ""}})},
        {lookup,
         QStringLiteral("Newer privacy agreement"),
         {{"scenario", QJsonObject{{"privacyVersion", "20991231"}}}}},
        {codes, QStringLiteral("Code still under way"), answer(kStatus, {{"code", 427}})},
        {codes, QStringLiteral("E-mail still under way"), answer(kStatus, {{"code", 465}})},
        {codes, QStringLiteral("Codes asked for too often"), answer(kStatus, {{"code", 422}})},
        {codes, QStringLiteral("Phone number blocked"), answer(kStatus, {{"code", 423}})},
        {codes, QStringLiteral("No way to reset a password"),
         scenario("resetModeReply", {{"resetPwdMethod", 3}})},
        {codes, QStringLiteral("A password rule that never ends"),
         scenario("passwordRules",
                  {{"firstPwdRule", QJsonArray{QJsonObject{{"pwdRegularStr", "(a+)+b"},
                                                           {"clientName", "Only a and b."}}}}})},
        {session, QStringLiteral("Heartbeat fails"), {{"fault", status(kHeartbeat, 500)}}},
        {session, QStringLiteral("Intranet mode"),
         scenario("connectReply", {{"mobileDetect", true}})},
        {session,
         QStringLiteral("Filter of a million entries"),
         {{"filterSize", QJsonObject{{"inclusive", 400000}, {"exclusive", 600000}}}}},
        {session,
         QStringLiteral("Filter of five entries"),
         {{"filterSize", QJsonObject{{"inclusive", 2}, {"exclusive", 3}}}}},
        {session, QStringLiteral("Quantum encryption"), encryption("enableQuantum")},
        {session, QStringLiteral("PQC encryption"), encryption("enablePQC")},
        {session, QStringLiteral("Log out, forced"), {{"revoke", 3}}},
        {session, QStringLiteral("Log out, forced, by the filter document"),
         answer(kFilter, refusal(401, "invalid", {{"invalidReasonCode", 3}}))},
        {session, QStringLiteral("Log out, account changed"), {{"revoke", 5}}},
        {session, QStringLiteral("Log out, password changed"), {{"revoke", 1}}},
        {session, QStringLiteral("Log out, no reason"), {{"revoke", -1}}},
    };
    for (const std::vector<Situation>& more : {serverOrders(), datapaths(), refusals()})
        all.insert(all.end(), more.begin(), more.end());
    return all;
}

} // namespace

const std::vector<Situation>& situations()
{
    static const std::vector<Situation> all = build();
    return all;
}

QJsonObject situationCommand(const QString& name)
{
    for (const Situation& situation : situations()) {
        if (situation.name != name)
            continue;
        QByteArray text = QJsonDocument(situation.command).toJson(QJsonDocument::Compact);
        text.replace("%NOW%", QByteArray::number(QDateTime::currentMSecsSinceEpoch()));
        return QJsonDocument::fromJson(text).object();
    }
    return {};
}

} // namespace sim
