#include "main/HeartbeatReply.h"

#include "orch/JsonUtil.h"

#include <QJsonArray>

namespace {

constexpr int kDisconnect = 1;
constexpr int kReconnect = 4;

bool hasReasons(const params::AliveReplyParams& action, const HeartbeatReply& reply)
{
    if (!action.m_reason_en.isEmpty() && !action.m_reason_zh.isEmpty())
        return true;
    return !reply.mobileDetectFailed.isEmpty() && !reply.mobileDetectFailedEn.isEmpty();
}

QString reasonOf(const params::AliveReplyParams& action, const HeartbeatReply& reply, bool chinese)
{
    if (reply.subnetIpChange)
        return chinese ? reply.mobileDetectFailed : reply.mobileDetectFailedEn;
    return chinese ? action.m_reason_zh : action.m_reason_en;
}

} // namespace

HeartbeatReply HeartbeatReply::fromJson(const QByteArray& body)
{
    const QJsonObject json = JsonUtil::object(body);
    const auto flag = [&json](const char* key) {
        return json.value(QLatin1String(key)).toBool(false);
    };
    HeartbeatReply reply;
    reply.success = flag("success");
    reply.subnetIpChange = flag("subnetIpChange");
    reply.enableQuantum = flag("enableQuantum");
    reply.enablePQC = flag("enablePQC");
    reply.mobileDetectFailed = json.value(QLatin1String("mobileDetectFailed")).toString();
    reply.mobileDetectFailedEn = json.value(QLatin1String("mobileDetectFailedEn")).toString();
    for (const QJsonValue element : json.value(QLatin1String("actionDataList")).toArray()) {
        const QJsonObject action = element.toObject();
        reply.actions.append({action.value(QLatin1String("reason_zh")).toString(),
                              action.value(QLatin1String("reason_en")).toString(),
                              action.value(QLatin1String("action")).toInt(0)});
    }
    return reply;
}

HeartbeatOrder heartbeatOrder(const HeartbeatReply& reply, bool chinese)
{
    for (const params::AliveReplyParams& action : reply.actions) {
        if (action.m_action != kDisconnect && action.m_action != kReconnect)
            continue;
        const bool leave = action.m_action == kDisconnect && !reply.subnetIpChange;
        return {leave ? HeartbeatOrder::Kind::Disconnect : HeartbeatOrder::Kind::Reconnect,
                reasonOf(action, reply, chinese), hasReasons(action, reply)};
    }
    return {};
}
