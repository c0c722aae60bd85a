// First step of an attempt: the orchestrator's connect reply and the agent's configuration.

#include "app/ConfigUtil.h"
#include "app/Guarded.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DatapathFile.h"
#include "main/DlgMain.h"
#include "orch/ErrorCatalogue.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/ReplyFacts.h"
#include "orch/Util.h"

#include <QDir>
#include <QFile>

namespace {

QString savedText(const QString& key)
{
    return ConfigUtil::getvalue(key, QString()).toString();
}

} // namespace

void DlgMain::validateAndConnect(ipc::DisconnectTypeReason reason)
{
    m_curClientIp = Util::getNICIp();
    ipc::Connect2OrchParams params;
    params.customerId = savedText(ConfigUtil::CUSTOMERID);
    params.reason = reason;
    const int attempt = m_attempt;
    const auto succeeded = [this, attempt](const QByteArray& body) {
        if (attempt == m_attempt)
            onConnectReply(body);
    };
    const auto failed = [this, attempt](const QByteArray& body, QNetworkReply* reply) {
        if (attempt == m_attempt)
            onConnectFailed(body, reply);
    };
    ipc::OrchIpc::instance()->connect2Orch(params, guarded(this, succeeded), guarded(this, failed));
}

void DlgMain::onConnectReply(const QByteArray& body)
{
    if (finishCancelConnect()) {
        logDisplayInfo(tr("Connection canceled during connection orchestrator"));
        return;
    }
    if (m_curStatus != CONNECTING)
        return;
    logDisplayInfo(tr("NOTICE Connect event requested successfully"));
    qDebug().noquote() << "Orch result received:" << maskSecrets(body);

    const ConnectReply reply = ConnectReply::fromJson(body);
    m_HeartbeatUrl = reply.heartbeatUrl;
    m_HeartbeatInterval = reply.heartbeatInterval;
    m_AssignIP = reply.lanAssignIp;
    m_OrchDomain = reply.orchDomains;
    m_mobileDetect = reply.mobileDetect;
    m_EnableQuantum = reply.enableQuantum;
    m_EnablePQC = reply.enablePQC;
    ConfigUtil::writeValue(ConfigUtil::CPE_ID, reply.cpeId);
    logDisplayInfo(Util::oneLine(platform().isChinese() ? reply.mobileDetectFailed
                                                        : reply.mobileDetectFailedEn));
    if (!saveConfig(reply)) {
        setConnStatus(DISCONNECTION);
        return showError(errorText(ErrorText::ConfigNotSaved));
    }
    _getCommServIp();
    _checkNeedDownloadIpFilter(reply);
}

void DlgMain::onConnectFailed(const QByteArray& body, QNetworkReply* reply)
{
    if (finishCancelConnect()) {
        logDisplayInfo(tr("Connection canceled during connection orchestrator"));
        return;
    }
    setConnStatus(DISCONNECTION);
    if (httpStatus(reply) == 502)
        _queryOrchUpgradeWhen502();
    else
        reportHttpErr(body, reply);
}

bool DlgMain::saveConfig(const ConnectReply& reply)
{
    qDebug("orchId=%d, cpeId=%d, customer ID=%d, comm=%s", reply.orchId, reply.agentCpeId,
           reply.customerId, qUtf8Printable(Util::oneLine(reply.commuServerAddr)));
    m_commServHost.clear();
    m_commServIp.clear();
    if (!replaceDatapathFile(platform().programFile(QStringLiteral("cpeagent.conf")),
                             reply.cpeAgentConf()))
        return false;
    m_commServHost = reply.commServerHosts();
    logDisplayInfo(tr("Save data path configuration successfully"));
    return true;
}

// The datapath keeps what it learned about a customer and user; another one starts afresh.
void DlgMain::checkAndClearDB()
{
    const QString oldCustomer = savedText(ConfigUtil::OLD_CUSTOMERID);
    const QString oldUser = savedText(ConfigUtil::OLD_USERNAME);
    const QString customer = savedText(ConfigUtil::CUSTOMERID);
    const QString user = savedText(ConfigUtil::USERNAME);
    if (oldCustomer == customer && oldUser == user)
        return;
    const QString database = QStringLiteral("PersistentConf.db");
    qDebug() << "<DISPLAY> Clear Datapath DB:" << qUtf8Printable(database)
             << " Old customer:" << oldCustomer << " old username:" << oldUser
             << " new customer:" << customer << " new useranme:" << user;

    const QString path = QDir(platform().programDir()).absoluteFilePath(database);
    if (QFile::exists(path) && !QFile::remove(path))
        logDisplayDebug(QStringLiteral("Failed to clear Datapath DB:") + path);
    ConfigUtil::writeValue(ConfigUtil::OLD_CUSTOMERID, customer);
    ConfigUtil::writeValue(ConfigUtil::OLD_USERNAME, user);
}
