#include "main/HeartbeatReply.h"

#include <QJsonArray>

HeartbeatReply HeartbeatReply::fromJson(const QJsonObject& json)
{
    const auto flag = [&json](const char* key) {
        return json.value(QLatin1String(key)).toBool(false);
    };
    HeartbeatReply reply;
    reply.success = flag("success");
    reply.m_subnetIpChange = flag("subnetIpChange");
    reply.enableQuantum = flag("enableQuantum");
    reply.enablePQC = flag("enablePQC");
    reply.m_mobileDetectFailed = json.value(QLatin1String("mobileDetectFailed")).toString();
    reply.m_mobileDetectFailedEn = json.value(QLatin1String("mobileDetectFailedEn")).toString();
    for (const QJsonValue element : json.value(QLatin1String("actionDataList")).toArray()) {
        const QJsonObject action = element.toObject();
        reply.m_actionsParams.append({action.value(QLatin1String("reason_zh")).toString(),
                                      action.value(QLatin1String("reason_en")).toString(),
                                      action.value(QLatin1String("action")).toInt(0)});
    }
    return reply;
}

HeartbeatReply::Order HeartbeatReply::order() const
{
    for (const params::AliveReplyParams& action : m_actionsParams) {
        if (action.m_action == params::kReconnect)
            return {Order::Reconnect, action};
        if (action.m_action == params::kDisconnect)
            return {m_subnetIpChange ? Order::Reconnect : Order::Disconnect, action};
    }
    return {};
}

bool HeartbeatReply::_isActionsResonEmpty(const params::AliveReplyParams& action) const
{
    if (!action.m_reason_en.isEmpty() && !action.m_reason_zh.isEmpty())
        return false;
    return m_mobileDetectFailed.isEmpty() || m_mobileDetectFailedEn.isEmpty();
}

QString HeartbeatReply::reason(const params::AliveReplyParams& action, bool chinese) const
{
    if (m_subnetIpChange)
        return chinese ? m_mobileDetectFailed : m_mobileDetectFailedEn;
    return chinese ? action.m_reason_zh : action.m_reason_en;
}
