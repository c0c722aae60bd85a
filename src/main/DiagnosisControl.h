#pragma once

#include "maintenance/MaintenanceNotice.h"
#include "orch/OrchTypes.h"

#include <QObject>

class DiagnosisThread;
class QDialog;
class QTimer;
class WidgeDiagnoseResult;

/// The diagnoses of a main window: those that the user starts, whose result is shown in a panel for
/// a while, and those that the orchestrator asks for or that are repeated, which go unseen. GUI
/// thread.
class DiagnosisControl : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it and has the function that DiagnosisThread gives the verdict to.
    explicit DiagnosisControl(QDialog* window);

    /// Start a run; nothing while one of the same kind is under way. `connected`: the tunnel
    /// stands.
    void startByUser(bool connected);
    void start(DiagnoseTriggerType type, bool connected);

    /// Shows the findings, for five seconds.
    void showResult(bool networkOK, bool orchOK);
    void closeDiagnosis();

    /// Breaks off what is under way.
    void end();

signals:
    // See DiagnosisThread
    void showKickedoutDialog();
    void showChangePassDialog();
    void showLdapChangeDialog();
    void notifyLogout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI);
    void showOrchUpgradeDialog(const OrchUpgradeReply& notice, NoticeType type);

private:
    DiagnosisThread* makeThread(bool showUI, QDialog* window);

    DiagnosisThread* m_diagnosThread;     ///< for the orchestrator, and repeated runs
    DiagnosisThread* m_userDiagnosThread; ///< for the settings page
    WidgeDiagnoseResult* m_DiagnosisResult;
    QTimer* m_closeDiagnoseTimer;
};
