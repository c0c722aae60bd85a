#pragma once

#include "main/ConnectReply.h"
#include "main/ConnState.h"
#include "main/FailedDiagnosis.h"
#include "main/FlowRates.h"
#include "orch/HttpErrorText.h"
#include "orch/OrchTypes.h"

#include <QDateTime>
#include <QDialog>
#include <QNetworkReply>
#include <QPoint>
#include <QSemaphore>
#include <QStringList>
#include <QSystemTrayIcon>

#include <memory>

class DlgMainUi;
class DlgUpgrade;
class DlgQuit;
class dlgStopPrompt;
class LogModel;
class OrchErrRes;
struct FilterDocument;
struct HeartbeatOrder;
struct OrchRequest;
class QAction;
class QMenu;
class QNetworkAccessManager;

class QTimer;
class WidgetTopPrompt;

/// The main window: what the user sees of the session, and the controller that owns it. Its
/// constructor starts the first connection. GUI thread only.
///
/// One attempt, step by step; each step's source file is named:
///
///     connect button        DlgMainSession    CONNECTING
///     connect request       DlgMainConnect    session values kept, cpeagent.conf written
///     IP filter lists       DlgMainFilter     filterConfig.conf written
///     datapath start        DlgMainDatapath   up to 90 s for the agent
///     agent notifications   DlgMainAgent      port, then ready: CONNECTION
///     every 3 s             DlgMainStatus     rates, tunnels; DlgMainHeartbeat
///     stop, reconnect       DlgMainSession    the orchestrator is told
///     end of the session    DlgMainLogout     the program starts anew, or ends
///
/// The states are ConnState's; a cancelled attempt ends when its pending step answers.
class DlgMain : public QDialog, public ConnState
{
    Q_OBJECT

public:
    enum MENU_ITEM {
        MENU_HOME = 0,
        MENU_SETTING = 1,
        MENU_LOG = 2,
        MENU_ABOUT = 3,
        MENU_QUIT = 4,
        MENU_INTRANET = 5,
        MENU_END = 6
    };

    explicit DlgMain(QWidget* parent);
    ~DlgMain() override;

    /// TCP port of the datapath's dispatch service on 127.0.0.1; one for the process.
    static int& dispatchPort;

    bool isConnected() const;

    /// Ends the connection. With `notifyOrch`, and while connected, the orchestrator is told with
    /// `reason` and the state becomes DISCONNECTION when it has answered; otherwise at once.
    void disconnect(bool notifyOrch, ipc::DisconnectTypeReason reason);

    /// Ends the connection and starts a new attempt once the orchestrator has answered.
    void reConnect(ipc::DisconnectTypeReason reason);

    /// Renders a failed request in the top prompt, or ends the session when it has become
    /// invalid.
    void reportHttpErr(const QByteArray& body, QNetworkReply* reply);

public slots:
    // Session
    void on_btnConnect_clicked();
    void logout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI);
    void quitUI();
    void on_btnSwitchAccount_clicked();
    void on_btnQuitApp_clicked();
    void netReply(QNetworkReply* r);

    // For the diagnosis worker: each ends the connection and shows why
    void onShowKickedoutDialog();
    void onShowLdapChangeDialog();
    void onShowChangePassDialog();

    // Upgrade
    void upgradeNotify(QNetworkReply* reply);
    void onNextCheckUpgrade();
    void popUpgradeDlg();

    // Pages and window
    void on_toolBtnHome_clicked();
    void on_toolBtnSetting_clicked();
    void on_toolBtnLog_clicked();
    void on_toolBtnQuit_clicked();
    void on_btnAbout_clicked();
    void on_btnViewAll_clicked();
    void on_btnClose_clicked();
    void on_btnMin_clicked();
    void showWindow();
    void activeTray(QSystemTrayIcon::ActivationReason reason);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    /// The window's property that is true while a reconnect waits for the disconnect notice's
    /// answer.
    static constexpr char kReconnect[] = "reconnect";

    // Construction, in order (DlgMain.cpp)
    void takeNoticeInterval();
    void buildWindow();
    void createLogModel();
    void connectButtons();
    void initSysTray();
    void initMobileDetectUI();
    void showUser();
    void createTimers();
    QTimer* makeTimer(const char* name, int milliseconds, void (DlgMain::*slot)());
    void createNetwork();
    void createUpgrade();

    // Session (DlgMainSession.cpp)
    void setConnStatus(CONN_STATUS s);
    void changeStartBtnStatus(CONN_STATUS s);
    void enableConnectButton(bool enable);
    void onStartBtnAnimTick();
    void beginAttempt(const FailedDiagnosis& diagnosis);
    bool confirmStop();
    void stopConnection(const FailedDiagnosis& diagnosis);
    void cancelAttempt();
    void stopForUser();
    void abandonAttempt();
    bool finishCancelConnect();
    void enterConnection();
    void clearRates(const QString& value);
    void postDisconnectNotice(ipc::DisconnectTypeReason reason);
    void sendForStep(const OrchRequest& request);
    void disconnectNoticeAnswered(QNetworkReply* reply);

    // Ends of the session (DlgMainLogout.cpp)
    void _handle401(const QByteArray& document);
    void endSession(SessionEnd end);
    void explainAndLogout(SessionEnd end);
    void explainEnd(SessionEnd end);
    void closeAllPopupDlg();

    // Diagnosis (DlgMainDiagnosis.cpp)
    FailedDiagnosis failedDiagnosis() const;
    void rerun(const FailedDiagnosis& diagnosis);
    void startDiagnosis(DiagnoseTriggerType type);

    // Pages and window (DlgMainPages.cpp)
    void showMenu(MENU_ITEM m);
    QVector<QWidget*> pageWidgets(MENU_ITEM m) const;
    void enableViewAllLogBtn(bool enable);
    void showError(const QString& text);
    void showWarning(const QString& text);

    // Upgrade and maintenance notices (DlgMainNotices.cpp)
    void upgradeAnswered(const QByteArray& body);
    void upgradeFailed(const QByteArray& body, QNetworkReply* reply);
    void offerUpgrade();
    void forceUpgrade();
    void showHideYellowDot(bool show);
    void onFocusReturn();
    void _queryOrchUpgrade();
    void onMaintenanceNotice(const QByteArray& body);
    void _queryOrchUpgradeWhen502();

    // Connect request (DlgMainConnect.cpp)
    void validateAndConnect(ipc::DisconnectTypeReason reason);
    void onConnectReply(const QByteArray& body);
    void onConnectFailed(const QByteArray& body, QNetworkReply* reply);
    bool saveConfig(const ConnectReply& reply);
    void checkAndClearDB();

    // IP filter lists (DlgMainFilter.cpp)
    void _getCommServIp();
    void onLookupFinished();
    void _checkNeedDownloadIpFilter(const ConnectReply& reply);
    void getBlackAndWhiteList(const QString& url);
    void filterAnswered(QNetworkReply* reply);
    void writeFilterLog(const FilterDocument& filter);
    bool saveFilter(const QByteArray& document);
    void filterInPlace();

    // Datapath process (DlgMainDatapath.cpp)
    int startDP();
    void stopDP();
    void logConnectLine(const QString& mode);
    void onDatapathVanished();
    void onWaitDpFailed();

    // Agent notifications (DlgMainAgent.cpp)
    void onSingleSocketConnect();
    void onSingleSocketRead();
    void handleAgentText(const QString& text);
    void agentReady();
    bool dispatchInit();

    // Heartbeat (DlgMainHeartbeat.cpp)
    void heartBeat();
    void heartBeatAnswered(QNetworkReply* reply, int attempt);
    void heartBeatSucceeded(const QByteArray& body, bool diagnosisWanted);
    void takeEncryptionFlags(bool quantum, bool pqc);
    void _handleHeartBeatActions(const HeartbeatOrder& order);
    void tellOrder(const HeartbeatOrder& order, const QString& text);
    void _logOrchReason(const HeartbeatOrder& order);
    void heartBeatFailed(const HttpFailure& failure, bool current);
    void onHeartBeatSendFailed();

    // Status display (DlgMainStatus.cpp)
    void onStatusNotify();
    void statusPollFailed(int result);
    void showTunnelHealth(TunnelHealth health);
    void showRates(bool measured);
    void setupMobileConnected();
    void setupMobileDisConnected();
    void setMobileDetectWidgetVisible(bool visible);
    void updateQuantumUI();
    void showConnectionSlowWarning();
    void onCheckIp();

    std::unique_ptr<DlgMainUi> ui;
    WidgetTopPrompt* promptWidge = nullptr;
    MENU_ITEM m_curMenuItem = MENU_HOME;
    CONN_STATUS m_curStatus = DISCONNECTION;
    CONN_STEP m_curStep = CONNECT_ORCH;
    QPoint m_DragPos;
    LogModel* m_LogModel = nullptr;
    QSystemTrayIcon* m_Tray = nullptr;
    QMenu* m_Menu = nullptr;
    QAction* m_ActExit = nullptr;
    QAction* m_ActShowWin = nullptr;
    bool m_FirstAutoConnect = false; ///< until the first attempt starts
    QTimer* m_StartBtnAnimTimer = nullptr;
    QTimer* m_WaitAgentTimer = nullptr;
    QTimer* m_StatCountTimer = nullptr;
    QTimer* m_ConnectSlowWarningTimer = nullptr;
    QTimer* m_CheckIpTimer = nullptr;
    QTimer* m_HeartBeatSendFailedTimer = nullptr;
    QNetworkAccessManager* m_NetMgr = nullptr; ///< disconnect notice and filter download only
    QNetworkReply* m_stepReply = nullptr;      ///< what m_curStep waits for
    OrchErrRes* m_OrchErrRes;
    volatile bool m_ClickCancelConnecting = false; ///< the running attempt is to be abandoned
    bool m_MouseOverConnect = false;
    QWidget* m_focusLent = nullptr; ///< got the connect button's keyboard focus; only compared
    DlgQuit* m_PQuitDlg = nullptr;
    dlgStopPrompt* m_PStopPrompt = nullptr;
    QString m_curClientIp; ///< the client's own address at the last attempt
    int m_attempt = 0;     ///< counts the attempts; answers that name another one come too late
    bool m_isReconnect = false;
    bool m_showPromptTemp = false;     ///< the next attempt leaves the prompt in place
    bool m_sessionOver = false;        ///< a logout or quit is under way
    bool m_explainingEnd = false;      ///< the reason for the end of the session is being shown
    bool m_isChPwPromptShowed = false; ///< that reason is a changed password
    ipc::DisconnectTypeReason m_connect2OrchReason = ipc::DisConnNormalReason;
    QString aboutBtnCSS; ///< the about button's style sheet while no new version is offered
    QDateTime m_lastReqOrchUpgradeTime;
    qlonglong m_reqOrchInterval = 60; ///< minutes between maintenance queries on focus return

    // Upgrade
    DlgUpgrade* m_DlgUpgrade = nullptr;
    QTimer* m_checkUpgradeTimer = nullptr; ///< until the next automatic check
    bool m_ForceUpgrade = false;
    QString m_Des; ///< release note of the newest version
    QString m_NewVersion;
    QString m_upgradeUrl;
    int m_CheckInterval = 30; ///< minutes
    QString lastCheckVersion; ///< the version that the first counting check offered
    bool m_upgradeDialogOpen = false;
    bool m_popUpgradeAgain = false;    ///< a further answer came while it was open
    bool m_noticeQueryRunning = false; ///< a maintenance notice is asked for or shown

    // Values of the connect reply, kept until the next one
    QString m_HeartbeatUrl;
    int m_HeartbeatInterval = 10; ///< seconds
    QString m_AssignIP;
    QString m_OrchDomain;
    bool m_mobileDetect = false; ///< intranet mode
    bool m_EnableQuantum = false;
    bool m_EnablePQC = false;

    // IP filter lists
    QByteArray m_FilterJsonRaw; ///< the document received last, cleaned
    QStringList m_commServHost;
    QStringList m_commServIp;
    QSemaphore m_resolveSem; ///< lookups finished; only ever read, never waited on

    // Datapath, heartbeat, status
    int m_restartDPCount = 0;
    qint64 m_LastHtTimeStamp = 0; ///< last heartbeat, seconds since the epoch
    bool m_HeartBeatSendFailed = false;
    bool m_NetworkFailure = false; ///< the loss of all tunnels is being shown
    int m_StatusFailTime = 0;      ///< consecutive failed polls
    FlowRates m_flow;
    long long m_ConnectSuccessStamp = 0; ///< ms since the epoch
};
