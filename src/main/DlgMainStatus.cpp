// What the home page shows of a connection: rates, tunnel health, encryption, intranet mode.

#include "app/LogMarker.h"
#include "app/Platform.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/widgeChronometer.h"
#include "orch/ErrorCatalogue.h"
#include "orch/Util.h"
#include "widgets/WidgetTopPrompt.h"

#include <QLabel>
#include <QTimer>

void DlgMain::onStatusNotify()
{
    heartBeat();
    if (m_mobileDetect)
        return;
    long long upSize = 0;
    long long downSize = 0;
    bool tunDown = false;
    bool hasTunnels = true;
    const int result = TQ_DispatchGetFlow(&upSize, &downSize, &tunDown, &hasTunnels);
    if (result != 0)
        return statusPollFailed(result);

    const qint64 now = platform().now().toMSecsSinceEpoch();
    m_StatusFailTime = 0;
    const TunnelHealth health =
        tunnelHealth(m_NetworkFailure, tunDown, hasTunnels, now - m_ConnectSuccessStamp);
    showTunnelHealth(health);
    if (health != TunnelHealth::Lost)
        showRates(m_flow.update(now, upSize, downSize));
}

void DlgMain::statusPollFailed(int result)
{
    constexpr int kAllowedFailures = 3;
    m_StatusFailTime += 1;
    if (m_StatusFailTime < kAllowedFailures)
        return;
    logDisplayCritical(tr("Check the DP status and find an exception") +
                       QStringLiteral("(%1)").arg(result));
    disconnect(true, ipc::DisConnAbnormalReason);
    clearRates(QStringLiteral("0"));
    m_flow.reset();
}

void DlgMain::showTunnelHealth(TunnelHealth health)
{
    switch (health) {
    case TunnelHealth::Unchanged:
        return;
    case TunnelHealth::Restored:
        promptWidge->hidePrompt();
        m_NetworkFailure = false;
        logDisplayInfo(tr("NOTICE Network restored"));
        return;
    case TunnelHealth::Lost:
        clearRates(QStringLiteral("0"));
        m_NetworkFailure = true;
        m_flow.m_LastUpSpeed = 0;
        m_flow.m_LastDownSpeed = 0;
        showWarning(errorText(ErrorText::AllTunnelsDown));
    }
}

void DlgMain::showRates(bool measured)
{
    if (!measured)
        return clearRates(QStringLiteral("0"));
    const auto show = [](long long rate, QLabel* value, QLabel* unit) {
        QString unitText;
        value->setText(Util::transToReadableBps(rate, unitText));
        unit->setText(unitText);
    };
    show(m_flow.m_LastUpSpeed, ui->labelUpSpeed, ui->labelUpKps);
    show(m_flow.m_LastDownSpeed, ui->labelDownSpeed, ui->labelDownKps);
}

void DlgMain::updateQuantumUI()
{
    const bool shown =
        isConnected() && (m_EnableQuantum || m_EnablePQC) && m_curMenuItem == MENU_HOME;
    ui->labelQuantumText->setText(m_EnableQuantum ? tr("Quantum Encryption Enabled")
                                                  : tr("PQC Encryption Enabled"));
    ui->labelQuantumPic->setVisible(shown);
    ui->labelQuantumText->setVisible(shown);
}

void DlgMain::showConnectionSlowWarning()
{
    m_ConnectSlowWarningTimer->stop();
    promptWidge->hidePrompt();
    showWarning(tr("Your network may be slow. Still connecting, please wait"));
}

// Intranet mode

void DlgMain::setupMobileConnected()
{
    setConnStatus(CONNECTION);
    m_StatusFailTime = 0;
    m_StatCountTimer->start();
    logConnectLine(tr(" Connect Mode:Intranet"));
    ui->placeChronometer(true);
    ui->m_Chronometer->start();
    if (m_curMenuItem == MENU_HOME || m_curMenuItem == MENU_INTRANET)
        setMobileDetectWidgetVisible(true);
    else
        ui->m_Chronometer->hide();
}

void DlgMain::setupMobileDisConnected()
{
    setMobileDetectWidgetVisible(false);
    m_mobileDetect = false;
    if (m_curMenuItem == MENU_INTRANET)
        m_curMenuItem = MENU_HOME;
    ui->placeChronometer(false);
    ui->m_Chronometer->stop();
}

void DlgMain::setMobileDetectWidgetVisible(bool visible)
{
    ui->m_mobileDetectLabel->setGeometry(228, 146, 216, 40);
    ui->m_mobileDetectLabel->setVisible(visible);
    if (m_curMenuItem != MENU_HOME && m_curMenuItem != MENU_INTRANET)
        return;
    for (QLabel* rate : {ui->labelDownPic, ui->labelDownKps, ui->labelDownSpeed, ui->labelUpPic,
                         ui->labelUpKps, ui->labelUpSpeed})
        rate->setVisible(!visible);
}

void DlgMain::onCheckIp()
{
    if (!isConnected())
        return;
    const QString address = Util::getNICIp();
    if (address.isEmpty() || m_curClientIp.isEmpty() || address == m_curClientIp)
        return;
    m_connect2OrchReason = ipc::DisConnNormalReason;
    reConnect(ipc::DisConnAbnormalReason);
}
