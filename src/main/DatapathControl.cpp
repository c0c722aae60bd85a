#include "main/DatapathControl.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/NamedTimer.h"
#include "app/Platform.h"
#include "app/ProcessRun.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "main/SessionRules.h"
#include "monitor/MonitorDatapath.h"
#include "orch/ErrorCatalogue.h"
#include "orch/HostIdentity.h"

namespace {

constexpr int kScriptMs = 30000;
constexpr int kAgentMs = 90000;

// The script gets the session token as an argument and may repeat it in a message.
QString withoutToken(const QByteArray& output)
{
    QString text = QString::fromLocal8Bit(output);
    const QString token = ConfigUtil::savedText(ConfigUtil::TOKEN);
    if (token.isEmpty())
        return text;
    text.replace(token, QStringLiteral("***"));
    if (output.size() == ProcessRun::kKept)
        text.chop(token.size()); // the cut may have gone through it
    return text;
}

// Runs the control script and waits for it. Returns its exit code; what it said about a failure
// goes to the log.
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

DatapathControl::DatapathControl(QObject* parent)
    : QObject(parent), m_WaitAgentTimer(makeTimer(this, "m_WaitAgentTimer", kAgentMs,
                                                  &DatapathControl::onWaitDpFailed))
{
    connect(monitor::MonitorDatapath::instance(), &monitor::MonitorDatapath::datapathVanished, this,
            &DatapathControl::onDatapathVanished);
}

DatapathControl::~DatapathControl()
{
    monitor::MonitorDatapath::instance()->stop();
}

void DatapathControl::setOrchDomain(const QString& domains)
{
    m_OrchDomain = domains;
}

int DatapathControl::startDP()
{
    logDisplayInfo(tr("Start connecting"));
    logConnectLine(false);
    const int exitCode = runScript(session::datapathStartArguments(
        Util::getSerial(), ConfigUtil::savedText(ConfigUtil::TOKEN), m_OrchDomain));
    if (exitCode != 0)
        emit error(errorText(ErrorText::DatapathNotLoaded));
    return exitCode;
}

void DatapathControl::stopDP()
{
    logDisplayInfo(tr("Stop data path"));
    const int exitCode = runScript(session::datapathStopArguments());
    if (exitCode != 0)
        emit error(errorText(ErrorText::DatapathNotStopped, exitCode));
}

void DatapathControl::logConnectLine(bool intranet)
{
    logDisplayInfo(tr("Username:") + ConfigUtil::savedText(ConfigUtil::USERNAME) +
                   tr(" Customer ID:") +
                   session::customerText(ConfigUtil::savedText(ConfigUtil::CUSTOMERIDSTR),
                                         ConfigUtil::savedText(ConfigUtil::CUSTOMERID)) +
                   tr(" Serial Number:") + Util::getSerial().left(12) +
                   (intranet ? tr(" Connect Mode:Intranet") : tr(" Connect Mode:Native")));
}

void DatapathControl::waitForAgent()
{
    logDisplayInfo(tr("Waiting for agent to synchronize configuration"));
    m_WaitAgentTimer->start();
}

bool DatapathControl::isWaitingForAgent() const
{
    return m_WaitAgentTimer->isActive();
}

void DatapathControl::endWait()
{
    m_WaitAgentTimer->stop();
}

bool DatapathControl::dispatchInit()
{
    if (TQ_GetFlowStatisticsInit() == 0)
        return true;
    emit error(tr("Failed to init dispatch tool"));
    return false;
}

void DatapathControl::watch()
{
    monitor::MonitorDatapath::instance()->start();
}

void DatapathControl::unwatch()
{
    monitor::MonitorDatapath::instance()->stop();
    TQ_GetFlowStatisticsExit();
}

void DatapathControl::onDatapathVanished()
{
    monitor::MonitorDatapath::instance()->stop();
    if (!session::mayRestartDatapath(m_restartDPCount)) {
        logDisplayDebug(QStringLiteral("The datapath process has exited, the number of restarts "
                                       "has exceeded, and it cannot be restarted."));
        return;
    }
    logDisplayDebug(QStringLiteral("The datapath process has exited, try to restart."));
    emit restartWanted();
}

void DatapathControl::onWaitDpFailed()
{
    m_WaitAgentTimer->stop();
    emit error(errorText(ErrorText::AgentSilent));
    stopDP();
    emit agentSilent();
}
