#include "main/DlgMain.h"

#include "app/ConfigUtil.h"
#include "app/Log.h"
#include "app/LogMarker.h"
#include "app/LogModel.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "app/SingleApp.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "main/DlgMainUi.h"
#include "main/SessionRules.h"
#include "monitor/MonitorDatapath.h"
#include "orch/OrchErrRes.h"
#include "upgrade/DlgUpgrade.h"
#include "widgets/Style.h"
#include "widgets/WidgeAbout.h"
#include "widgets/WidgetTopPrompt.h"

#include <QAction>
#include <QCoreApplication>
#include <QLabel>
#include <QListView>
#include <QLocalServer>
#include <QMenu>
#include <QNetworkAccessManager>
#include <QPainterPath>
#include <QPushButton>
#include <QRegion>
#include <QTimer>
#include <QToolButton>

int& DlgMain::dispatchPort = dispatch::port;

DlgMain::DlgMain(QWidget* parent)
    : QDialog(parent), ui(std::make_unique<DlgMainUi>(this)),
      m_OrchErrRes(OrchErrRes::getInstance())
{
    m_lastReqOrchUpgradeTime = platform().now();
    takeNoticeInterval();
    buildWindow();
    createLogModel();
    connectButtons();
    initSysTray();
    initMobileDetectUI();
    showUser();
    m_FirstAutoConnect = true;
    createTimers();
    createNetwork();
    showMenu(MENU_HOME);
    ui->btnConnect->setFocus();
    checkAndClearDB();
    on_btnConnect_clicked();
    aboutBtnCSS = ui->btnAbout->styleSheet();
    setMobileDetectWidgetVisible(false);
    createUpgrade();
    connect(monitor::MonitorDatapath::instance(), &monitor::MonitorDatapath::datapathVanished, this,
            &DlgMain::onDatapathVanished);
}

DlgMain::~DlgMain()
{
    monitor::MonitorDatapath::instance()->stop();
    Log::setLogModel(nullptr);
    OrchErrRes::release();
}

// The login window leaves the orchestrator's interval behind; it is taken once.
void DlgMain::takeNoticeInterval()
{
    const qlonglong minutes = qApp->property(appproperty::kOrchUpgradeNoticeTime).toLongLong();
    if (minutes == 0)
        return;
    qApp->setProperty(appproperty::kOrchUpgradeNoticeTime, QVariant());
    m_reqOrchInterval = minutes;
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

    promptWidge = new WidgetTopPrompt(this);
    m_OrchErrRes->setCustomerId(ConfigUtil::getvalue(ConfigUtil::CUSTOMERID, QString()).toString());
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
    connect(ui->toolBtnHome, &QToolButton::clicked, this, &DlgMain::on_toolBtnHome_clicked);
    connect(ui->toolBtnSetting, &QToolButton::clicked, this, &DlgMain::on_toolBtnSetting_clicked);
    connect(ui->toolBtnLog, &QToolButton::clicked, this, &DlgMain::on_toolBtnLog_clicked);
    connect(ui->toolBtnQuit, &QToolButton::clicked, this, &DlgMain::on_toolBtnQuit_clicked);
    connect(ui->btnAbout, &QPushButton::clicked, this, &DlgMain::on_btnAbout_clicked);
    connect(ui->btnMin, &QPushButton::clicked, this, &DlgMain::on_btnMin_clicked);
    connect(ui->btnClose, &QPushButton::clicked, this, &DlgMain::on_btnClose_clicked);
    connect(ui->btnConnect, &QPushButton::clicked, this, &DlgMain::on_btnConnect_clicked);
    connect(ui->btnViewAll, &QPushButton::clicked, this, &DlgMain::on_btnViewAll_clicked);
    connect(ui->btnSwitchAccount, &QPushButton::clicked, this,
            &DlgMain::on_btnSwitchAccount_clicked);
    connect(ui->btnQuitApp, &QPushButton::clicked, this, &DlgMain::on_btnQuitApp_clicked);
    ui->btnConnect->installEventFilter(this);
    ui->btnConnect->setAttribute(Qt::WA_Hover);
    enableViewAllLogBtn(true);
}

void DlgMain::initSysTray()
{
    m_Tray = new QSystemTrayIcon(windowIcon(), this);
    m_Tray->setObjectName(QStringLiteral("m_Tray"));
    m_Tray->setToolTip(QLatin1String(product::kName));
    m_Menu = new QMenu(this);
    m_Menu->setObjectName(QStringLiteral("m_Menu"));
    m_ActShowWin =
        m_Menu->addAction(tr("Open ") + QLatin1String(product::kName), this, &DlgMain::showWindow);
    m_ActShowWin->setObjectName(QStringLiteral("m_ActShowWin"));
    m_ActExit = m_Menu->addAction(tr("Exit"), this, &DlgMain::quitUI);
    m_ActExit->setObjectName(QStringLiteral("m_ActExit"));
    m_Tray->setContextMenu(m_Menu);
    connect(m_Tray, &QSystemTrayIcon::activated, this, &DlgMain::activeTray);
    m_Tray->setVisible(true);
}

void DlgMain::initMobileDetectUI()
{
    ui->m_mobileDetectLabel->setText(tr("Running in\nIntranet Mode"));
}

void DlgMain::showUser()
{
    const QString user = ConfigUtil::getvalue(ConfigUtil::USERNAME, QString()).toString();
    logDisplayInfo(tr("User ") + user + tr(" login successful"));
    ui->labelUserName->setText(session::headerName(user));
    ui->labelUserName->setToolTip(user);
}

QTimer* DlgMain::makeTimer(const char* name, int milliseconds, void (DlgMain::*slot)())
{
    auto* timer = new QTimer(this);
    timer->setObjectName(QLatin1String(name));
    timer->setInterval(milliseconds);
    connect(timer, &QTimer::timeout, this, slot);
    return timer;
}

void DlgMain::createTimers()
{
    m_StartBtnAnimTimer = makeTimer("m_StartBtnAnimTimer", 400, &DlgMain::onStartBtnAnimTick);
    m_WaitAgentTimer = makeTimer("m_WaitAgentTimer", 90000, &DlgMain::onWaitDpFailed);
    m_StatCountTimer = makeTimer("m_StatCountTimer", 3000, &DlgMain::onStatusNotify);
    m_ConnectSlowWarningTimer =
        makeTimer("m_ConnectSlowWarningTimer", 40000, &DlgMain::showConnectionSlowWarning);
    m_CheckIpTimer = makeTimer("m_CheckIpTimer", 5000, &DlgMain::onCheckIp);
    m_HeartBeatSendFailedTimer =
        makeTimer("m_HeartBeatSendFailedTimer", 30000, &DlgMain::onHeartBeatSendFailed);
}

void DlgMain::createNetwork()
{
    m_NetMgr = new QNetworkAccessManager(this);
    m_NetMgr->setTransferTimeout(40000);
    connect(m_NetMgr, &QNetworkAccessManager::finished, this, &DlgMain::netReply);

    // No server means that listening failed at start; the window works without the agent.
    const SingleApp* app = SingleApp::instance();
    if (app && app->getLocalServer()) {
        connect(app->getLocalServer(), &QLocalServer::newConnection, this,
                &DlgMain::onSingleSocketConnect);
        onSingleSocketConnect();
    }
}

void DlgMain::createUpgrade()
{
    m_checkUpgradeTimer = makeTimer("m_checkUpgradeTimer", 0, &DlgMain::onNextCheckUpgrade);
    m_checkUpgradeTimer->setSingleShot(true);
    m_DlgUpgrade = new DlgUpgrade(this, true);
    connect(m_DlgUpgrade, &DlgUpgrade::checkAnswered, this, &DlgMain::upgradeNotify);
    connect(ui->m_AboutWidge, &WidgeAbout::newVersionRequested, this, &DlgMain::popUpgradeDlg);
    onNextCheckUpgrade();
}
