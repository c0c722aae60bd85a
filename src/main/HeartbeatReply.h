#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

namespace params {

constexpr int kDisconnect = 1;
constexpr int kReconnect = 4;

/// One order of the orchestrator in the answer to a heartbeat.
struct AliveReplyParams
{
    QString m_reason_zh;
    QString m_reason_en;
    int m_action = 0; ///< kDisconnect, kReconnect; others mean nothing to this client
};

} // namespace params

/// The answer to a heartbeat, read once; what is missing or of another type takes its default.
struct HeartbeatReply
{
    bool success = false;
    QList<params::AliveReplyParams> m_actionsParams; ///< in the orchestrator's order
    QString m_mobileDetectFailed;                    ///< why no intranet was found, Chinese
    QString m_mobileDetectFailedEn;                  ///< the same in English
    bool m_subnetIpChange = false;                   ///< the client's subnet has changed
    bool enableQuantum = false;
    bool enablePQC = false;

    static HeartbeatReply fromJson(const QJsonObject& json);

    /// What the answer orders: the first disconnect or reconnect of its list. A disconnect because
    /// of another subnet is carried out as a reconnect.
    struct Order
    {
        enum Kind { None, Disconnect, Reconnect };

        Kind kind = None;
        params::AliveReplyParams action;
    };
    Order order() const;

    /// The log will not tell more about the order than the prompt does.
    bool _isActionsResonEmpty(const params::AliveReplyParams& action) const;

    /// The order's reason in the wanted language; empty when the orchestrator gives none.
    QString reason(const params::AliveReplyParams& action, bool chinese) const;
};
