#pragma once

#include <QObject>
#include <QString>

class DlgUpgrade;
class OrchReply;
class QDialog;
class QTimer;
struct UpgradeDecision;
struct UpgradeOffer;

/// Follows, for one window, whether there is a newer client: reads the service's answers, decides,
/// and runs the dialogs. In the main window it also asks, and asks again. GUI thread.
class UpgradeWatch : public QObject
{
    Q_OBJECT

public:
    /// The dialogs stand over `window`, which owns the watch. `inSession`: it is the main window,
    /// which logs out once a forced upgrade's dialog is closed.
    UpgradeWatch(QDialog* window, bool inSession);

    /// Asks the service. A check that is not by the user arms the next one.
    void checkUpgrade(bool byUser);
    void onNextCheckUpgrade();

    /// Takes an answer and says whether a dialog is to be opened now; see runDialog().
    bool take(const OrchReply& reply);

    /// Offers or forces the newest version modally, whichever take() called for last.
    void runDialog();

    /// The forced dialog for the newest version, modally.
    void forceUpgrade();

    /// runDialog(), unless a dialog is open or the session is over.
    void popUpgradeDlg();

    bool isForced() const { return m_ForceUpgrade; }

    /// Whether one of the dialogs is open.
    bool isDialogOpen() const { return m_dialogOpen; }

    /// The session is over: nothing pops up any more.
    void close();

signals:
    /// A check has ended: `version` and whether it is offered, or the check has `failed`.
    void versionChecked(const QString& version, bool showNew, bool failed);
    /// Whether a new version waits for the user.
    void marked(bool mark);
    /// In the session: a forced upgrade is about to be shown; its dialog has been closed.
    void forcing();
    void forced();

private:
    void upgradeNotify(const OrchReply& reply);
    void upgradeAnswered(const OrchReply& reply);
    void getVersionCheckParam(bool newer, bool ignore, bool& pop, bool& mark, bool& showNew);
    bool isShowUpgradeDialog(const QString& newVersion, bool newer, bool force, bool ignore);
    UpgradeDecision decide(const UpgradeOffer& offer);
    DlgUpgrade* offerDialog();
    void popLater();
    void offerUpgrade();

    QDialog* m_window;
    bool m_inSession;
    DlgUpgrade* m_DlgUpgrade = nullptr;
    QTimer* m_checkUpgradeTimer; ///< until the next automatic check
    bool m_ForceUpgrade = false;
    bool m_newer = false;  ///< the newest version is newer than this client
    bool m_ignore = false; ///< it is not to be offered
    QString m_Des;         ///< its release note
    QString m_NewVersion;
    QString m_upgradeUrl;     ///< where its installer lies
    int m_CheckInterval = 30; ///< minutes
    QString lastCheckVersion; ///< the version that the first counting check offered
    bool m_dialogOpen = false;
    bool m_answeredMeanwhile = false; ///< a further answer came while it was open
    bool m_closed = false;
};
