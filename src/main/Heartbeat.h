#pragma once

#include "app/Attempt.h"
#include "main/HeartbeatReply.h"

#include <QObject>
#include <QString>

class OrchReply;
class QTimer;

/// The session's signs of life to the orchestrator, and what their answers order. Until an answer
/// comes, in at most 40 s of silence, anything may happen: further heartbeats, the end of the
/// connection or of the window. GUI thread.
class Heartbeat : public QObject
{
    Q_OBJECT

public:
    explicit Heartbeat(QObject* parent);

    /// Where heartbeats go, and how many seconds apart.
    void setAddress(const QString& url, int interval);

    /// A connection begins or ends: answers to heartbeats of an earlier one give no orders.
    void start();
    void stop();

    /// The session is over for good: no answer counts any more.
    void close();

    /// Sends one when the interval since the last has passed, whichever connection it was of.
    void heartBeat(bool intranet);

signals:
    void disconnectOrdered();
    void reconnectOrdered();
    /// A moment after an order, the words for the prompt; `leave`: it was to disconnect.
    void orderTold(bool leave, const QString& text);
    /// The orchestrator asks for a diagnosis bundle.
    void diagnosisWanted();
    void encryptionFlags(bool quantum, bool pqc);
    /// The reply says that the session is no longer valid.
    void sessionInvalid(const OrchReply& reply);
    /// In intranet mode: no heartbeat has been answered for 30 s.
    void lost();

private:
    void answered(const OrchReply& reply, bool current, bool intranet);
    void succeeded(const OrchReply& reply, bool intranet);
    void failed(const OrchReply& reply, bool current, bool intranet);
    void _parseActionsJson(const OrchReply& reply);
    void _handleHeartBeatActions();
    void tellOrder(const params::AliveReplyParams& action, bool leave);
    void _logOrchReason(const params::AliveReplyParams& action);
    void onHeartBeatSendFailed();
    void endLoss();

    QString m_HeartbeatUrl;
    int m_HeartbeatInterval = 10; ///< seconds
    qint64 m_LastHtTimeStamp = 0; ///< of the last heartbeat, seconds since the epoch
    HeartbeatReply m_reply;       ///< of the last that succeeded
    bool m_HeartBeatSendFailed = false;
    QTimer* m_HeartBeatSendFailedTimer;
    Attempt m_session;
    Attempt m_connection;
};
