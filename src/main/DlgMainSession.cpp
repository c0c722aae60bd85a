// What the user and the rest of the program do with the session through the main window.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Product.h"
#include "main/DiagnosisControl.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/FailedDiagnosis.h"
#include "main/Session.h"
#include "main/SessionExit.h"
#include "maintenance/OrchUpgradeDialog.h"
#include "orch/OrchReply.h"
#include "settings/WidgetSetting.h"
#include "widgets/DialogFrame.h"
#include "widgets/DlgQuit.h"
#include "widgets/dlgStopPrompt.h"
#include "widgets/DlgSwitchAcc.h"
#include "widgets/WidgetTopPrompt.h"

#include <QPointer>

// Operations that the rest of the program reaches by name

bool DlgMain::isConnected() const
{
    return m_session->isConnected();
}

void DlgMain::disconnect(bool notifyOrch, ipc::DisconnectTypeReason reason)
{
    m_session->disconnect(notifyOrch, reason);
}

void DlgMain::reConnect(ipc::DisconnectTypeReason reason)
{
    m_session->reConnect(reason);
}

void DlgMain::setConnStatus(CONN_STATUS s)
{
    m_session->setConnStatus(s);
}

void DlgMain::logout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI)
{
    m_exit->logout(notifyOrch, invalidToken, isByUser, showTipInLoginUI);
}

void DlgMain::quitUI()
{
    m_exit->quitUI();
}

void DlgMain::reportHttpErr(const OrchReply& reply)
{
    logDisplayDebug(failureLogText(reply, QStringLiteral(" Error Info: ")));
    const MainFailure outcome =
        mainFailure(reply, ui->m_SettingWidge->isDisable401(), OrchTexts::shared());
    if (outcome.end == SessionEnd::None)
        return showError(outcome.text);
    closeAllPopupDlg();
    m_exit->endSession(outcome.end);
}

// Connect button

void DlgMain::on_btnConnect_clicked()
{
    if (m_exit->isUnderWay())
        return;
    const FailedDiagnosis diagnosis = failedDiagnosis();
    switch (m_session->status()) {
    case DISCONNECTION:
        m_session->begin();
        return rerun(diagnosis);
    case CONNECTION:
        return stopConnection(diagnosis);
    case CONNECTING:
        return cancelAttempt();
    case DISCONNECTING:
        return;
    }
}

// Asks before a connection or an attempt is ended. False also when the window has gone meanwhile.
bool DlgMain::confirmStop()
{
    const QPointer<DlgMain> alive(this);
    m_PStopPrompt = new dlgStopPrompt(
        tr("Are you sure to stop ") + QLatin1String(product::kName) + tr(" ?"), this);
    const bool accepted = runAndDelete(m_PStopPrompt);
    if (!alive)
        return false;
    m_PStopPrompt = nullptr;
    return accepted;
}

void DlgMain::stopConnection(const FailedDiagnosis& diagnosis)
{
    const QPointer<DlgMain> alive(this);
    const bool stop = confirmStop();
    if (!alive)
        return;
    if (stop) {
        logDisplayInfo(tr("Manual stop triggered"));
        promptWidge->hidePrompt();
        m_session->stop();
    }
    rerun(diagnosis);
}

void DlgMain::cancelAttempt()
{
    if (!confirmStop())
        return;
    logDisplayInfo(tr("Manual cancel triggered"));
    promptWidge->hidePrompt();
    m_session->stop();
}

void DlgMain::onStatus(Transition change)
{
    if (change != Transition::Connected)
        return;
    const QString text = m_session->isIntranet()
                             ? tr(" is connected. In intranet mode, the tunnel is only established "
                                  "by an intranet CPE")
                             : tr(" is connected");
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, QLatin1String(product::kName) + text,
                            true);
}

void DlgMain::tellOrder(bool leave, const QString& text)
{
    promptWidge->hidePrompt();
    promptWidge->showPrompt(leave ? WidgetTopPrompt::SHOW_ERROR : WidgetTopPrompt::SHOW_WARNING,
                            text, false);
    if (!leave)
        m_showPromptTemp = true;
}

void DlgMain::showConnectionSlowWarning()
{
    promptWidge->hidePrompt();
    showWarning(tr("Your network may be slow. Still connecting, please wait"));
}

// Ways out

void DlgMain::on_btnSwitchAccount_clicked()
{
    if (!runAndDelete(new DlgSwitchAcc(this)))
        return;
    logDisplayInfo(tr("Logout"));
    logout(true, false, true, true);
}

void DlgMain::on_btnQuitApp_clicked()
{
    const QPointer<DlgMain> alive(this);
    m_PQuitDlg = new DlgQuit(this);
    const bool accepted = runAndDelete(m_PQuitDlg);
    if (!alive)
        return;
    m_PQuitDlg = nullptr;
    if (!accepted)
        return;
    logDisplayInfo(tr("Quit"));
    quitUI();
}

void DlgMain::closeAllPopupDlg()
{
    m_diagnosis->closeDiagnosis();
    if (m_PQuitDlg)
        m_PQuitDlg->reject();
    if (m_PStopPrompt)
        m_PStopPrompt->reject();
    promptWidge->hidePrompt();
}

// Diagnosis

FailedDiagnosis DlgMain::failedDiagnosis() const
{
    const FailedDiagnosis last =
        FailedDiagnosis::of(ConfigUtil::getvalue(ConfigUtil::DIAGNOSIS_FAIL, 0).toInt(),
                            ConfigUtil::getvalue(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, -1).toInt());
    if (last.typeLost)
        logDisplayDebug(QStringLiteral(
            "Get last diagnostic type failed. using default value: 0(triggered by client)"));
    return last;
}

void DlgMain::startDiagnosis(DiagnoseTriggerType type)
{
    m_diagnosis->start(type, isConnected());
}

void DlgMain::showDiagnosisResult(bool networkOK, bool orchOK, bool passwordChanged)
{
    ui->m_SettingWidge->resetDiagnosis();
    ui->m_SettingWidge->clearDisable401();
    if (m_exit->isUnderWay())
        return;
    if (!passwordChanged)
        return m_diagnosis->showResult(networkOK, orchOK);
    closeAllPopupDlg();
    m_exit->leaveAfterChange();
}

void DlgMain::rerun(const FailedDiagnosis& diagnosis)
{
    if (diagnosis.again)
        startDiagnosis(diagnosis.type);
}

// The worker asks for the logout itself once the dialog is closed.
void DlgMain::explain(SessionEnd end)
{
    if (m_exit->isUnderWay())
        return;
    disconnect(false, ipc::DisConnNormalReason);
    m_exit->explainEnd(end);
}

void DlgMain::onShowKickedoutDialog()
{
    explain(SessionEnd::ForcedLogout);
}

void DlgMain::onShowLdapChangeDialog()
{
    explain(SessionEnd::AccountChanged);
}

void DlgMain::onShowChangePassDialog()
{
    explain(SessionEnd::PasswordChanged);
}

void DlgMain::onShowOrchUpgradeDialog(const OrchUpgradeReply& notice, NoticeType type)
{
    showOrchUpgradeDialog(this, notice, type);
}
