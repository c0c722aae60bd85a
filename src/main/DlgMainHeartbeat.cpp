// The session's signs of life to the orchestrator.

#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/HeartbeatReply.h"
#include "main/SessionRules.h"
#include "orch/HttpErrorText.h"
#include "orch/JsonUtil.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequests.h"
#include "orch/ReplyFacts.h"
#include "orch/Util.h"
#include "widgets/WidgetSetting.h"
#include "widgets/WidgetTopPrompt.h"

#include <QLocale>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

namespace {

constexpr int kOrderPromptMs = 500;

} // namespace

// Until the answer comes, in at most 40 s, anything may happen: further polls and heartbeats, the
// end of the connection or of the window.
void DlgMain::heartBeat()
{
    const qint64 now = platform().now().toSecsSinceEpoch();
    if (!session::heartbeatDue(now, m_LastHtTimeStamp, m_HeartbeatInterval))
        return;
    m_LastHtTimeStamp = now;

    auto* manager = new QNetworkAccessManager(this); // for this one request
    manager->setObjectName(QStringLiteral("heartbeat"));
    const int attempt = m_attempt;
    connect(manager, &QNetworkAccessManager::finished, this,
            [this, manager, attempt](QNetworkReply* reply) {
                manager->deleteLater();
                heartBeatAnswered(reply, attempt);
            });
    sendOrchRequest(*manager,
                    orchrequest::heartbeat(m_HeartbeatUrl, storedIdentity(), m_mobileDetect));
}

void DlgMain::heartBeatAnswered(QNetworkReply* reply, int attempt)
{
    if (m_sessionOver)
        return;
    const QByteArray body = replyBody(reply);
    const bool answered = httpStatus(reply) == 200 && reply->error() == QNetworkReply::NoError;
    const bool current = isConnected() && attempt == m_attempt; // not of a connection that is over
    if (!answered)
        heartBeatFailed(HttpFailure::of(body, reply), current);
    else if (current)
        heartBeatSucceeded(body, !reply->rawHeader("orch-logfile").isEmpty());
}

void DlgMain::heartBeatSucceeded(const QByteArray& body, bool diagnosisWanted)
{
    const HeartbeatReply reply = HeartbeatReply::fromJson(body);
    if (reply.success && m_HeartBeatSendFailed && m_mobileDetect) {
        m_HeartBeatSendFailedTimer->stop();
        m_HeartBeatSendFailed = false;
    }
    _handleHeartBeatActions(heartbeatOrder(reply, QLocale().language() == QLocale::Chinese));
    if (diagnosisWanted)
        startDiagnosis(TriggerByOrch);
    takeEncryptionFlags(reply.enableQuantum, reply.enablePQC);
}

void DlgMain::takeEncryptionFlags(bool quantum, bool pqc)
{
    if (quantum == m_EnableQuantum && pqc == m_EnablePQC)
        return;
    const auto word = [](bool on) { return QLatin1String(on ? "true" : "false"); };
    logDisplayDebug(QStringLiteral("Quantum configuation changed, enableQuantum ") + word(quantum) +
                    QStringLiteral(" enablePQC ") + word(pqc));
    m_EnableQuantum = quantum;
    m_EnablePQC = pqc;
    updateQuantumUI();
}

void DlgMain::_handleHeartBeatActions(const HeartbeatOrder& order)
{
    const bool reasons = order.hasReasons;
    switch (order.kind) {
    case HeartbeatOrder::Kind::None:
        return;
    case HeartbeatOrder::Kind::Disconnect:
        disconnect(true, ipc::DisConnOrchNotifyReason);
        return tellOrder(
            order, reasons ? tr("The client has received the message from the server for "
                                "disconnecting to the network.Please refer to the logs for more "
                                "information.")
                           : tr("The client has received the message from the server for "
                                "disconnecting to the network."));
    case HeartbeatOrder::Kind::Reconnect:
        m_connect2OrchReason = ipc::DisConnOrchNotifyReason;
        reConnect(ipc::DisConnOrchNotifyReason);
        return tellOrder(
            order, reasons ? tr("The client has received the message from the server for "
                                "connecting to the network again. Please refer to the logs for "
                                "more information.")
                           : tr("The client has received the message from the server for "
                                "connecting to the network again."));
    }
}

// A moment later: what carrying out the order shows would otherwise replace the words.
void DlgMain::tellOrder(const HeartbeatOrder& order, const QString& text)
{
    QTimer::singleShot(kOrderPromptMs, this, [this, order, text] {
        const bool leave = order.kind == HeartbeatOrder::Kind::Disconnect;
        promptWidge->hidePrompt();
        promptWidge->showPrompt(leave ? WidgetTopPrompt::SHOW_ERROR : WidgetTopPrompt::SHOW_WARNING,
                                text, false);
        _logOrchReason(order);
        if (!leave)
            m_showPromptTemp = true;
    });
}

void DlgMain::_logOrchReason(const HeartbeatOrder& order)
{
    QString reason = Util::oneLine(order.reason);
    if (reason.isEmpty()) {
        reason = order.kind == HeartbeatOrder::Kind::Disconnect
                     ? tr("Disconnecting due to receiving ORCH notification.")
                     : tr("Reconnecting due to receiving ORCH notification.");
    }
    logDisplayCritical(reason);
}

void DlgMain::heartBeatFailed(const HttpFailure& failure, bool current)
{
    if (current && m_mobileDetect && !m_HeartBeatSendFailed) {
        m_HeartBeatSendFailed = true;
        m_HeartBeatSendFailedTimer->start();
    }
    logDisplayDebug(QStringLiteral("Heart beat exception: ") + failure.logText());
    if (JsonUtil::getInt(failure.body, QStringLiteral("code"), 0) != orchcode::kTokenInvalid)
        return;
    disconnect(false, ipc::DisConnNormalReason);
    closeAllPopupDlg();
    endSession(invalidSessionEnd(failure.body, ui->m_SettingWidge->isDisable401()));
}

void DlgMain::onHeartBeatSendFailed()
{
    m_HeartBeatSendFailedTimer->stop();
    m_HeartBeatSendFailed = false;
    if (!isConnected())
        return;
    setConnStatus(CONNECTING);
    m_connect2OrchReason = ipc::DisConnNormalReason;
    reConnect(ipc::DisConnAbnormalReason);
}
