#include "main/Heartbeat.h"

#include "app/LogMarker.h"
#include "app/NamedTimer.h"
#include "app/Platform.h"
#include "main/SessionRules.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchReply.h"
#include "orch/OrchRequest.h"
#include "orch/OrchRequests.h"

#include <QNetworkAccessManager>

namespace {

constexpr int kLossMs = 30000;
constexpr int kOrderPromptMs = 500;

} // namespace

Heartbeat::Heartbeat(QObject* parent)
    : QObject(parent),
      m_HeartBeatSendFailedTimer(
          makeTimer(this, "m_HeartBeatSendFailedTimer", kLossMs, &Heartbeat::onHeartBeatSendFailed))
{
}

void Heartbeat::setAddress(const QString& url, int interval)
{
    m_HeartbeatUrl = url;
    m_HeartbeatInterval = interval;
}

void Heartbeat::start()
{
    stop(); // what is left of the last connection does not concern this one
}

void Heartbeat::stop()
{
    endLoss();
    m_connection.begin();
}

void Heartbeat::close()
{
    stop();
    m_session.begin();
}

void Heartbeat::heartBeat(bool intranet)
{
    const qint64 now = platform().now().toSecsSinceEpoch();
    if (!session::heartbeatDue(now, m_LastHtTimeStamp, m_HeartbeatInterval))
        return;
    m_LastHtTimeStamp = now;

    auto* manager = makeAccessManager(this); // for this one request
    manager->setObjectName(QStringLiteral("heartbeat"));
    const auto done = [this, intranet, connection = m_connection.run()](const OrchReply& reply) {
        answered(reply, connection.isCurrent(), intranet);
    };
    connect(manager, &QNetworkAccessManager::finished, manager, &QObject::deleteLater);
    sendOrchRequest(*manager, orchrequest::heartbeat(m_HeartbeatUrl, storedIdentity(), intranet),
                    m_session.step(done));
}

void Heartbeat::answered(const OrchReply& reply, bool current, bool intranet)
{
    if (!reply.answered())
        failed(reply, current, intranet);
    else if (current)
        succeeded(reply, intranet);
    else if (reply.logfileWanted)
        emit diagnosisWanted();
}

void Heartbeat::succeeded(const OrchReply& reply, bool intranet)
{
    _parseActionsJson(reply);
    if (m_reply.success && intranet)
        endLoss();
    _handleHeartBeatActions();
    if (reply.logfileWanted)
        emit diagnosisWanted();
    emit encryptionFlags(m_reply.enableQuantum, m_reply.enablePQC);
}

void Heartbeat::failed(const OrchReply& reply, bool current, bool intranet)
{
    if (current && intranet && !m_HeartBeatSendFailed) {
        m_HeartBeatSendFailed = true;
        m_HeartBeatSendFailedTimer->start();
    }
    logDisplayDebug(QStringLiteral("Heart beat exception: ") + reply.logText());
    if (reply.code() == orchcode::kTokenInvalid)
        emit sessionInvalid(reply);
}

void Heartbeat::_parseActionsJson(const OrchReply& reply)
{
    m_reply = HeartbeatReply::fromJson(reply.json());
}

void Heartbeat::_handleHeartBeatActions()
{
    const HeartbeatReply::Order order = m_reply.order();
    switch (order.kind) {
    case HeartbeatReply::Order::None:
        return;
    case HeartbeatReply::Order::Disconnect:
        emit disconnectOrdered();
        return tellOrder(order.action, true);
    case HeartbeatReply::Order::Reconnect:
        emit reconnectOrdered();
        return tellOrder(order.action, false);
    }
}

// A moment later: what carrying out the order shows would otherwise replace the words.
void Heartbeat::tellOrder(const params::AliveReplyParams& action, bool leave)
{
    const bool brief = m_reply._isActionsResonEmpty(action);
    QString text;
    if (leave) {
        text = brief ? tr("The client has received the message from the server for disconnecting "
                          "to the network.")
                     : tr("The client has received the message from the server for disconnecting "
                          "to the network.Please refer to the logs for more information.");
    } else {
        text = brief ? tr("The client has received the message from the server for connecting to "
                          "the network again.")
                     : tr("The client has received the message from the server for connecting to "
                          "the network again. Please refer to the logs for more information.");
    }
    QTimer::singleShot(kOrderPromptMs, this, [this, action, leave, text] {
        emit orderTold(leave, text);
        _logOrchReason(action);
    });
}

void Heartbeat::_logOrchReason(const params::AliveReplyParams& action)
{
    QString reason = m_reply.reason(action, platform().isChinese());
    if (reason.isEmpty()) {
        reason = action.m_action == params::kDisconnect
                     ? tr("Disconnecting due to receiving ORCH notification.")
                     : tr("Reconnecting due to receiving ORCH notification.");
    }
    logDisplayCritical(reason);
}

void Heartbeat::onHeartBeatSendFailed()
{
    endLoss();
    emit lost();
}

void Heartbeat::endLoss()
{
    m_HeartBeatSendFailedTimer->stop();
    m_HeartBeatSendFailed = false;
}
