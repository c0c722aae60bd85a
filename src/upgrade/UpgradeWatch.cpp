#include "upgrade/UpgradeWatch.h"

#include "app/GreyMaskForUkui.h"
#include "app/LogMarker.h"
#include "app/NamedTimer.h"
#include "app/Platform.h"
#include "orch/OrchReply.h"
#include "upgrade/DlgForceUpgrade.h"
#include "upgrade/DlgUpgrade.h"
#include "upgrade/UpgradePolicy.h"
#include "widgets/DialogFrame.h"

#include <QPointer>

#include <utility>

namespace {

constexpr int kMinuteMs = 60000;

} // namespace

UpgradeWatch::UpgradeWatch(QDialog* window, bool inSession)
    : QObject(window), m_window(window), m_inSession(inSession),
      m_checkUpgradeTimer(
          makeTimer(this, "m_checkUpgradeTimer", 0, &UpgradeWatch::onNextCheckUpgrade))
{
    m_checkUpgradeTimer->setSingleShot(true);
}

// Made when it is first needed, which is after the window's first picture.
DlgUpgrade* UpgradeWatch::offerDialog()
{
    if (!m_DlgUpgrade) {
        m_DlgUpgrade = new DlgUpgrade(m_window, m_inSession);
        connect(m_DlgUpgrade, &DlgUpgrade::checkAnswered, this, &UpgradeWatch::upgradeNotify);
    }
    return m_DlgUpgrade;
}

void UpgradeWatch::close()
{
    m_closed = true;
}

// Checks

void UpgradeWatch::checkUpgrade(bool byUser)
{
    offerDialog()->checkUpgrade(byUser);
}

void UpgradeWatch::onNextCheckUpgrade()
{
    checkUpgrade(false);
}

void UpgradeWatch::upgradeNotify(const OrchReply& reply)
{
    if (reply.answered()) {
        upgradeAnswered(reply);
    } else {
        logDisplayInfo(tr("Failed to check, please try again."));
        logDisplayDebug(QStringLiteral("Error Info: ") + reply.logText());
        emit versionChecked(QString(), false, true);
    }
    if (!reply.userData.toBool())
        m_checkUpgradeTimer->start(m_CheckInterval * kMinuteMs);
}

void UpgradeWatch::upgradeAnswered(const OrchReply& reply)
{
    if (!take(reply))
        return;
    if (m_dialogOpen) {
        m_answeredMeanwhile = true; // decided anew once the user has answered
        return;
    }
    popLater();
}

// A dialog is not opened from within the reply's handler.
void UpgradeWatch::popLater()
{
    logDisplayInfo(tr("Discover a new version ") + m_NewVersion);
    QTimer::singleShot(0, this, &UpgradeWatch::popUpgradeDlg);
}

bool UpgradeWatch::take(const OrchReply& reply)
{
    const UpgradeReply answer = UpgradeReply::fromJson(reply.json(), platform().isChinese());
    m_Des = answer.note;
    m_NewVersion = answer.version;
    m_CheckInterval = answer.checkingPeriod;
    m_upgradeUrl = answer.url;
    m_ForceUpgrade = answer.isForced();
    m_newer = answer.isNewer();
    m_ignore = answer.ignore;
    if (!m_inSession)
        return isShowUpgradeDialog(m_NewVersion, m_newer, m_ForceUpgrade, m_ignore);

    bool pop = false;
    bool mark = false;
    bool showNew = false;
    getVersionCheckParam(m_newer, m_ignore, pop, mark, showNew);
    qDebug("Finish checking for updates: forceUpgrade %d, showNewVersion %d, checkInterval %d, "
           "ignore %d, downloadUrl %s",
           m_ForceUpgrade, showNew, m_CheckInterval, m_ignore, qUtf8Printable(m_upgradeUrl));
    emit versionChecked(m_NewVersion, showNew, false);
    emit marked(mark);
    return pop;
}

void UpgradeWatch::getVersionCheckParam(bool newer, bool ignore, bool& pop, bool& mark,
                                        bool& showNew)
{
    const UpgradeDecision decision = decide({m_NewVersion, newer, m_ForceUpgrade, ignore});
    pop = decision.pop;
    mark = decision.mark;
    showNew = decision.showNew;
}

bool UpgradeWatch::isShowUpgradeDialog(const QString& newVersion, bool newer, bool force,
                                       bool ignore)
{
    return decide({newVersion, newer, force, ignore}).pop;
}

UpgradeDecision UpgradeWatch::decide(const UpgradeOffer& offer)
{
    const UpgradeDecision decision =
        decideUpgrade(offer, UpgradeChoices::load(), upgradeToday(), lastCheckVersion.isEmpty());
    for (const QString& line : decision.displayLog)
        logDisplayDebug(line);
    if (!decision.log.isEmpty())
        qDebug().noquote() << decision.log;
    if (decision.counts && lastCheckVersion.isEmpty())
        lastCheckVersion = offer.version;
    return decision;
}

// Dialogs

void UpgradeWatch::popUpgradeDlg()
{
    if (m_closed || m_dialogOpen)
        return;
    const QPointer<UpgradeWatch> alive(this);
    runDialog();
    if (!alive)
        return;
    const bool again = std::exchange(m_answeredMeanwhile, false) &&
                       isShowUpgradeDialog(m_NewVersion, m_newer, m_ForceUpgrade, m_ignore);
    if (again)
        popLater();
}

void UpgradeWatch::runDialog()
{
    const QPointer<UpgradeWatch> alive(this);
    m_dialogOpen = true;
    if (m_ForceUpgrade)
        forceUpgrade();
    else
        offerUpgrade();
    if (alive)
        m_dialogOpen = false;
}

void UpgradeWatch::offerUpgrade()
{
    DlgUpgrade* const dialog = offerDialog();
    dialog->setUrl(m_upgradeUrl);
    dialog->setSettings(m_Des, m_NewVersion, false);
    GreyMaskForUkui::cover(m_window, dialog);
    const QPointer<UpgradeWatch> alive(this);
    const QString offered = m_NewVersion;
    const int result = dialog->exec();
    if (!alive || result != DlgUpgrade::kSkipped || offered != m_NewVersion)
        return;
    emit versionChecked(m_NewVersion, true, false);
    emit marked(false);
}

void UpgradeWatch::forceUpgrade()
{
    if (m_inSession)
        emit forcing();
    const QPointer<UpgradeWatch> alive(this);
    auto* dialog = new DlgForceUpgrade(m_window);
    dialog->setNoteText(m_Des);
    dialog->setNewVersion(m_NewVersion);
    dialog->setLogoutAfterClose(m_inSession);
    dialog->setUrl(m_upgradeUrl);
    runAndDelete(dialog);
    if (alive && m_inSession)
        emit forced();
}
