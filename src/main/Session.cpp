#include "main/Session.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/NamedTimer.h"
#include "main/DatapathControl.h"
#include "main/FilterLists.h"
#include "main/Heartbeat.h"
#include "main/TrafficWatch.h"
#include "orch/ErrorCatalogue.h"
#include "orch/Gateway.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchReply.h"
#include "orch/OrchRequest.h"
#include "orch/OrchRequests.h"

#include <QNetworkAccessManager>
#include <QVariant>

namespace {

constexpr int kTransferTimeoutMs = 40000;
constexpr int kSlowMs = 40000;
constexpr int kCheckIpMs = 5000;

/// The window's property that is true while a reconnect waits for the disconnect notice's answer.
constexpr char kReconnect[] = "reconnect";

} // namespace

Session::Session(QObject* window)
    : QObject(window), m_NetMgr(makeAccessManager(this)),
      m_ConnectSlowWarningTimer(makeTimer(this, "m_ConnectSlowWarningTimer", kSlowMs,
                                          [this] {
                                              m_ConnectSlowWarningTimer->stop();
                                              emit slow();
                                          })),
      m_CheckIpTimer(makeTimer(this, "m_CheckIpTimer", kCheckIpMs, &Session::onCheckIp)),
      m_filter(new FilterLists(this)), m_datapath(new DatapathControl(this)),
      m_traffic(new TrafficWatch(this)), m_heartbeat(new Heartbeat(this))
{
    m_NetMgr->setTransferTimeout(kTransferTimeoutMs);
    wireDatapath();
    wireHeartbeat();
}

void Session::wireDatapath()
{
    connect(m_filter, &FilterLists::downloadWanted, this,
            [this](const OrchRequest& request) { sendForStep(GET_FILTER, request); });
    connect(m_filter, &FilterLists::inPlace, this, &Session::filterInPlace);
    connect(m_filter, &FilterLists::notSaved, this,
            [this] { fail(errorText(ErrorText::DatapathConfigNotSaved)); });
    connect(m_datapath, &DatapathControl::error, this, &Session::error);
    connect(m_datapath, &DatapathControl::restartWanted, this, &Session::reconnectAsNormal);
    connect(m_datapath, &DatapathControl::agentSilent, this,
            [this] { setConnStatus(DISCONNECTION); });
    connect(m_traffic, &TrafficWatch::tunnelsRestored, this,
            [] { logDisplayInfo(tr("NOTICE Network restored")); });
    connect(m_traffic, &TrafficWatch::tunnelsLost, this,
            [this] { emit warning(errorText(ErrorText::AllTunnelsDown)); });
    connect(m_traffic, &TrafficWatch::serviceLost, this, [this](int result) {
        logDisplayCritical(tr("Check the DP status and find an exception") +
                           QStringLiteral("(%1)").arg(result));
        disconnect(true, ipc::DisConnAbnormalReason);
    });
}

void Session::wireHeartbeat()
{
    connect(m_traffic, &TrafficWatch::tick, this,
            [this] { m_heartbeat->heartBeat(m_mobileDetect); });
    connect(m_heartbeat, &Heartbeat::disconnectOrdered, this,
            [this] { disconnect(true, ipc::DisConnOrchNotifyReason); });
    connect(m_heartbeat, &Heartbeat::reconnectOrdered, this, [this] {
        m_connect2OrchReason = ipc::DisConnOrchNotifyReason;
        reConnect(ipc::DisConnOrchNotifyReason);
    });
    connect(m_heartbeat, &Heartbeat::orderTold, this, &Session::orderTold);
    connect(m_heartbeat, &Heartbeat::diagnosisWanted, this, &Session::diagnosisWanted);
    connect(m_heartbeat, &Heartbeat::encryptionFlags, this, &Session::takeEncryptionFlags);
    connect(m_heartbeat, &Heartbeat::sessionInvalid, this, [this](const OrchReply& reply) {
        disconnect(false, ipc::DisConnNormalReason);
        emit invalidHeartbeat(reply);
    });
    connect(m_heartbeat, &Heartbeat::lost, this, [this] {
        setConnStatus(CONNECTING);
        reconnectAsNormal();
    });
}

// States

bool Session::isIntranet() const
{
    return m_mobileDetect && m_curStatus != DISCONNECTION;
}

void Session::setConnStatus(CONN_STATUS s)
{
    m_ConnectSlowWarningTimer->stop();
    const Transition change = transition(m_curStatus, s);
    if (change == Transition::Ended)
        m_CheckIpTimer->stop();
    if (change != Transition::Ignored) {
        if (s == CONNECTION || s == DISCONNECTION)
            m_datapath->endWait();
        m_curStatus = s;
    }
    emit changed(change);
    if (change == Transition::Connected)
        logDisplayInfo(tr("NOTICE Connected"));
}

void Session::begin()
{
    m_attempt.begin();
    m_step.begin();
    m_stepReply.clear();
    m_ClickCancelConnecting = false;
    m_mobileDetect = false; // until this attempt's connect reply says so
    holdReconnect();
    logDisplayInfo(m_FirstAutoConnect || m_isReconnect ? tr("Reconnecting")
                                                       : tr("Manual connect triggered"));
    m_isReconnect = false;
    m_FirstAutoConnect = false;
    emit beginning();
    setConnStatus(CONNECTING);
    m_ConnectSlowWarningTimer->start();
    validateAndConnect(m_connect2OrchReason);
}

void Session::stop()
{
    holdReconnect();
    m_isReconnect = false;
    if (m_curStatus == CONNECTION)
        disconnect(true, ipc::DisConnNormalReason);
    else if (m_curStatus == CONNECTING)
        abandonAttempt();
}

// At once during the filter download and the wait for the agent, otherwise when the connect request
// is answered.
void Session::abandonAttempt()
{
    m_ClickCancelConnecting = true;
    setConnStatus(DISCONNECTING);
    if (m_stepReply)
        return m_stepReply->abort();
    if (!m_datapath->isWaitingForAgent())
        return;
    finishCancelConnect();
    logDisplayInfo(tr("Connection canceled during waiting agent"));
    disconnect(true, ipc::DisConnNormalReason);
}

bool Session::finishCancelConnect()
{
    if (!m_ClickCancelConnecting)
        return false;
    setConnStatus(DISCONNECTION);
    return true;
}

void Session::fail(const QString& text)
{
    setConnStatus(DISCONNECTION);
    emit error(text);
}

// Disconnecting

void Session::disconnect(bool notifyOrch, ipc::DisconnectTypeReason reason)
{
    m_traffic->stop();
    m_heartbeat->stop();
    m_datapath->unwatch();
    if (m_mobileDetect)
        setupMobileDisConnected();
    else
        m_datapath->stopDP();
    if (notifyOrch && m_curStatus == CONNECTION) {
        setConnStatus(DISCONNECTING);
        const QString authUrl = ConfigUtil::savedText(ConfigUtil::AUTHURL);
        return sendForStep(DISCONNECT_NOTIFY_ORCH,
                           orchrequest::disconnectNotice(authUrl, storedIdentity(), reason));
    }
    setConnStatus(DISCONNECTION);
    logDisplayInfo(tr("Disconnected"));
}

void Session::reConnect(ipc::DisconnectTypeReason reason)
{
    disconnect(true, reason);
    m_isReconnect = true;
    parent()->setProperty(kReconnect, true);
}

void Session::reconnectAsNormal()
{
    m_connect2OrchReason = ipc::DisConnNormalReason;
    reConnect(ipc::DisConnAbnormalReason);
}

void Session::holdReconnect()
{
    parent()->setProperty(kReconnect, false);
}

void Session::refuse()
{
    holdReconnect();
    m_ClickCancelConnecting = true;
}

void Session::close()
{
    refuse();
    m_heartbeat->close();
}

void Session::sendForStep(CONN_STEP step, const OrchRequest& request)
{
    m_curStep = step;
    m_step.begin();
    m_stepReply = sendOrchRequest(*m_NetMgr, request,
                                  m_step.step([this](const OrchReply& reply) { netReply(reply); }));
}

void Session::netReply(const OrchReply& reply)
{
    m_stepReply.clear();
    if (m_curStep == DISCONNECT_NOTIFY_ORCH)
        disconnectNoticeAnswered(reply);
    else if (m_curStep == GET_FILTER)
        filterAnswered(reply);
}

// Whatever the orchestrator answered, the session is over here.
void Session::disconnectNoticeAnswered(const OrchReply& reply)
{
    const QPointer<Session> alive(this); // a dialog may outlive the window
    setConnStatus(DISCONNECTION);
    logDisplayInfo(tr("Disconnected"));
    if (reply.logfileWanted)
        emit diagnosisWanted();
    if (reply.code() == orchcode::kTokenInvalid)
        emit invalidDocument(reply);
    if (alive && parent()->property(kReconnect).toBool()) {
        holdReconnect();
        emit reconnectDue();
    }
}

// In a running connection

void Session::takeEncryptionFlags(bool quantum, bool pqc)
{
    if (quantum == m_EnableQuantum && pqc == m_EnablePQC)
        return;
    const auto word = [](bool on) { return QLatin1String(on ? "true" : "false"); };
    logDisplayDebug(QStringLiteral("Quantum configuation changed, enableQuantum ") + word(quantum) +
                    QStringLiteral(" enablePQC ") + word(pqc));
    m_EnableQuantum = quantum;
    m_EnablePQC = pqc;
    emit encryptionChanged();
}

void Session::onCheckIp()
{
    const QString address = Util::getNICIp();
    const bool known = !address.isEmpty() && !m_curClientIp.isEmpty();
    if (isConnected() && known && address != m_curClientIp)
        reconnectAsNormal();
}
