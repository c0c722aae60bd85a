#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace params {

/// One order of the orchestrator in the answer to a heartbeat.
struct AliveReplyParams
{
    QString m_reason_zh;
    QString m_reason_en;
    int m_action = 0; ///< 1 disconnect, 4 reconnect; others mean nothing to this client
};

} // namespace params

/// The answer to a heartbeat, read once; what is missing or of another type takes its default.
struct HeartbeatReply
{
    bool success = false;
    QList<params::AliveReplyParams> actions; ///< in the orchestrator's order
    QString mobileDetectFailed;              ///< why the intranet was not detected, Chinese
    QString mobileDetectFailedEn;            ///< the same in English
    bool subnetIpChange = false;             ///< the client's subnet has changed
    bool enableQuantum = false;
    bool enablePQC = false;

    static HeartbeatReply fromJson(const QByteArray& body);
};

/// What a heartbeat's answer orders: the first disconnect or reconnect of its list.
struct HeartbeatOrder
{
    enum class Kind { None, Disconnect, Reconnect };

    Kind kind = Kind::None;
    QString reason;          ///< in the wanted language; empty when the orchestrator gives none
    bool hasReasons = false; ///< the log will tell more than the prompt
};

/// A disconnect because of another subnet is carried out as a reconnect.
HeartbeatOrder heartbeatOrder(const HeartbeatReply& reply, bool chinese);
