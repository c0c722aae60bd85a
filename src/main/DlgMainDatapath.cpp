// Starting and stopping the datapath through its control script, and what happens when it dies.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DlgMain.h"
#include "main/SessionRules.h"
#include "monitor/MonitorDatapath.h"
#include "orch/ErrorCatalogue.h"
#include "orch/Util.h"

#include <QProcess>
#include <QTimer>

namespace {

constexpr int kScriptMs = 30000;

QString savedText(const QString& key)
{
    return ConfigUtil::getvalue(key, QString()).toString();
}

// What the script wrote to one of its channels, as far as it is kept: enough for an explanation,
// and a script that writes without end costs no more.
class ScriptOutput
{
public:
    void take(const QByteArray& written) { m_kept += written.left(kMost - m_kept.size()); }

    // The script gets the session token as an argument and may repeat it in a message.
    QString withoutToken() const
    {
        QString text = QString::fromLocal8Bit(m_kept);
        const QString token = savedText(ConfigUtil::TOKEN);
        if (token.isEmpty())
            return text;
        text.replace(token, QStringLiteral("***"));
        if (m_kept.size() == kMost)
            text.chop(token.size()); // the cut may have gone through it
        return text;
    }

private:
    static constexpr int kMost = 16384;
    QByteArray m_kept;
};

// Runs the control script and waits for it, at most 30 s on the GUI thread; a script still
// running then is killed. Returns its exit code; what it said about a failure goes to the log.
int runScript(const QStringList& arguments)
{
    ScriptOutput errors;
    ScriptOutput output;
    QProcess script;
    QObject::connect(&script, &QProcess::readyReadStandardError, &script,
                     [&] { errors.take(script.readAllStandardError()); });
    QObject::connect(&script, &QProcess::readyReadStandardOutput, &script,
                     [&] { output.take(script.readAllStandardOutput()); });
    script.setProcessEnvironment(QProcessEnvironment::systemEnvironment());
    script.start(platform().programFile(QStringLiteral("tarvelin")), arguments);
    script.waitForFinished(kScriptMs);
    const int exitCode = script.exitCode();
    if (exitCode != 0) {
        logDisplayInfo(errors.withoutToken());
        logDisplayInfo(output.withoutToken());
    }
    script.close();
    return exitCode;
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
