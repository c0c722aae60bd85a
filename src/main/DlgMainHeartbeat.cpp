// The session's signs of life to the orchestrator.

#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DlgMain.h"
#include "main/SessionRules.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequests.h"
#include "orch/ReplyFacts.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QTimer>

// Waits for the answer, at most 40 s, in an event loop of its own: anything may happen meanwhile,
// a further poll, the end of the session, the end of the window.
void DlgMain::heartBeat()
{
    const qint64 now = platform().now().toSecsSinceEpoch();
    if (!session::heartbeatDue(now, m_LastHtTimeStamp, m_HeartbeatInterval))
        return;
    m_LastHtTimeStamp = now;

    const QPointer<DlgMain> alive(this);
    const QPointer<QNetworkAccessManager> manager(new QNetworkAccessManager(this));
    QEventLoop wait;
    connect(manager, &QNetworkAccessManager::finished, &wait, &QEventLoop::quit);
    connect(manager, &QObject::destroyed, &wait, &QEventLoop::quit);
    const QPointer<QNetworkReply> reply = sendOrchRequest(
        *manager, orchrequest::heartbeat(m_HeartbeatUrl, storedIdentity(), m_mobileDetect));
    wait.exec();
    if (manager)
        manager->deleteLater();
    if (!alive || !reply)
        return;
    const QByteArray body = replyBody(reply);
    if (httpStatus(reply) == 200 && reply->error() == QNetworkReply::NoError)
        heartBeatSucceeded(body);
    else
        heartBeatFailed(body, reply);
}

void DlgMain::heartBeatSucceeded(const QByteArray& body)
{
    const QJsonObject json = JsonUtil::object(body);
    if (JsonUtil::getBool(json, QStringLiteral("success"), false) && m_HeartBeatSendFailed &&
        m_mobileDetect) {
        m_HeartBeatSendFailedTimer->stop();
        m_HeartBeatSendFailed = false;
    }
    const bool quantum = JsonUtil::getBool(json, QStringLiteral("enableQuantum"), false);
    const bool pqc = JsonUtil::getBool(json, QStringLiteral("enablePQC"), false);
    if (quantum == m_EnableQuantum && pqc == m_EnablePQC)
        return;
    const auto word = [](bool on) { return QLatin1String(on ? "true" : "false"); };
    logDisplayDebug(QStringLiteral("Quantum configuation changed, enableQuantum ") + word(quantum) +
                    QStringLiteral(" enablePQC ") + word(pqc));
    m_EnableQuantum = quantum;
    m_EnablePQC = pqc;
    updateQuantumUI();
}

void DlgMain::heartBeatFailed(const QByteArray& body, QNetworkReply* reply)
{
    if (m_mobileDetect && !m_HeartBeatSendFailed) {
        m_HeartBeatSendFailed = true;
        m_HeartBeatSendFailedTimer->start();
    }
    logDisplayDebug(QStringLiteral("Heart beat exception: ") + reply->errorString() +
                    QStringLiteral(" statuscode ") + QString::number(httpStatus(reply)) +
                    QStringLiteral(" orch return text ") + maskSecrets(body));
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
