#include "main/DiagnosisControl.h"

#include "app/NamedTimer.h"
#include "diagnosis/DiagnosisThread.h"
#include "widgets/WidgeDiagnoseResult.h"

#include <QTimer>

namespace {

constexpr int kShownMs = 5000;
constexpr QPoint kPlace(336, 72); ///< of the panel's top, in the middle beside the window's bar

} // namespace

DiagnosisControl::DiagnosisControl(QDialog* window)
    : QObject(window), m_diagnosThread(makeThread(false, window)),
      m_userDiagnosThread(makeThread(true, window)),
      m_DiagnosisResult(new WidgeDiagnoseResult(window)),
      m_closeDiagnoseTimer(
          makeTimer(this, "m_closeDiagnoseTimer", kShownMs, &DiagnosisControl::closeDiagnosis))
{
    m_closeDiagnoseTimer->setSingleShot(true);
    m_DiagnosisResult->hide();
}

// The threads belong to this object, not to a thread of theirs: their ends are its business.
DiagnosisThread* DiagnosisControl::makeThread(bool showUI, QDialog* window)
{
    auto* const thread = new DiagnosisThread(showUI, window);
    thread->setParent(this);
    using Thread = DiagnosisThread;
    using Control = DiagnosisControl;
    connect(thread, &Thread::showKickedoutDialog, this, &Control::showKickedoutDialog);
    connect(thread, &Thread::showChangePassDialog, this, &Control::showChangePassDialog);
    connect(thread, &Thread::showLdapChangeDialog, this, &Control::showLdapChangeDialog);
    connect(thread, &Thread::notifyLogout, this, &Control::notifyLogout);
    connect(thread, &Thread::showOrchUpgradeDialog, this, &Control::showOrchUpgradeDialog);
    return thread;
}

void DiagnosisControl::startByUser(bool connected)
{
    closeDiagnosis();
    m_userDiagnosThread->startRun(connected);
}

void DiagnosisControl::start(DiagnoseTriggerType type, bool connected)
{
    m_diagnosThread->setProperty(DiagnosisThread::kTriggerType, int(type));
    m_diagnosThread->startRun(connected);
}

void DiagnosisControl::showResult(bool networkOK, bool orchOK)
{
    m_DiagnosisResult->setDiagnoseResult(networkOK, orchOK);
    m_DiagnosisResult->adjustSize();
    m_DiagnosisResult->move(kPlace - QPoint(m_DiagnosisResult->width() / 2, 0));
    m_DiagnosisResult->show();
    m_DiagnosisResult->raise();
    m_closeDiagnoseTimer->start();
}

void DiagnosisControl::closeDiagnosis()
{
    m_closeDiagnoseTimer->stop();
    m_DiagnosisResult->close();
}

void DiagnosisControl::end()
{
    m_diagnosThread->end();
    m_userDiagnosThread->end();
}
