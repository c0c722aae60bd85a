#pragma once

#include "app/Attempt.h"
#include "orch/OrchReply.h"

#include <QDateTime>
#include <QObject>
#include <QString>

#include <functional>

class QWidget;
struct OrchUpgradeReply;

/// Asks, for one window, whether the orchestrator is under maintenance, and shows its notices: as a
/// step of every login, after a reply with HTTP status 502, and when the main window takes the
/// focus again. GUI thread.
class MaintenanceWatch : public QObject
{
    Q_OBJECT

public:
    /// Notices are shown over `window`, which owns the watch.
    explicit MaintenanceWatch(QWidget* window);

    /// The step of a login: a notice ahead stops it once, anything else lets it go on with `next`.
    /// `attempt` is the login's: what belongs to an earlier one is dropped.
    void _queryOrchUpgrade(const Attempt& attempt, const std::function<void()>& next);

    /// After a 502: one in progress is shown, any other answer is the error 6046, an orchestrator
    /// that does not know the query gives 6038.
    void _queryOrchUpgradeWhen502(const Attempt& attempt);

    /// The main window has the focus: asks again when the interval has passed.
    void onFocusReturn();

    /// Minutes between two such queries; 60 until it is set, and each answer sets it.
    void setInterval(qlonglong minutes);

signals:
    /// The orchestrator's interval between two queries, in minutes.
    void noticeTime(qlonglong minutes);
    /// A query has not been answered in time; the login goes on.
    void slow();
    /// The check has come to its end, before anything is shown: buttons may be restored.
    void done();
    void error(const QString& text);
    /// The query itself has failed and is to be rendered.
    void failed(const OrchReply& reply);

private:
    void onLoginNotice(const OrchReply& reply, const std::function<void()>& next);
    void onLoginQueryFailed(const OrchReply& reply, const std::function<void()>& next);
    void onNoticeAfter502(const OrchReply& reply);
    void onQueryAfter502Failed(const OrchReply& reply);
    void _queryOrchUpgrade();
    void onNotice(const OrchReply& reply);

    QWidget* m_window;
    Attempt m_alive;
    QDateTime m_lastReqOrchUpgradeTime;
    qlonglong m_reqOrchInterval = 60; ///< minutes between queries on focus return
    bool m_queryRunning = false;      ///< a notice is asked for or shown
};
