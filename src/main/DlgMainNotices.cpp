// Notices beside the session: new versions of the client, maintenance of the orchestrator.

#include "app/ConfigUtil.h"
#include "app/GreyMaskForUkui.h"
#include "app/Guarded.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/SessionRules.h"
#include "maintenance/MaintenanceCheck.h"
#include "maintenance/OrchUpgradeDialog.h"
#include "orch/HttpErrorText.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/ReplyFacts.h"
#include "upgrade/DlgForceUpgrade.h"
#include "upgrade/DlgUpgrade.h"
#include "upgrade/UpgradePolicy.h"
#include "widgets/DialogFrame.h"
#include "widgets/WidgeAbout.h"

#include <QEvent>
#include <QLabel>
#include <QNetworkReply>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <utility>

namespace {

constexpr int kMinuteMs = 60000;

QString savedCustomer()
{
    return ConfigUtil::getvalue(ConfigUtil::CUSTOMERID, QString()).toString();
}

} // namespace

// Upgrade

void DlgMain::onNextCheckUpgrade()
{
    m_DlgUpgrade->checkUpgrade(false);
}

void DlgMain::upgradeNotify(QNetworkReply* reply)
{
    reply->deleteLater();
    const QVariant mark = reply->request().attribute(QNetworkRequest::User);
    if (!mark.isValid())
        return; // not a version check
    const bool byUser = mark.toBool();
    const QByteArray body = replyBody(reply);
    const bool answered = httpStatus(reply) == 200 && reply->error() == QNetworkReply::NoError;
    const QPointer<DlgMain> alive(this);
    if (answered)
        upgradeAnswered(body);
    else
        upgradeFailed(body, reply);
    if (alive && !byUser)
        m_checkUpgradeTimer->start(m_CheckInterval * kMinuteMs);
}

void DlgMain::upgradeAnswered(const QByteArray& body)
{
    const UpgradeReply reply = UpgradeReply::fromJson(body, platform().isChinese());
    m_Des = reply.note;
    m_NewVersion = reply.version;
    m_CheckInterval = reply.checkingPeriod;
    m_upgradeUrl = reply.url;
    m_ForceUpgrade = reply.isForced();

    const UpgradeDecision decision =
        decideUpgrade(reply, UpgradeChoices::load(), upgradeToday(), lastCheckVersion.isEmpty());
    for (const QString& line : decision.displayLog)
        logDisplayDebug(line);
    if (!decision.log.isEmpty())
        qDebug().noquote() << decision.log;
    if (decision.counts && lastCheckVersion.isEmpty())
        lastCheckVersion = m_NewVersion;
    qDebug("Finish checking for updates: forceUpgrade %d, showNewVersion %d, checkInterval %d, "
           "ignore %d, downloadUrl %s",
           m_ForceUpgrade, decision.showNew, m_CheckInterval, reply.ignore,
           qUtf8Printable(m_upgradeUrl.left(kLogBodyLimit)));

    ui->m_AboutWidge->showVersion(m_NewVersion, decision.showNew, false);
    showHideYellowDot(decision.mark);
    if (!decision.pop)
        return;
    logDisplayInfo(QStringLiteral("Discover a new version ") + m_NewVersion);
    // A dialog is not opened from within the reply's handler.
    QTimer::singleShot(0, this, &DlgMain::popUpgradeDlg);
}

void DlgMain::upgradeFailed(const QByteArray& body, QNetworkReply* reply)
{
    logDisplayInfo(QStringLiteral("Failed to check, please try again."));
    logDisplayDebug(QStringLiteral("Error Info: ") + HttpFailure::of(body, reply).logText());
    ui->m_AboutWidge->showVersion(QString(), false, true);
}

void DlgMain::popUpgradeDlg()
{
    if (m_sessionOver)
        return;
    if (m_upgradeDialogOpen) {
        m_popUpgradeAgain = true;
        return;
    }
    m_upgradeDialogOpen = true;
    const QPointer<DlgMain> alive(this);
    if (m_ForceUpgrade)
        forceUpgrade();
    else
        offerUpgrade();
    if (!alive)
        return;
    m_upgradeDialogOpen = false;
    if (std::exchange(m_popUpgradeAgain, false))
        QTimer::singleShot(0, this, &DlgMain::popUpgradeDlg);
}

void DlgMain::offerUpgrade()
{
    m_DlgUpgrade->setUrl(m_upgradeUrl);
    m_DlgUpgrade->setSettings(m_Des, m_NewVersion, false);
    GreyMaskForUkui::cover(this, m_DlgUpgrade);
    const QPointer<DlgMain> alive(this);
    const QString offered = m_NewVersion;
    const int result = m_DlgUpgrade->exec();
    if (!alive || result != DlgUpgrade::kSkipped || offered != m_NewVersion)
        return;
    ui->m_AboutWidge->showVersion(m_NewVersion, true, false);
    showHideYellowDot(false);
}

void DlgMain::forceUpgrade()
{
    setProperty(kReconnect, false);
    m_ClickCancelConnecting = true; // nothing connects an outdated client any more
    if (m_curStatus == CONNECTION || m_curStatus == CONNECTING)
        disconnect(true, ipc::DisConnAbnormalReason);
    const QPointer<DlgMain> alive(this);
    auto* dialog = new DlgForceUpgrade(this);
    dialog->setNoteText(m_Des);
    dialog->setNewVersion(m_NewVersion);
    dialog->setLogoutAfterClose(true);
    dialog->setUrl(m_upgradeUrl);
    runAndDelete(dialog);
    if (alive)
        logout(true, false, false, true);
}

void DlgMain::showHideYellowDot(bool show)
{
    // The sheet replaces the button's own picture, see IconButton.
    ui->btnAbout->setStyleSheet(
        show ? QStringLiteral(
                   "QPushButton#btnAbout{border-image: url(:/Ostrana/res/info_notice.png)};")
             : aboutBtnCSS);
    ui->btnAbout->setFixedSize(show ? QSize(15, 12) : QSize(16, 16));
    ui->btnAbout->move(ui->btnAbout->x(), show ? 18 : 16);
    ui->btnAbout->setAccessibleDescription(show ? tr("A new version is available") : QString());
}

// Maintenance

void DlgMain::focusInEvent(QFocusEvent* event)
{
    onFocusReturn();
    QDialog::focusInEvent(event);
}

// The focus goes to a widget of the window as a rule, and the window learns of it here.
void DlgMain::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        onFocusReturn();
    QDialog::changeEvent(event);
}

void DlgMain::onFocusReturn()
{
    const QDateTime now = platform().now();
    const qint64 elapsed = m_lastReqOrchUpgradeTime.secsTo(now);
    const QString format = QStringLiteral("hh:mm:ss.z");
    logDisplayDebug(QStringLiteral("focus in event triggered, currentTime: ") +
                    now.toString(format) + QStringLiteral(", last request orch time: ") +
                    m_lastReqOrchUpgradeTime.toString(format) + QStringLiteral(", devition: ") +
                    QString::number(elapsed));
    if (!m_noticeQueryRunning && session::noticeQueryDue(elapsed, m_reqOrchInterval)) {
        m_lastReqOrchUpgradeTime = now;
        _queryOrchUpgrade();
    }
}

void DlgMain::_queryOrchUpgrade()
{
    m_noticeQueryRunning = true;
    const auto failed = [this](const QByteArray& body, QNetworkReply* reply) {
        m_noticeQueryRunning = false;
        qDebug("Failed to query ORCH upgrade status");
        if (httpStatus(reply) != 404)
            reportHttpErr(body, reply);
    };
    ipc::OrchIpc::instance()->queryOrchUpgrade(
        savedCustomer(),
        guarded(this, [this](const QByteArray& body) { onMaintenanceNotice(body); }),
        guarded(this, failed));
}

void DlgMain::onMaintenanceNotice(const QByteArray& body)
{
    const QPointer<DlgMain> alive(this);
    const OrchUpgradeReply notice = parseOrchUpgradeReply(body);
    m_reqOrchInterval = notice.noticeTime;
    if (maintenance::announcedOnFocus(notice, maintenance::isHandled(notice.id)))
        onShowOrchUpgradeDialog(this, notice, OrchPreparing);
    maintenance::recordNotice(notice.id);
    if (alive)
        m_noticeQueryRunning = false;
}

void DlgMain::_queryOrchUpgradeWhen502()
{
    MaintenanceCheck check;
    check.customerId = savedCustomer();
    check.reportHttpErr = [this](const QByteArray& body, QNetworkReply* reply) {
        reportHttpErr(body, reply);
    };
    check.showError = [this](const QString& text) { showError(text); };
    queryOrchUpgradeWhen502(this, check);
}
