#include "diagnosis/DiagnosisThread.h"

#include "app/Platform.h"
#include "diagnosis/DiagnosisBundle.h"
#include "diagnosis/DiagnosisUpload.h"
#include "diagnosis/WorkFolder.h"
#include "dispatch/DispatchTool.h"
#include "orch/HostIdentity.h"
#include "orch/OrchRequest.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QPointer>

namespace {

// Runs share the work folder. A lock of the process: nothing of it is left when that is killed.
std::mutex& workLock()
{
    static std::mutex lock;
    return lock;
}

constexpr unsigned long kTurnMs = 50; // how soon a waiting run notices its turn, or its end

} // namespace

DiagnosisThread::DiagnosisThread(bool showUI, QDialog* parent) : m_ShowUI(showUI), m_Parent(parent)
{
}

DiagnosisThread::~DiagnosisThread()
{
    end();
}

void DiagnosisThread::startRun(bool connected)
{
    if (isRunning() && !m_over)
        return;
    wait(); // a run whose verdict is out has only to tidy up
    m_over = false;
    m_Connected = connected;
    m_trigger = trigger();
    m_display = DisplayValues::collect();
    start(InheritPriority);
}

DiagnoseTriggerType DiagnosisThread::trigger() const
{
    return DiagnoseTriggerType(property(kTriggerType).toInt());
}

void DiagnosisThread::end()
{
    requestInterruption();
    exit(); // every event loop that the thread waits in, and those that it would begin
    wait();
    const std::lock_guard ended(m_running); // what the run has written is seen from here on
}

void DiagnosisThread::run()
{
    const std::lock_guard running(m_running);
    std::unique_lock turn(workLock(), std::defer_lock);
    while (!turn.try_lock()) {
        if (isInterruptionRequested())
            return;
        msleep(kTurnMs);
    }
    const std::unique_ptr<QNetworkAccessManager> manager(makeAccessManager(nullptr));
    diagnose(*manager);
}

void DiagnosisThread::diagnose(QNetworkAccessManager& manager)
{
    printDpiDiagnostics();
    const WorkFolder folder = WorkFolder::prepare();
    if (folder.isUsable())
        collect(folder);
    const QString name = diagnosis::archiveName(
        Util::getSerial(), platform().now().toString(QStringLiteral("yyyyMMdd_hhmmss")));
    const QString path = diagnosis::makeTarPackage(folder, name);
    if (isInterruptionRequested())
        return;
    DiagnosisUpload upload(manager, {name, path, m_trigger});
    passOn(upload);
    bool passwordChanged = false;
    upload.applyUploadUrl(passwordChanged);
    m_OrchOK = upload.orchOk().value_or(m_OrchOK);
    m_over = true;
    if (isInterruptionRequested() || (!passwordChanged && !m_ShowUI))
        return;
    QMetaObject::invokeMethod(m_Parent, "showDiagnosisResult", Qt::QueuedConnection,
                              Q_ARG(bool, m_NetworkOK), Q_ARG(bool, m_OrchOK),
                              Q_ARG(bool, passwordChanged));
}

void DiagnosisThread::collect(const WorkFolder& folder)
{
    using dispatchtool::Command;
    if (m_Connected) {
        dispatchtool::run(dispatchtool::captureFolderText(folder.path()));
        dispatchtool::run(dispatchtool::commandText(Command::StartEngineCapture));
        dispatchtool::run(dispatchtool::commandText(Command::StartDatapathCapture));
        dispatchtool::writeReport(folder.path(), QStringLiteral("/dispatchStart.log"));
    }
    m_NetworkOK = diagnosis::testNetwork(folder);
    diagnosis::describeDevice(folder);
    if (m_Connected)
        dispatchtool::writeReport(folder.path(), QStringLiteral("/dispatchEnd.log"));
    diagnosis::getAllLogs(folder);
    if (m_Connected) {
        dispatchtool::run(dispatchtool::commandText(Command::StopEngineCapture));
        dispatchtool::run(dispatchtool::commandText(Command::StopDatapathCapture));
    }
}

void DiagnosisThread::printDpiDiagnostics() const
{
    const QStringList lines = displayReport(m_display, DisplayProbes::collect());
    for (const QString& line : lines)
        qDebug().noquote() << line;
}

void DiagnosisThread::passOn(const DiagnosisUpload& upload)
{
    connect(&upload, &DiagnosisUpload::showKickedoutDialog, &upload,
            [this] { ask([this] { emit showKickedoutDialog(); }); });
    connect(&upload, &DiagnosisUpload::showChangePassDialog, &upload,
            [this] { ask([this] { emit showChangePassDialog(); }); });
    connect(&upload, &DiagnosisUpload::showLdapChangeDialog, &upload,
            [this] { ask([this] { emit showLdapChangeDialog(); }); });
    connect(&upload, &DiagnosisUpload::showOrchUpgradeDialog, &upload,
            [this](const OrchUpgradeReply& notice, NoticeType type) {
                ask([this, notice, type] { emit showOrchUpgradeDialog(notice, type); });
            });
    connect(&upload, &DiagnosisUpload::notifyLogout, &upload,
            [this](bool notifyOrch, bool invalidToken, bool isByUser, bool showTip) {
                QMetaObject::invokeMethod(this, "notifyLogout", Qt::QueuedConnection,
                                          Q_ARG(bool, notifyOrch), Q_ARG(bool, invalidToken),
                                          Q_ARG(bool, isByUser), Q_ARG(bool, showTip));
            });
}

// A connection that blocks would never let go of a worker whose question is still on the screen
// when the window goes. This one is left when the thread is to end.
void DiagnosisThread::ask(std::function<void()> question)
{
    QEventLoop answer;
    connect(this, &DiagnosisThread::dealtWith, &answer, &QEventLoop::quit);
    {
        const std::lock_guard lock(m_asking);
        m_question = std::move(question);
    }
    QMetaObject::invokeMethod(this, "putQuestion", Qt::QueuedConnection);
    answer.exec();
}

void DiagnosisThread::putQuestion()
{
    const QPointer<DiagnosisThread> alive(this);
    std::unique_lock lock(m_asking);
    const std::function<void()> question = std::move(m_question);
    lock.unlock();
    question();
    if (alive)
        emit dealtWith();
}
