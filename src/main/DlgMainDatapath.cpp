// Starting and stopping the datapath through its control script, and what happens when it dies.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "app/ProcessRun.h"
#include "main/DlgMain.h"
#include "main/SessionRules.h"
#include "monitor/MonitorDatapath.h"
#include "orch/ErrorCatalogue.h"
#include "orch/Util.h"

#include <QTimer>

namespace {

constexpr int kScriptMs = 30000;

QString savedText(const QString& key)
{
    return ConfigUtil::getvalue(key, QString()).toString();
}

// The script gets the session token as an argument and may repeat it in a message.
QString withoutToken(const QByteArray& output)
{
    QString text = QString::fromLocal8Bit(output);
    const QString token = savedText(ConfigUtil::TOKEN);
    if (token.isEmpty())
        return text;
    text.replace(token, QStringLiteral("***"));
    if (output.size() == ProcessRun::kKept)
        text.chop(token.size()); // the cut may have gone through it
    return text;
}

// Runs the control script and waits for it, at most 30 s on the GUI thread. Returns its exit
// code; what it said about a failure goes to the log.
int runScript(const QStringList& arguments)
{
    const ProcessRun script =
        runProcess(platform().programFile(QStringLiteral("tarvelin")), arguments, kScriptMs);
    if (script.exitCode != 0) {
        logDisplayInfo(withoutToken(script.errors));
        logDisplayInfo(withoutToken(script.output));
    }
    return script.exitCode;
}

} // namespace

int DlgMain::startDP()
{
    logDisplayInfo(tr("Start connecting"));
    logConnectLine(tr(" Connect Mode:Native"));
    const int exitCode = runScript(session::datapathStartArguments(
        Util::getSerial(), savedText(ConfigUtil::TOKEN), m_OrchDomain));
    if (exitCode != 0)
        showError(errorText(ErrorText::DatapathNotLoaded));
    return exitCode;
}

void DlgMain::logConnectLine(const QString& mode)
{
    logDisplayInfo(tr("Username:") + savedText(ConfigUtil::USERNAME) + tr(" Customer ID:") +
                   session::customerText(savedText(ConfigUtil::CUSTOMERIDSTR),
                                         savedText(ConfigUtil::CUSTOMERID)) +
                   tr(" Serial Number:") + Util::getSerial().left(12) + mode);
}

void DlgMain::stopDP()
{
    logDisplayInfo(tr("Stop data path"));
    const int exitCode = runScript(session::datapathStopArguments());
    if (exitCode != 0)
        showError(errorText(ErrorText::DatapathNotStopped, exitCode));
}

void DlgMain::onDatapathVanished()
{
    monitor::MonitorDatapath::instance()->stop();
    if (!session::mayRestartDatapath(m_restartDPCount)) {
        logDisplayDebug(QStringLiteral("The datapath process has exited, the number of restarts "
                                       "has exceeded, and it cannot be restarted."));
        return;
    }
    logDisplayDebug(QStringLiteral("The datapath process has exited, try to restart."));
    m_connect2OrchReason = ipc::DisConnNormalReason;
    reConnect(ipc::DisConnAbnormalReason);
}

void DlgMain::onWaitDpFailed()
{
    m_WaitAgentTimer->stop();
    showError(errorText(ErrorText::AgentSilent));
    stopDP();
    setConnStatus(DISCONNECTION);
}
