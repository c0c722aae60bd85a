// The way up: from the connect request to the agent's word that the tunnel can be used.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/OtherUser.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "app/ProgramFile.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "main/AgentText.h"
#include "main/ConnectReply.h"
#include "main/DatapathControl.h"
#include "main/DatapathFile.h"
#include "main/FilterLists.h"
#include "main/Heartbeat.h"
#include "main/Session.h"
#include "main/TrafficWatch.h"
#include "orch/ErrorCatalogue.h"
#include "orch/Gateway.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/OrchReply.h"

#include <QDir>
#include <QTimer>

void Session::checkAndClearDB()
{
    const QString oldCustomer = ConfigUtil::savedText(ConfigUtil::OLD_CUSTOMERID);
    const QString oldUser = ConfigUtil::savedText(ConfigUtil::OLD_USERNAME);
    const QString customer = ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    const QString user = ConfigUtil::savedText(ConfigUtil::USERNAME);
    if (oldCustomer == customer && oldUser == user)
        return;
    const QString database = QStringLiteral("PersistentConf.db");
    qDebug() << "<DISPLAY> Clear Datapath DB:" << qUtf8Printable(database)
             << " Old customer:" << oldCustomer << " old username:" << oldUser
             << " new customer:" << customer << " new useranme:" << user;

    const QString path = QDir(platform().programDir()).absoluteFilePath(database);
    if (!ProgramFile::remove(path)) {
        logDisplayDebug(QStringLiteral("Failed to clear Datapath DB:") + path);
        warnOfOtherOwner(path);
    }
    ConfigUtil::writeValue(ConfigUtil::OLD_CUSTOMERID, customer);
    ConfigUtil::writeValue(ConfigUtil::OLD_USERNAME, user);
}

void Session::validateAndConnect(ipc::DisconnectTypeReason reason)
{
    m_curClientIp = Util::getNICIp();
    ipc::Connect2OrchParams params;
    params.customerId = ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    params.reason = reason;
    ipc::OrchIpc::instance()->connect2Orch(
        params, m_attempt.step([this](const OrchReply& reply) { onConnectReply(reply); }),
        m_attempt.step([this](const OrchReply& reply) { onConnectFailed(reply); }));
}

void Session::onConnectReply(const OrchReply& reply)
{
    if (finishCancelConnect())
        return logDisplayInfo(tr("Connection canceled during connection orchestrator"));
    if (m_curStatus != CONNECTING)
        return;
    logDisplayInfo(tr("NOTICE Connect event requested successfully"));
    qDebug().noquote() << "Orch result received:" << maskSecrets(reply.body);

    const ConnectReply values = ConnectReply::fromJson(reply.json());
    keepValues(values);
    if (!saveConfig(values))
        return fail(errorText(ErrorText::ConfigNotSaved));
    m_filter->_getCommServIp();
    m_filter->_checkNeedDownloadIpFilter(values);
}

void Session::keepValues(const ConnectReply& reply)
{
    m_heartbeat->setAddress(reply.heartbeatUrl, reply.heartbeatInterval);
    m_datapath->setOrchDomain(reply.orchDomains);
    m_AssignIP = reply.lanAssignIp;
    m_mobileDetect = reply.mobileDetect;
    m_EnableQuantum = reply.enableQuantum;
    m_EnablePQC = reply.enablePQC;
    ConfigUtil::writeValue(ConfigUtil::CPE_ID, reply.cpeId);
    logDisplayInfo(platform().isChinese() ? reply.mobileDetectFailed : reply.mobileDetectFailedEn);
}

bool Session::saveConfig(const ConnectReply& reply)
{
    qDebug("orchId=%d, cpeId=%d, customer ID=%d, comm=%s", reply.orchId, reply.agentCpeId,
           reply.customerId, qUtf8Printable(reply.commuServerAddr));
    m_filter->setCommServHosts({});
    if (!reply.addressesFitLines()) {
        qWarning("A communication server's address holds a control character");
        return false;
    }
    if (!replaceDatapathFile(kAgentConfig, reply.cpeAgentConf()))
        return false;
    m_filter->setCommServHosts(reply.commServerHosts());
    logDisplayInfo(tr("Save data path configuration successfully"));
    return true;
}

void Session::onConnectFailed(const OrchReply& reply)
{
    if (finishCancelConnect())
        return logDisplayInfo(tr("Connection canceled during connection orchestrator"));
    setConnStatus(DISCONNECTION);
    if (reply.status == 502)
        emit badGateway();
    else
        emit failed(reply);
}

// Filter lists

void Session::filterAnswered(const OrchReply& reply)
{
    if (finishCancelConnect())
        return logDisplayInfo(tr("Connection canceled during getting filter"));
    if (m_curStatus != CONNECTING)
        return;
    if (!m_filter->take(reply)) {
        setConnStatus(DISCONNECTION);
        return emit failed(reply);
    }
    if (m_filter->isSessionInvalid()) {
        setConnStatus(DISCONNECTION);
        return emit invalidDocument(reply);
    }
    m_filter->store();
}

void Session::filterInPlace()
{
    if (m_mobileDetect)
        return setupMobileConnected();
    if (m_datapath->startDP() == 0)
        m_datapath->waitForAgent();
    else
        setConnStatus(DISCONNECTION);
}

// Intranet mode

void Session::setupMobileConnected()
{
    setConnStatus(CONNECTION);
    m_traffic->start(true);
    m_heartbeat->start();
    m_datapath->logConnectLine(true);
    emit intranetEntered();
    m_CheckIpTimer->start();
}

void Session::setupMobileDisConnected()
{
    m_mobileDetect = false;
    emit intranetLeft();
}

// Agent

void Session::handleAgentText(const QString& text, const AgentText& said)
{
    if (said.trusted && m_curStatus != DISCONNECTION && finishCancelConnect()) {
        logDisplayInfo(tr("Connection canceled during waiting agent"));
        disconnect(true, ipc::DisConnAbnormalReason);
    }
    const QString product = QLatin1String(product::kName);
    if (said.firewallEnabled)
        emit warning(tr("Firewall is enabled, %1 inbound traffic will not pass through the "
                        "firewall.")
                         .arg(product));
    else if (said.firewallDisabled)
        logDisplayInfo(tr("Firewall is closed"));
    if (said.ruleNotFound)
        logDisplayWarning(tr("The rule for %1 inbound traffic was removed and the rule has been "
                             "rewritten to restore it.")
                              .arg(product));
    if (m_curStatus == CONNECTING)
        actOnAgent(text, said);
}

void Session::actOnAgent(const QString& text, const AgentText& said)
{
    if (!said.hello && !said.quiet) {
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
        dispatch::port = said.port;
        return;
    case AgentText::Ready:
        // One that this attempt has not started yet speaks of an earlier one.
        if (m_datapath->isWaitingForAgent())
            agentReady();
        return;
    case AgentText::Disconnect:
        logDisplayInfo(tr("Receive disconnect event"));
        return emit refusedByAgent();
    }
}

void Session::agentReady()
{
    m_datapath->endWait();
    if (!m_datapath->dispatchInit())
        return disconnect(true, ipc::DisConnAbnormalReason);
    setConnStatus(CONNECTION);
    m_curStep = HEART_BEAT;
    if (!m_AssignIP.isEmpty())
        logDisplayInfo(tr("The assigned virtual IP is ") + m_AssignIP);
    m_heartbeat->start();
    m_traffic->start(false);
    m_datapath->watch();
    if (m_ClickCancelConnecting) {
        logDisplayInfo(tr("Connection canceled after receiving agent notification"));
        disconnect(true, ipc::DisConnNormalReason);
    }
}
