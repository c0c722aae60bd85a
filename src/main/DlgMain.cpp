#include "main/DlgMain.h"

#include "app/ConfigUtil.h"
#include "app/LocalServer.h"
#include "app/Log.h"
#include "app/LogMarker.h"
#include "app/LogModel.h"
#include "app/NamedTimer.h"
#include "app/Product.h"
#include "app/SingleApp.h"
#include "branding/LogoChecker.h"
#include "branding/LogoPicture.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "logview/LogView.h"
#include "main/AgentChannel.h"
#include "main/DiagnosisControl.h"
#include "main/DlgMainUi.h"
#include "main/HomePage.h"
#include "main/Session.h"
#include "main/SessionExit.h"
#include "main/SessionRules.h"
#include "main/TrafficWatch.h"
#include "main/TrayIcon.h"
#include "maintenance/MaintenanceWatch.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchReply.h"
#include "settings/WidgetSetting.h"
#include "upgrade/UpgradeWatch.h"
#include "widgets/Style.h"
#include "widgets/WidgeAbout.h"
#include "widgets/WidgetTopPrompt.h"

#include <QCoreApplication>
#include <QIcon>
#include <QLabel>
#include <QPainterPath>
#include <QPushButton>
#include <QRegion>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr int kRecoveryCodesMs = 500; // once the window stands

} // namespace

int& DlgMain::dispatchPort = dispatch::port;

DlgMain::DlgMain(QWidget* parent)
    : QDialog(parent), ui(std::make_unique<DlgMainUi>(this)),
      promptWidge(new WidgetTopPrompt(this)), m_session(new Session(this)),
      m_home(new HomePage(*ui, *m_session, this)), m_exit(new SessionExit(this)),
      m_upgrade(new UpgradeWatch(this, true)), m_maintenance(new MaintenanceWatch(this)),
      m_diagnosis(new DiagnosisControl(this)), m_OrchErrRes(OrchErrRes::getInstance())
{
    buildWindow();
    setupLogo();
    createLogModel();
    connectButtons();
    m_tray = new TrayIcon(this);
    showUser();
    wireSession();
    wireExit();
    wireSettings();
    wireDiagnosis();
    wireNotices();
    listen();
    showMenu(MENU_HOME);
    ui->btnConnect->setFocus();
    m_session->checkAndClearDB();
    on_btnConnect_clicked();
    aboutBtnCSS = ui->btnAbout->styleSheet();
    QTimer* codes =
        makeTimer(this, "recoveryCodesTimer", kRecoveryCodesMs, &DlgMain::showRecoveryCodeDlg);
    codes->setSingleShot(true);
    codes->start();
    m_upgrade->checkUpgrade(false);
}

DlgMain::~DlgMain()
{
    m_diagnosis->end(); // while the window can still be spoken to
    Log::setLogModel(nullptr);
    OrchErrRes::release();
}

void DlgMain::buildWindow()
{
    setObjectName(QStringLiteral("DlgMain"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setWindowTitle(QLatin1String(product::kName));
    setWindowIcon(pictureIcon(QStringLiteral("veltaro/veltaro.ico")));
    setStyleSheet(styleSheetFor("main"));
    QPainterPath outline;
    outline.addRoundedRect(rect(), 1, 1);
    setMask(QRegion(outline.toFillPolygon().toPolygon()));
    m_OrchErrRes->setCustomerId(ConfigUtil::savedText(ConfigUtil::CUSTOMERID));
}

// The customer's own pictures, where the login has fetched some.
void DlgMain::setupLogo()
{
    const auto show = [this](QLabel* label, const char* name) {
        const QPixmap own = LogoChecker::instance()->logoPixmap(QLatin1String(name));
        const QIcon builtIn = pictureIcon(QStringLiteral("veltaro/") + QLatin1String(name));
        const QPixmap shown = own.isNull() ? builtIn.pixmap(label->size()) : own;
        label->setPixmap(_scalePixelIfExpanded(shown, label->size()));
    };
    show(ui->labelRoundLogo, kRoundLogo);
    show(ui->labelLogo, kMainLogo);
}

QPixmap DlgMain::_scalePixelIfExpanded(const QPixmap& picture, const QSize& room) const
{
    return logopicture::fitted(picture, room, devicePixelRatioF());
}

void DlgMain::createLogModel()
{
    m_LogModel = new LogModel(this);
    m_LogModel->setObjectName(QStringLiteral("m_LogModel"));
    ui->logView->setModel(m_LogModel);
    Log::setLogModel(m_LogModel);
}

void DlgMain::connectButtons()
{
    // A click toggles too, and toggling is all that assistive technology does.
    connect(ui->toolBtnHome, &QToolButton::toggled, this, &DlgMain::on_toolBtnHome_clicked);
    connect(ui->toolBtnSetting, &QToolButton::toggled, this, &DlgMain::on_toolBtnSetting_clicked);
    connect(ui->toolBtnLog, &QToolButton::toggled, this, &DlgMain::on_toolBtnLog_clicked);
    connect(ui->toolBtnQuit, &QToolButton::toggled, this, &DlgMain::on_toolBtnQuit_clicked);
    connect(ui->btnAbout, &QPushButton::clicked, this, &DlgMain::on_btnAbout_clicked);
    connect(ui->btnMin, &QPushButton::clicked, this, &DlgMain::on_btnMin_clicked);
    connect(ui->btnClose, &QPushButton::clicked, this, &DlgMain::on_btnClose_clicked);
    connect(ui->btnConnect, &QPushButton::clicked, this, &DlgMain::on_btnConnect_clicked);
    connect(ui->btnViewAll, &QPushButton::clicked, this, &DlgMain::on_btnViewAll_clicked);
    connect(ui->btnSwitchAccount, &QPushButton::clicked, this,
            &DlgMain::on_btnSwitchAccount_clicked);
    connect(ui->btnQuitApp, &QPushButton::clicked, this, &DlgMain::on_btnQuitApp_clicked);
    enableViewAllLogBtn(true);
}

void DlgMain::showUser()
{
    const QString user = ConfigUtil::savedText(ConfigUtil::USERNAME);
    logDisplayInfo(tr("User ") + user + tr(" login successful"));
    ui->labelUserName->setText(session::headerName(user));
    setPlainToolTip(ui->labelUserName, user);
}

void DlgMain::wireSession()
{
    connect(m_session, &Session::beginning, this, [this] {
        m_attempt.begin();
        ui->m_SettingWidge->clearDisable401();
        if (!m_showPromptTemp)
            promptWidge->hidePrompt();
        m_showPromptTemp = false;
    });
    connect(m_session, &Session::changed, m_home, &HomePage::onStatus);
    connect(m_session, &Session::changed, this, &DlgMain::onStatus);
    connect(m_session, &Session::changed, m_tray, [this] { m_tray->setConnected(isConnected()); });
    connect(m_session, &Session::encryptionChanged, m_home, &HomePage::updateQuantumUI);
    connect(m_session, &Session::intranetEntered, m_home, &HomePage::setupMobileConnected);
    connect(m_session, &Session::intranetLeft, m_home, &HomePage::setupMobileDisConnected);
    connect(m_session->traffic(), &TrafficWatch::measured, m_home, &HomePage::showRates);
    connect(m_session->traffic(), &TrafficWatch::unmeasured, m_home, &HomePage::showNoRates);
    connect(m_session->traffic(), &TrafficWatch::tunnelsRestored, promptWidge,
            &WidgetTopPrompt::hidePrompt);
    connect(m_session, &Session::error, this, &DlgMain::showError);
    connect(m_session, &Session::warning, this, &DlgMain::showWarning);
    connect(m_session, &Session::slow, this, &DlgMain::showConnectionSlowWarning);
    connect(m_session, &Session::orderTold, this, &DlgMain::tellOrder);
    connect(m_session, &Session::failed, this, &DlgMain::reportHttpErr);
    connect(m_session, &Session::badGateway, this,
            [this] { m_maintenance->_queryOrchUpgradeWhen502(m_attempt); });
    connect(m_session, &Session::diagnosisWanted, this, [this] { startDiagnosis(TriggerByOrch); });
    connect(m_session, &Session::reconnectDue, this, &DlgMain::on_btnConnect_clicked);
}

void DlgMain::wireExit()
{
    connect(m_tray, &TrayIcon::openWanted, this, &DlgMain::showWindow);
    connect(m_tray, &TrayIcon::exitWanted, this, &DlgMain::quitUI);
    connect(m_session, &Session::refusedByAgent, this, [this] { logout(true, true, false, true); });
    connect(m_session, &Session::invalidDocument, m_exit, &SessionExit::_handle401);
    connect(m_session, &Session::invalidHeartbeat, this, [this](const OrchReply& reply) {
        closeAllPopupDlg();
        m_exit->endSession(invalidSessionEnd(reply, ui->m_SettingWidge->isDisable401()));
    });
    connect(m_exit, &SessionExit::windowWanted, this, &DlgMain::showWindow);
    connect(m_exit, &SessionExit::explaining, m_session, &Session::holdReconnect);
    connect(m_exit, &SessionExit::leaving, this,
            [this](bool notifyOrch, ipc::DisconnectTypeReason reason) {
                m_session->close();
                m_upgrade->close();
                disconnect(notifyOrch, reason);
            });
}

void DlgMain::wireSettings()
{
    WidgetSetting* const page = ui->m_SettingWidge;
    page->setChangePassWidgetVisible(qApp->property(appproperty::kAllowChangePass).toBool());
    connect(page, &WidgetSetting::submitting, promptWidge, &WidgetTopPrompt::hidePrompt);
    connect(page, &WidgetSetting::error, this, &DlgMain::showError);
    connect(page, &WidgetSetting::reportHttpErr, this, &DlgMain::reportHttpErr);
    connect(page, &WidgetSetting::submitting, this, [this] { m_settingsAttempt.begin(); });
    connect(page, &WidgetSetting::badGateway, this,
            [this] { m_maintenance->_queryOrchUpgradeWhen502(m_settingsAttempt); });
    connect(page, &WidgetSetting::passwordChanged, m_exit, &SessionExit::leaveAfterChange);
    connect(page, &WidgetSetting::sessionInvalid, this, [this](SessionEnd end) {
        disconnect(false, ipc::DisConnNormalReason);
        m_exit->endSession(end);
    });
}

void DlgMain::wireDiagnosis()
{
    using Control = DiagnosisControl;
    connect(ui->m_SettingWidge, &WidgetSetting::diagnosisWanted, this,
            [this] { m_diagnosis->startByUser(isConnected()); });
    connect(m_diagnosis, &Control::showKickedoutDialog, this, &DlgMain::onShowKickedoutDialog);
    connect(m_diagnosis, &Control::showLdapChangeDialog, this, &DlgMain::onShowLdapChangeDialog);
    connect(m_diagnosis, &Control::showChangePassDialog, this, &DlgMain::onShowChangePassDialog);
    connect(m_diagnosis, &Control::showOrchUpgradeDialog, this, &DlgMain::onShowOrchUpgradeDialog);
    connect(m_diagnosis, &Control::notifyLogout, this, &DlgMain::logout);
}

void DlgMain::wireNotices()
{
    connect(m_upgrade, &UpgradeWatch::versionChecked, ui->m_AboutWidge, &WidgeAbout::showVersion);
    connect(m_upgrade, &UpgradeWatch::marked, this, &DlgMain::showHideYellowDot);
    connect(ui->m_AboutWidge, &WidgeAbout::newVersionRequested, m_upgrade,
            &UpgradeWatch::popUpgradeDlg);
    connect(m_upgrade, &UpgradeWatch::forcing, this, [this] {
        m_session->refuse(); // nothing connects an outdated client any more
        if (m_session->status() == CONNECTION || m_session->status() == CONNECTING)
            disconnect(true, ipc::DisConnAbnormalReason);
    });
    connect(m_upgrade, &UpgradeWatch::forced, this, [this] { logout(true, false, false, true); });
    connect(m_maintenance, &MaintenanceWatch::error, this, &DlgMain::showError);
    connect(m_maintenance, &MaintenanceWatch::failed, this, &DlgMain::reportHttpErr);

    // The login window leaves the orchestrator's interval behind; it is taken once.
    const qlonglong minutes = qApp->property(appproperty::kOrchUpgradeNoticeTime).toLongLong();
    if (minutes == 0)
        return;
    qApp->setProperty(appproperty::kOrchUpgradeNoticeTime, QVariant());
    m_maintenance->setInterval(minutes);
}

void DlgMain::listen()
{
    // No server means that listening failed at start; the window works without the agent.
    const SingleApp* app = SingleApp::instance();
    if (!app || !app->getLocalServer())
        return;
    connect(app->getLocalServer(), &LocalServer::showWanted, this, &DlgMain::showWindow);
    m_agent = new AgentChannel(app->getLocalServer(), this);
    connect(m_agent, &AgentChannel::said, m_session, &Session::handleAgentText);
    m_agent->onSingleSocketConnect();
    // What waited there during the login is not hidden by the first attempt.
    m_showPromptTemp = !promptWidge->isHidden();
}
