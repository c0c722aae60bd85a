#include "sim/Situations.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>

namespace sim {

namespace {

constexpr char kAuth[] = "/api/mobile/v2/auth";
constexpr char kBundle[] = "/files/bundle";
constexpr char kBundleAddress[] = "/api/mobile/v2/log/url";
constexpr char kBundleReport[] = "/api/mobile/v2/log/result";
constexpr char kChange[] = "/api/mobile/v2/resetpassword";
constexpr char kConnect[] = "/api/mobile/v2/connect";
constexpr char kFilter[] = "/files/ip-filter.json";
constexpr char kHeartbeat[] = "/api/mobile/v2/heartbeat";
constexpr char kLogo[] = "/files/logos/logo.png";
constexpr char kLogoList[] = "/api/mobile/v2/getCustomerLogoUrl";
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
QJsonObject answer(const char* path, const QJsonObject& document, int code = 0)
{
    const QByteArray body = QJsonDocument(document).toJson(QJsonDocument::Compact);
    QJsonObject fault = status(path, code);
    fault.insert("body", QString::fromUtf8(body));
    return {{"fault", fault}};
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
    QJsonObject members = order(1, "", "").value("order").toObject();
    members.insert("subnetIpChange", true);
    members.insert("mobileDetectFailed", "客户端网段已改变。");
    members.insert("mobileDetectFailedEn", "The client's subnet has changed.");
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
        document.insert("parameters", parameters);
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
                     {"releaseNote", "连接更快，诊断更准。"},
                     {"releaseNoteEn", "Faster connections and clearer diagnoses."}});
}

/// The orchestrator's gateway answers 502, with or without a maintenance behind it.
QJsonObject badGateway(bool running)
{
    QJsonObject command = running ? notice("run", -60, 60) : QJsonObject();
    command.insert("faults", QJsonArray{status(kAuth, 502), status(kConnect, 502)});
    return command;
}

/// The customer has logos of its own.
QJsonObject logos(const QJsonObject& round, const QJsonObject& main)
{
    return {{"scenario",
             QJsonObject{{"authConfigReply", QJsonObject{{"supportCusResource", true}}},
                         {"logos", QJsonObject{{"orvek-round.png", round}, {"logo.png", main}}}}}};
}

std::vector<Situation> customerLogos()
{
    const QString group = "Customer's logos";
    const QJsonObject square{{"width", 100}, {"height", 100}};
    return {
        {group, "Wide logo", logos(square, {{"width", 640}, {"height", 80}})},
        {group, "Tall logo",
         logos({{"width", 60}, {"height", 200}}, {{"width", 80}, {"height", 320}})},
        {group, "Logo without an address", logos(square, {})},
        {group, "Half a logo", logos(square, {{"width", 640}, {"height", 80}, {"cut", true}})},
        {group, "Logo of too many pixels", logos(square, {{"width", 5000}, {"height", 1}})},
        {group, "No list of logos", {{"fault", status(kLogoList, 404)}}},
        {group, "Logo not found", {{"fault", status(kLogo, 404)}}},
        {group, "Another logo than announced", answer(kLogo, {})},
    };
}

std::vector<Situation> diagnoses()
{
    const QString group = "Diagnosis";
    const auto gone = [](int reason) {
        return refusal(401, "token expired, or password changed", {{"invalidReasonCode", reason}});
    };
    return {
        {group, "Send a diagnosis bundle", {{"order", QJsonObject{{"logfile", "bundle-1"}}}}},
        {group, "No address for the bundle", {{"fault", status(kBundleAddress, 500)}}},
        {group, "Bundle's address: 502", {{"fault", status(kBundleAddress, 502)}}},
        {group, "Bundle's address: password changed", answer(kBundleAddress, gone(1), 401)},
        {group, "Bundle not taken", {{"fault", status(kBundle, 404)}}},
        {group, "Bundle's report not taken", {{"fault", status(kBundleReport, 500)}}},
        {group, "Bundle's report: logged out", answer(kBundleReport, gone(3), 401)},
    };
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
        made.push_back({"Login refused", QLatin1String(row.name),
                        answer(kAuth, refusal(row.code, row.message, row.parameters))});
    return made;
}

std::vector<Situation> serverOrders()
{
    const QString group = "Server orders";
    return {
        {group, "Disconnect, with a reason",
         order(1, "Your licence has expired.", "您的许可证已过期。")},
        {group, "Disconnect, no reason", order(1, "", "")},
        {group, "Reconnect, with a reason",
         order(4, "The gateway is being moved.", "网关正在迁移。")},
        {group, "Reconnect, no reason", order(4, "", "")},
        {group, "Reconnect, ten times in one answer", order(4, "", "", 10)},
        {group, "Disconnect on a new subnet", orderOnNewSubnet()},
    };
}

std::vector<Situation> datapaths()
{
    const QString group = "Datapath";
    return {
        {group, "Datapath dies", {{"crashDatapath", true}}},
        {group, "Tunnels lost", datapath("tunnels", "down")},
        {group, "Dispatch service silent", datapath("dispatch", "silent")},
        {group, "Agent silent", datapath("agent", "silent")},
        {group, "Agent refuses", datapath("agent", "disconnect")},
        {group, "Agent talks without end", datapath("agent", "flood")},
        {group,
         "Start script fails",
         {{"datapath", QJsonObject{{"script_exit", "1"}, {"script_stderr", "no tun device"}}}}},
        {group, "Stop script fails", datapath("stop_exit", "2")},
    };
}

std::vector<Situation> build()
{
    const QString maintenance = "Maintenance";
    const QString upgrade = "Client versions";
    const QString lookup = "Customer step";
    const QString codes = "Codes and passwords";
    const QString session = "Session";
    std::vector<Situation> all{
        {maintenance, "Maintenance announced", notice("wait", 60, 120)},
        {maintenance, "Maintenance running", notice("run", -60, 60)},
        {maintenance, "502 during a maintenance", badGateway(true)},
        {maintenance, "502 without a maintenance", badGateway(false)},
        {maintenance, "Notices unknown", {{"fault", status(kNotice, 404)}}},
        {upgrade, "Newer client", newer("6.0.0", false)},
        {upgrade, "Client must be upgraded", newer("6.2.0", false)},
        {upgrade, "Newer client to be ignored", newer("6.2.0", true)},
        {upgrade, "Upgrade check fails", {{"fault", status("/s/mobile/v1/upgrade", 500)}}},
        {lookup, "Primary lookup down", {{"stop", "primary"}}},
        {lookup, "Customer unknown", answer("/api/mobile/v1/orchinfo", refusal(1007, "unknown"))},
        {lookup, "No key", answer("/s/mobile/pubkey/obtain", {{"code", 0}, {"key", ""}})},
        {lookup,
         "Newer privacy agreement",
         {{"scenario", QJsonObject{{"privacyVersion", "20991231"}}}}},
        {codes, "Code still under way", answer(kStatus, {{"code", 427}})},
        {codes, "E-mail still under way", answer(kStatus, {{"code", 465}})},
        {codes, "Codes asked for too often", answer(kStatus, {{"code", 422}})},
        {codes, "Phone number blocked", answer(kStatus, {{"code", 423}})},
        {codes, "No way to reset a password", scenario("resetModeReply", {{"resetPwdMethod", 3}})},
        {codes, "A password rule that never ends",
         scenario("passwordRules",
                  {{"firstPwdRule", QJsonArray{QJsonObject{{"pwdRegularStr", "(a+)+b"},
                                                           {"clientName", "Only a and b."}}}}})},
        {codes, "New password refused",
         answer(kChange, {{"code", 406}, {"i18nKey", "Used before."}}, 406)},
        {session, "Heartbeat fails", {{"fault", status(kHeartbeat, 500)}}},
        {session, "Intranet mode", scenario("connectReply", {{"mobileDetect", true}})},
        {session,
         "Filter of a million entries",
         {{"filterSize", QJsonObject{{"inclusive", 400000}, {"exclusive", 600000}}}}},
        {session,
         "Filter of five entries",
         {{"filterSize", QJsonObject{{"inclusive", 2}, {"exclusive", 3}}}}},
        {session, "Quantum encryption", encryption("enableQuantum")},
        {session, "PQC encryption", encryption("enablePQC")},
        {session, "Log out, forced", {{"revoke", 3}}},
        {session, "Log out, forced, by the filter document",
         answer(kFilter, refusal(401, "invalid", {{"invalidReasonCode", 3}}))},
        {session, "Log out, account changed", {{"revoke", 5}}},
        {session, "Log out, password changed", {{"revoke", 1}}},
        {session, "Log out, no reason", {{"revoke", -1}}},
    };
    for (const std::vector<Situation>& more :
         {customerLogos(), serverOrders(), diagnoses(), datapaths(), refusals()})
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
