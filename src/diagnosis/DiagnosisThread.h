#pragma once

#include "diagnosis/DisplayReport.h"
#include "maintenance/MaintenanceNotice.h"
#include "orch/OrchTypes.h"

#include <QDialog>
#include <QThread>

#include <atomic>
#include <functional>
#include <mutex>

class DiagnosisUpload;
class QNetworkAccessManager;
class WorkFolder;

/// One diagnosis after another, each on this worker thread: collects what support needs into a
/// bundle, brings it to the orchestrator and tells the window what was found.
///
///     another run under way: wait for its end
///        |
///     display report -> work folder -> captures on -> reachability -> device -> logs
///        -> captures off -> archive -> upload -> verdict
///
/// Without a work folder there is nothing to collect, and the upload tells the orchestrator so.
/// The object belongs to the GUI thread, and so do all calls.
class DiagnosisThread : public QThread
{
    Q_OBJECT

public:
    /// The starter's mark (DiagnoseTriggerType), as a property of this object.
    static constexpr char kTriggerType[] = "DiagnoseTriggerType";

    /// `showUI`: the verdict is always shown, not only that the password has been changed.
    /// `parent` gets the verdict, by its function showDiagnosisResult(bool networkOK, bool orchOK,
    /// bool passwordChanged), and outlives this object.
    DiagnosisThread(bool showUI, QDialog* parent);
    ~DiagnosisThread() override;

    /// Starts a run; nothing while one is under way. `connected`: the tunnel stands, so that
    /// captures are taken.
    void startRun(bool connected);

    /// Breaks off a run and waits for the thread: programs that it runs are killed, requests
    /// aborted, and what it wants to show is dropped, also when it is being shown. Takes less than
    /// two seconds, whatever the thread is doing.
    void end();

signals:
    // On the GUI thread; the worker waits until who is connected has dealt with it.
    void showKickedoutDialog();
    void showChangePassDialog();
    void showLdapChangeDialog();
    /// For DlgMain::logout(); not waited for.
    void notifyLogout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI);
    void showOrchUpgradeDialog(const OrchUpgradeReply& notice, NoticeType type);
    /// For the worker alone: a question of its has been dealt with.
    void dealtWith();

protected:
    void run() override;

private:
    void diagnose(QNetworkAccessManager& manager);
    void collect(const WorkFolder& folder);
    void printDpiDiagnostics() const;
    void passOn(const DiagnosisUpload& upload);
    void ask(std::function<void()> question);
    Q_INVOKABLE void putQuestion(); ///< on the GUI thread
    DiagnoseTriggerType trigger() const;

    const bool m_ShowUI;
    bool m_Connected = false;
    bool m_NetworkOK = false; ///< of the last run: a target answered
    bool m_OrchOK = true;     ///< the orchestrator answered the last upload that found out
    QDialog* const m_Parent;
    DisplayValues m_display;
    DiagnoseTriggerType m_trigger = TriggerByClient;
    std::mutex m_running;            ///< held by a run
    std::atomic<bool> m_over{false}; ///< all of a run but its end is done
    std::mutex m_asking;             ///< guards m_question
    std::function<void()> m_question;
};
