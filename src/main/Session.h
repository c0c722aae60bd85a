#pragma once

#include "app/Attempt.h"
#include "main/ConnState.h"
#include "orch/OrchTypes.h"

#include <QObject>
#include <QPointer>
#include <QString>

class DatapathControl;
class FilterLists;
class Heartbeat;
class OrchReply;
class QNetworkAccessManager;
class QNetworkReply;
class QTimer;
class TrafficWatch;
struct AgentText;
struct ConnectReply;
struct OrchRequest;

/// The session's states and the way from one to the next. One attempt, step by step:
///
///     begin()              Session           CONNECTING
///     connect request      Session           session values kept, cpeagent.conf written
///     IP filter lists      FilterLists       filterConfig.conf written
///     datapath start       DatapathControl   up to 90 s for the agent
///     agent notifications  AgentChannel      port, then ready: CONNECTION
///     every 3 s            TrafficWatch      rates, tunnels; Heartbeat
///     stop, reconnect      Session           the orchestrator is told
///
/// The states are ConnState's; a cancelled attempt ends when its pending step answers. Nothing is
/// shown here: the window listens to the signals. GUI thread.
class Session : public QObject, public ConnState
{
    Q_OBJECT

public:
    /// `window` owns the session and carries its property "reconnect".
    explicit Session(QObject* window);

    CONN_STATUS status() const { return m_curStatus; }
    bool isConnected() const { return m_curStatus == CONNECTION; }
    /// The connection, or the attempt after its connect reply, is one in intranet mode.
    bool isIntranet() const;
    bool enableQuantum() const { return m_EnableQuantum; }
    bool enablePQC() const { return m_EnablePQC; }

    /// The polls' findings, for whoever shows them.
    const TrafficWatch* traffic() const { return m_traffic; }

    /// The datapath keeps what it learned about a customer and user; another one starts afresh.
    void checkAndClearDB();

    /// Starts an attempt; to be called while disconnected.
    void begin();

    /// The user has confirmed to stop: whatever the session has come to meanwhile ends.
    void stop();

    /// Ends the connection. With `notifyOrch`, and while connected, the orchestrator is told with
    /// `reason` and the state becomes DISCONNECTION when it has answered; otherwise at once.
    void disconnect(bool notifyOrch, ipc::DisconnectTypeReason reason);

    /// Ends the connection; reconnectDue() comes once the orchestrator has answered.
    void reConnect(ipc::DisconnectTypeReason reason);

    /// The only way to another state; see the transition table.
    void setConnStatus(CONN_STATUS s);

    /// No reconnect that is pending begins any more.
    void holdReconnect();

    /// Nothing connects any more, a running attempt included.
    void refuse();

    /// The session is over for good: it is refused, and no late answer acts.
    void close();

    /// What the datapath's agent has said.
    void handleAgentText(const QString& text, const AgentText& said);

signals:
    /// An attempt begins, in the state DISCONNECTION still.
    void beginning();
    /// A state was asked for; the state is the new one already.
    void changed(Transition change);
    void encryptionChanged();
    /// Connected in intranet mode, and no longer so.
    void intranetEntered();
    void intranetLeft();
    void error(const QString& text);
    void warning(const QString& text);
    /// 40 s without a change of state.
    void slow();
    /// The words of the orchestrator's order; `leave`: it was to disconnect.
    void orderTold(bool leave, const QString& text);
    /// An exchange has failed and is to be rendered.
    void failed(const OrchReply& reply);
    /// The connect request was answered with 502.
    void badGateway();
    /// The document says that the session is no longer valid; the attempt has ended.
    void invalidDocument(const OrchReply& document);
    /// A heartbeat's answer says so; the connection has ended.
    void invalidHeartbeat(const OrchReply& reply);
    /// The agent refuses the session.
    void refusedByAgent();
    void diagnosisWanted();
    /// The next attempt may begin.
    void reconnectDue();

private:
    void wireDatapath();
    void wireHeartbeat();
    void abandonAttempt();
    bool finishCancelConnect();
    void fail(const QString& text);

    // Connect request
    void validateAndConnect(ipc::DisconnectTypeReason reason);
    void onConnectReply(const OrchReply& reply);
    void keepValues(const ConnectReply& reply);
    bool saveConfig(const ConnectReply& reply);
    void onConnectFailed(const OrchReply& reply);

    // Exchanges of the window's own network manager
    void sendForStep(CONN_STEP step, const OrchRequest& request);
    void netReply(const OrchReply& reply);
    void disconnectNoticeAnswered(const OrchReply& reply);

    // From the filter lists to the connection
    void filterAnswered(const OrchReply& reply);
    void filterInPlace();
    void actOnAgent(const QString& text, const AgentText& said);
    void agentReady();
    void setupMobileConnected();
    void setupMobileDisConnected();

    void takeEncryptionFlags(bool quantum, bool pqc);
    void reconnectAsNormal();
    void onCheckIp();

    CONN_STATUS m_curStatus = DISCONNECTION;
    CONN_STEP m_curStep = CONNECT_ORCH;
    Attempt m_attempt;
    Attempt m_step;
    QNetworkAccessManager* m_NetMgr;      ///< disconnect notice and filter download only
    QPointer<QNetworkReply> m_stepReply;  ///< what m_curStep waits for
    bool m_ClickCancelConnecting = false; ///< the running attempt is to be abandoned
    bool m_FirstAutoConnect = true;       ///< until the first attempt starts
    bool m_isReconnect = false;
    ipc::DisconnectTypeReason m_connect2OrchReason = ipc::DisConnNormalReason;
    QString m_curClientIp; ///< the client's own address at the last attempt
    QString m_AssignIP;
    bool m_mobileDetect = false; ///< intranet mode, from the connect reply to the disconnect
    bool m_EnableQuantum = false;
    bool m_EnablePQC = false;
    QTimer* m_ConnectSlowWarningTimer;
    QTimer* m_CheckIpTimer;
    FilterLists* m_filter;
    DatapathControl* m_datapath;
    TrafficWatch* m_traffic;
    Heartbeat* m_heartbeat;
};
