// The session as a whole: connect button, states, disconnecting, and the ways in which a session
// ends for good.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "main/ConnectButton.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/SessionRules.h"
#include "main/widgeChronometer.h"
#include "monitor/MonitorDatapath.h"
#include "orch/HttpErrorText.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequests.h"
#include "orch/ReplyFacts.h"
#include "widgets/AccountDialogs.h"
#include "widgets/DlgQuit.h"
#include "widgets/dlgStopPrompt.h"
#include "widgets/DlgSwitchAcc.h"
#include "widgets/Style.h"
#include "widgets/WidgetSetting.h"
#include "widgets/WidgetTopPrompt.h"

#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace {

// The window's property that is true while a reconnect waits for the disconnect notice's answer.
constexpr char kReconnect[] = "reconnect";

// Time for the last requests to be sent before the program ends.
constexpr int kEndDelayMs = 100;

// Runs a dialog and deletes it. False when it was declined, and when it went with its window.
bool runOnce(QDialog* dialog)
{
    const QPointer<QDialog> alive(dialog);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    if (!alive)
        return false;
    delete dialog;
    return accepted;
}

} // namespace

/// What the settings remember of the last run of the diagnosis.
struct DlgMain::FailedDiagnosis
{
    bool again = false; ///< it failed and is to be run again
    DiagnoseTriggerType type = TriggerByClient;

    static FailedDiagnosis stored()
    {
        const int failed = ConfigUtil::getvalue(ConfigUtil::DIAGNOSIS_FAIL, 0).toInt();
        int type = ConfigUtil::getvalue(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, -1).toInt();
        if (failed != 0 && type == -1) {
            logDisplayDebug(QStringLiteral(
                "Get last diagnostic type failed. using default value: 0(triggered by client)"));
            type = TriggerByClient;
        }
        return {failed == 1, DiagnoseTriggerType(type)};
    }
};

// Connect button

void DlgMain::on_btnConnect_clicked()
{
    if (m_sessionOver || m_explainingEnd)
        return;
    const FailedDiagnosis diagnosis = FailedDiagnosis::stored();
    switch (m_curStatus) {
    case DISCONNECTION:
        return beginAttempt(diagnosis);
    case CONNECTION:
        return stopConnection(diagnosis);
    case CONNECTING:
        return cancelAttempt();
    case DISCONNECTING:
        return;
    }
}

void DlgMain::beginAttempt(const FailedDiagnosis& diagnosis)
{
    ++m_attempt;
    m_stepReply = nullptr;
    m_ClickCancelConnecting = false;
    m_HeartBeatSendFailedTimer->stop(); // a loss of the last connection is not one of this one
    m_HeartBeatSendFailed = false;
    setProperty(kReconnect, false);
    ui->m_SettingWidge->clearDisable401();
    logDisplayInfo(m_FirstAutoConnect || m_isReconnect ? tr("Reconnecting")
                                                       : tr("Manual connect triggered"));
    m_isReconnect = false;
    m_FirstAutoConnect = false;
    if (!m_showPromptTemp)
        promptWidge->hidePrompt();
    m_showPromptTemp = false;
    setConnStatus(CONNECTING);
    rerun(diagnosis);
    m_ConnectSlowWarningTimer->start();
    validateAndConnect(m_connect2OrchReason);
}

// Asks before a connection or an attempt is ended. False also when the window has gone meanwhile.
bool DlgMain::confirmStop()
{
    const QPointer<DlgMain> alive(this);
    m_PStopPrompt = new dlgStopPrompt(
        tr("Are you sure to stop ") + QLatin1String(product::kName) + QStringLiteral(" ?"), this);
    const bool accepted = runOnce(m_PStopPrompt);
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
        stopForUser();
    }
    rerun(diagnosis);
}

void DlgMain::cancelAttempt()
{
    if (!confirmStop())
        return;
    logDisplayInfo(tr("Manual cancel triggered"));
    stopForUser();
}

// Whatever the session has come to while the question was open.
void DlgMain::stopForUser()
{
    promptWidge->hidePrompt();
    setProperty(kReconnect, false);
    m_isReconnect = false;
    if (m_curStatus == CONNECTION)
        disconnect(true, ipc::DisConnNormalReason);
    else if (m_curStatus == CONNECTING)
        abandonAttempt();
}

// Ends a running attempt: at once during the filter download and the wait for the agent, otherwise
// when the connect request is answered.
void DlgMain::abandonAttempt()
{
    m_ClickCancelConnecting = true;
    setConnStatus(DISCONNECTING);
    if (m_stepReply)
        return m_stepReply->abort();
    if (!m_WaitAgentTimer->isActive())
        return;
    finishCancelConnect();
    logDisplayInfo(tr("Connection canceled during waiting agent"));
    disconnect(true, ipc::DisConnNormalReason);
}

bool DlgMain::finishCancelConnect()
{
    if (!m_ClickCancelConnecting)
        return false;
    setConnStatus(DISCONNECTION);
    return true;
}

// The diagnosis worker takes this over; until it exists the wish is only recorded.
void DlgMain::startDiagnosis(DiagnoseTriggerType type)
{
    qInfo("Diagnosis requested, trigger type %d, connected %d", int(type), int(isConnected()));
}

void DlgMain::rerun(const FailedDiagnosis& diagnosis)
{
    if (diagnosis.again)
        startDiagnosis(diagnosis.type);
}

// States

bool DlgMain::isConnected() const
{
    return m_curStatus == CONNECTION;
}

void DlgMain::setConnStatus(CONN_STATUS s)
{
    m_ConnectSlowWarningTimer->stop();
    ui->labelQuantumPic->hide();
    ui->labelQuantumText->hide();

    const Transition change = transition(m_curStatus, s);
    if (change == Transition::Ignored)
        return;
    if (change == Transition::Ended)
        m_CheckIpTimer->stop();
    if (s == CONNECTION || s == DISCONNECTION)
        m_WaitAgentTimer->stop();
    changeStartBtnStatus(s);
    m_curStatus = s;
    ui->showRoute(s == CONNECTION);
    switch (change) {
    case Transition::Connected:
        return enterConnection();
    case Transition::Ended:
        clearRates(QStringLiteral("--"));
        Q_FALLTHROUGH();
    case Transition::Abandoned:
        if (m_mobileDetect)
            setupMobileDisConnected();
        Q_FALLTHROUGH();
    case Transition::Stopping:
        ui->m_Chronometer->stop();
        return;
    case Transition::Begin:
    case Transition::Cancelling:
    case Transition::Ignored:
        return;
    }
}

void DlgMain::enterConnection()
{
    QString text = QLatin1String(product::kName) + tr(" is connected");
    if (m_mobileDetect) {
        text = QLatin1String(product::kName) +
               tr(" is connected. In intranet mode, the tunnel is only established by an "
                  "intranet CPE");
    }
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, text, true);
    ui->m_Chronometer->start();
    if (m_curMenuItem != MENU_HOME && m_curMenuItem != MENU_INTRANET)
        ui->m_Chronometer->hide();
    ui->labelUpSpeed->setText(QStringLiteral("0"));
    ui->labelDownSpeed->setText(QStringLiteral("0"));
    logDisplayInfo(tr("NOTICE Connected"));
    updateQuantumUI();
}

void DlgMain::clearRates(const QString& value)
{
    for (QLabel* speed : {ui->labelUpSpeed, ui->labelDownSpeed})
        speed->setText(value);
    for (QLabel* unit : {ui->labelUpKps, ui->labelDownKps})
        unit->setText(QStringLiteral("Kbps"));
}

void DlgMain::changeStartBtnStatus(CONN_STATUS s)
{
    const bool running = s == CONNECTING || s == DISCONNECTING;
    if (running)
        m_StartBtnAnimTimer->start();
    else
        m_StartBtnAnimTimer->stop();
    ui->btnConnect->setEnabled(s != DISCONNECTING);
    switch (s) {
    case CONNECTING:
        return ui->btnConnect->setText(tr("Connecting"));
    case DISCONNECTING:
        return ui->btnConnect->setText(tr("Disconnecting"));
    case CONNECTION:
        setRole(ui->btnConnect, "secondary");
        return ui->btnConnect->setText(tr("Stop"));
    case DISCONNECTION:
        setRole(ui->btnConnect, "primary");
        return ui->btnConnect->setText(tr("Connect"));
    }
}

void DlgMain::onStartBtnAnimTick()
{
    const ConnectButtonTexts texts{tr("Connecting"), tr("Cancel"), tr("Disconnecting")};
    ui->btnConnect->setText(
        nextButtonText(m_curStatus, m_MouseOverConnect, ui->btnConnect->text(), texts));
}

// Disconnecting

void DlgMain::disconnect(bool notifyOrch, ipc::DisconnectTypeReason reason)
{
    m_StatCountTimer->stop();
    monitor::MonitorDatapath::instance()->stop();
    TQ_GetFlowStatisticsExit();
    if (m_mobileDetect)
        setupMobileDisConnected();
    else
        stopDP();
    if (notifyOrch && m_curStatus == CONNECTION) {
        setConnStatus(DISCONNECTING);
        m_curStep = DISCONNECT_NOTIFY_ORCH;
        return postDisconnectNotice(reason);
    }
    setConnStatus(DISCONNECTION);
    logDisplayInfo(tr("Disconnected"));
}

void DlgMain::postDisconnectNotice(ipc::DisconnectTypeReason reason)
{
    const QString authUrl = ConfigUtil::getvalue(ConfigUtil::AUTHURL, QString()).toString();
    sendForStep(orchrequest::disconnectNotice(authUrl, storedIdentity(), reason));
}

void DlgMain::reConnect(ipc::DisconnectTypeReason reason)
{
    disconnect(true, reason);
    m_isReconnect = true;
    setProperty(kReconnect, true);
}

void DlgMain::sendForStep(const OrchRequest& request)
{
    m_stepReply = sendOrchRequest(*m_NetMgr, request);
}

void DlgMain::netReply(QNetworkReply* r)
{
    r->deleteLater();
    // An answer that comes after its step is over is nobody's any more.
    if (r != m_stepReply)
        return;
    m_stepReply = nullptr;
    if (m_curStep == DISCONNECT_NOTIFY_ORCH)
        disconnectNoticeAnswered(r);
    else if (m_curStep == GET_FILTER)
        filterAnswered(r);
}

// Whatever the orchestrator answered, the session is over here.
void DlgMain::disconnectNoticeAnswered(QNetworkReply* reply)
{
    const QPointer<DlgMain> alive(this); // a dialog may outlive the window
    setConnStatus(DISCONNECTION);
    logDisplayInfo(tr("Disconnected"));
    const QByteArray body = replyBody(reply);
    if (!reply->rawHeader("orch-logfile").isEmpty())
        startDiagnosis(TriggerByOrch);
    if (JsonUtil::getInt(body, QStringLiteral("code"), 0) == 401)
        _handle401(body);
    if (alive && property(kReconnect).toBool()) {
        setProperty(kReconnect, false);
        on_btnConnect_clicked();
    }
}

// Ends of the session

void DlgMain::_handle401(const QByteArray& document)
{
    logDisplayDebug(QStringLiteral(" orch return text ") + maskSecrets(document));
    switch (kickout(JsonUtil::object(document))) {
    case Kickout::PasswordChanged:
        return endSession(SessionEnd::PasswordChanged);
    case Kickout::ForcedLogout:
        return endSession(SessionEnd::ForcedLogout);
    case Kickout::AccountChanged:
        return endSession(SessionEnd::AccountChanged);
    case Kickout::Other:
        return logout(false, true, false, true);
    case Kickout::NoReason:
        return logout(true, true, false, true);
    }
}

void DlgMain::reportHttpErr(const QByteArray& body, QNetworkReply* reply)
{
    const HttpFailure failure = HttpFailure::of(body, reply);
    logDisplayDebug(failureLogText(failure, QStringLiteral(" Error Info: ")));
    const MainFailure outcome =
        mainFailure(failure, ui->m_SettingWidge->isDisable401(), OrchTexts::shared());
    if (outcome.end == SessionEnd::None)
        return showError(outcome.text);
    closeAllPopupDlg();
    endSession(outcome.end);
}

void DlgMain::endSession(SessionEnd end)
{
    switch (end) {
    case SessionEnd::None:
    case SessionEnd::LeftToSettings:
        return;
    case SessionEnd::KeepToken:
        return logout(false, false, false, true);
    case SessionEnd::InvalidToken:
        return logout(false, true, false, true);
    case SessionEnd::ForcedLogout:
    case SessionEnd::AccountChanged:
    case SessionEnd::PasswordChanged:
        return explainAndLogout(end);
    }
}

// The user is told why before the program starts anew. Whatever else ends the session while the
// explanation is open, it is explained once and the logout comes once.
void DlgMain::explainAndLogout(SessionEnd end)
{
    if (m_sessionOver || m_explainingEnd)
        return;
    showWindow();
    const QPointer<DlgMain> alive(this);
    explainEnd(end);
    if (alive)
        logout(false, end != SessionEnd::PasswordChanged, false, false);
}

void DlgMain::explainEnd(SessionEnd end)
{
    if (m_explainingEnd)
        return;
    const QPointer<DlgMain> alive(this);
    m_explainingEnd = true;
    setProperty(kReconnect, false);
    m_isChPwPromptShowed = end == SessionEnd::PasswordChanged;
    if (end == SessionEnd::ForcedLogout)
        showOrchKickOff(this, ConfigUtil::getvalue(ConfigUtil::USERNAME, QString()).toString());
    else if (end == SessionEnd::AccountChanged)
        showLdapChange(this);
    else
        showPasswordChanged(this);
    if (!alive)
        return;
    m_explainingEnd = false;
    m_isChPwPromptShowed = false;
}

void DlgMain::logout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI)
{
    if (m_sessionOver || m_explainingEnd)
        return;
    m_sessionOver = true;
    m_ClickCancelConnecting = true;
    ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString());
    disconnect(notifyOrch, invalidToken ? ipc::DisConnNormalReason : ipc::DisConnAbnormalReason);
    const QStringList arguments =
        session::logoutArguments(invalidToken, isByUser, showTipInLoginUI);
    QTimer::singleShot(kEndDelayMs, this, [this, arguments, invalidToken] {
        accept();
        if (invalidToken)
            ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
        platform().relaunch(arguments);
    });
}

void DlgMain::quitUI()
{
    if (m_sessionOver)
        return;
    m_sessionOver = true;
    m_ClickCancelConnecting = true;
    disconnect(true, ipc::DisConnNormalReason);
    QTimer::singleShot(kEndDelayMs, this, [this] {
        reject();
        platform().quit();
    });
}

void DlgMain::on_btnSwitchAccount_clicked()
{
    if (!runOnce(new DlgSwitchAcc(this)))
        return;
    logDisplayInfo(tr("Logout"));
    logout(true, false, true, true);
}

void DlgMain::on_btnQuitApp_clicked()
{
    const QPointer<DlgMain> alive(this);
    m_PQuitDlg = new DlgQuit(this);
    const bool accepted = runOnce(m_PQuitDlg);
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
    if (m_PQuitDlg)
        m_PQuitDlg->reject();
    if (m_PStopPrompt)
        m_PStopPrompt->reject();
    promptWidge->hidePrompt();
}
