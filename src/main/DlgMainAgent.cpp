// The datapath agent's notifications, received on the server that also guards the single
// instance.

#include "app/LogMarker.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "app/SingleApp.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "main/AgentText.h"
#include "main/DlgMain.h"
#include "monitor/MonitorDatapath.h"
#include "orch/MaskSecrets.h"
#include "orch/Util.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QTextStream>
#include <QTimer>

namespace {

// More than any notification has; a peer that sends without end is read piece by piece.
constexpr qint64 kReadBuffer = 65536;

// What has arrived, as one text: UTF-8, or what a byte order mark says.
QString readText(QLocalSocket& socket)
{
    QTextStream stream(socket.readAll());
    stream.setCodec("UTF-8");
    return stream.readAll();
}

} // namespace

void DlgMain::onSingleSocketConnect()
{
    QLocalServer* const server =
        SingleApp::instance() ? SingleApp::instance()->getLocalServer() : nullptr;
    if (!server)
        return;
    // A copy that was started while the login window was up has left its probe in the queue:
    // everything that waits is taken.
    while (QLocalSocket* const socket = server->nextPendingConnection()) {
        socket->setReadBufferSize(kReadBuffer);
        connect(socket, &QLocalSocket::readyRead, this, &DlgMain::onSingleSocketRead);
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (socket->bytesAvailable() > 0)
            handleAgentText(readText(*socket));
        if (socket->state() == QLocalSocket::UnconnectedState)
            socket->deleteLater();
    }
}

void DlgMain::onSingleSocketRead()
{
    auto* socket = qobject_cast<QLocalSocket*>(sender());
    if (!socket)
        return;
    handleAgentText(readText(*socket));
}

void DlgMain::handleAgentText(const QString& text)
{
    if (m_curStatus != DISCONNECTION && finishCancelConnect()) {
        logDisplayInfo(tr("Connection canceled during waiting agent"));
        disconnect(true, ipc::DisConnAbnormalReason);
    }

    const AgentText said = AgentText::read(text);
    const QString product = QLatin1String(product::kName);
    if (said.firewallEnabled)
        showWarning(tr("Firewall is enabled, %1 inbound traffic will not pass through the "
                       "firewall.")
                        .arg(product));
    else if (said.firewallDisabled)
        logDisplayInfo(tr("Firewall is closed"));
    if (said.ruleNotFound)
        logDisplayWarning(tr("The rule for %1 inbound traffic was removed and the rule has been "
                             "rewritten to restore it.")
                              .arg(product));

    if (m_curStatus != CONNECTING)
        return;
    if (!said.hello) {
        logDisplayInfo(tr("Received DP data"));
        qDebug().noquote() << maskSecrets(text.toUtf8());
    }
    switch (said.event) {
    case AgentText::Nothing:
    case AgentText::Firewall:
        return;
    case AgentText::PortUnusable:
        qWarning("Failed to parse JSON when get dispatch port");
        return;
    case AgentText::Port:
        qDebug() << "Dispatch port:" << said.port;
        dispatchPort = said.port;
        return;
    case AgentText::Ready:
        // One that this attempt has not started yet speaks of an earlier one.
        if (m_WaitAgentTimer->isActive())
            agentReady();
        return;
    case AgentText::Disconnect:
        logDisplayInfo(tr("Receive disconnect event"));
        return logout(true, true, false, true);
    }
}

void DlgMain::agentReady()
{
    if (!dispatchInit())
        return;
    m_NetworkFailure = false;
    m_StatusFailTime = 0;
    setConnStatus(CONNECTION);
    m_curStep = HEART_BEAT;
    if (!m_AssignIP.isEmpty())
        logDisplayInfo(tr("The assigned virtual IP is ") + Util::oneLine(m_AssignIP));
    m_ConnectSuccessStamp = platform().now().toMSecsSinceEpoch();
    m_StatCountTimer->start();
    monitor::MonitorDatapath::instance()->start();
    if (m_ClickCancelConnecting) {
        logDisplayInfo(tr("Connection canceled after receiving agent notification"));
        disconnect(true, ipc::DisConnNormalReason);
    }
}

bool DlgMain::dispatchInit()
{
    if (TQ_GetFlowStatisticsInit() == 0)
        return true;
    showError(tr("Failed to init dispatch tool"));
    disconnect(true, ipc::DisConnAbnormalReason);
    return false;
}
