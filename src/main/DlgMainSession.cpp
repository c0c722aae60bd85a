// The session as a whole: connect button, states, disconnecting and reconnecting.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Product.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "main/ConnectButton.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/widgeChronometer.h"
#include "monitor/MonitorDatapath.h"
#include "orch/JsonUtil.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequests.h"
#include "orch/ReplyFacts.h"
#include "widgets/DialogFrame.h"
#include "widgets/dlgStopPrompt.h"
#include "widgets/Style.h"
#include "widgets/WidgetSetting.h"
#include "widgets/WidgetTopPrompt.h"

#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <utility>

// Connect button

void DlgMain::on_btnConnect_clicked()
{
    if (m_sessionOver || m_explainingEnd)
        return;
    const FailedDiagnosis diagnosis = failedDiagnosis();
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
    enableConnectButton(s != DISCONNECTING);
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

// A button that is switched off passes the keyboard on; it gets it back from where it went, unless
// the user has taken it elsewhere meanwhile.
void DlgMain::enableConnectButton(bool enable)
{
    const bool hadFocus = focusWidget() == ui->btnConnect;
    ui->btnConnect->setEnabled(enable);
    if (!enable)
        m_focusLent = hadFocus ? focusWidget() : nullptr;
    else if (m_focusLent && std::exchange(m_focusLent, nullptr) == focusWidget())
        ui->btnConnect->setFocus();
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
