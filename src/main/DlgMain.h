#pragma once

#include "app/Attempt.h"
#include "main/ConnState.h"
#include "main/MenuItem.h"
#include "maintenance/MaintenanceNotice.h"
#include "orch/OrchTypes.h"

#include <QDialog>
#include <QPoint>
#include <QVector>

#include <memory>

class AgentChannel;
class DiagnosisControl;
class DlgMainUi;
class DlgQuit;
class HomePage;
class LogModel;
class MaintenanceWatch;
class OrchErrRes;
class OrchReply;
class Session;
class SessionExit;
class TrayIcon;
class UpgradeWatch;
class WidgetTopPrompt;
class dlgStopPrompt;
enum class SessionEnd;
struct FailedDiagnosis;

/// The main window: what the user sees and does once logged in, and the names by which the rest of
/// the program reaches the session. What happens behind it is done by the objects it owns; the
/// window holds the pages and the prompt, and connects the rest:
///
///     Session           states, from the connect button to the disconnect notice
///     HomePage          what the home page shows of it
///     SessionExit       logout and quit, and what the user is told before
///     AgentChannel      the datapath agent's notifications
///     UpgradeWatch      newer clients
///     MaintenanceWatch  maintenance of the orchestrator
///     DiagnosisControl  runs of the network diagnosis
///     TrayIcon          the icon in the desktop's tray
///
/// Its constructor starts the first connection. GUI thread only.
class DlgMain : public QDialog, public ConnState, public MenuItem
{
    Q_OBJECT

public:
    explicit DlgMain(QWidget* parent);
    ~DlgMain() override;

    /// TCP port of the datapath's dispatch service on 127.0.0.1; one for the process.
    static int& dispatchPort;

    bool isConnected() const;

    /// See Session, which does what these say.
    void disconnect(bool notifyOrch, ipc::DisconnectTypeReason reason);
    void reConnect(ipc::DisconnectTypeReason reason);
    void setConnStatus(CONN_STATUS s);

    /// Renders a failed request in the top prompt, or ends the session when it has become
    /// invalid.
    void reportHttpErr(const OrchReply& reply);

public slots:
    // Session
    void on_btnConnect_clicked();
    void logout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI);
    void quitUI();
    void on_btnSwitchAccount_clicked();
    void on_btnQuitApp_clicked();

    // For the diagnosis worker. Its verdict; the next three end the connection and show why
    void showDiagnosisResult(bool networkOK, bool orchOK, bool passwordChanged);
    void onShowKickedoutDialog();
    void onShowLdapChangeDialog();
    void onShowChangePassDialog();
    void onShowOrchUpgradeDialog(const OrchUpgradeReply& notice, NoticeType type);

    // Pages and window
    void on_toolBtnHome_clicked();
    void on_toolBtnSetting_clicked();
    void on_toolBtnLog_clicked();
    void on_toolBtnQuit_clicked();
    void on_btnAbout_clicked();
    void on_btnViewAll_clicked();
    void on_btnClose_clicked();
    void on_btnMin_clicked();
    /// Puts the window away: hidden where a tray can bring it back, minimised elsewhere.
    void reject() override;
    void showWindow();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    // Construction, in order (DlgMain.cpp)
    void buildWindow();
    void setupLogo();
    QPixmap _scalePixelIfExpanded(const QPixmap& picture, const QSize& room) const;
    void createLogModel();
    void connectButtons();
    void showUser();
    void wireSession();
    void wireExit();
    void wireSettings();
    void wireDiagnosis();
    void wireNotices();
    void listen();
    void showRecoveryCodeDlg();

    // Session (DlgMainSession.cpp)
    void beginAttempt(const FailedDiagnosis& diagnosis);
    bool confirmStop();
    void stopConnection(const FailedDiagnosis& diagnosis);
    void cancelAttempt();
    void onStatus(Transition change);
    void tellOrder(bool leave, const QString& text);
    void showConnectionSlowWarning();
    FailedDiagnosis failedDiagnosis() const;
    void rerun(const FailedDiagnosis& diagnosis);
    void startDiagnosis(DiagnoseTriggerType type);
    void explain(SessionEnd end);
    void closeAllPopupDlg();

    // Pages and window (DlgMainPages.cpp)
    void showMenu(MENU_ITEM m);
    QVector<QWidget*> pageWidgets(MENU_ITEM m) const;
    void enableViewAllLogBtn(bool enable);
    void showHideYellowDot(bool show);
    void showError(const QString& text);
    void showWarning(const QString& text);

    std::unique_ptr<DlgMainUi> ui;
    WidgetTopPrompt* promptWidge;
    Session* m_session;
    HomePage* m_home;
    SessionExit* m_exit;
    UpgradeWatch* m_upgrade;
    MaintenanceWatch* m_maintenance;
    DiagnosisControl* m_diagnosis;
    AgentChannel* m_agent = nullptr;
    TrayIcon* m_tray = nullptr;
    LogModel* m_LogModel = nullptr;
    OrchErrRes* m_OrchErrRes;
    DlgQuit* m_PQuitDlg = nullptr;
    dlgStopPrompt* m_PStopPrompt = nullptr;
    bool m_showPromptTemp = false; ///< the next attempt leaves the prompt in place
    QString aboutBtnCSS; ///< the about button's style sheet while no new version is offered
    QPoint m_DragPos;
    Attempt m_attempt;         ///< of the session, for what is asked beside it
    Attempt m_settingsAttempt; ///< of a change on the settings page
};
