#pragma once

#include "orch/HttpErrorText.h"
#include "orch/OrchTypes.h"

#include <QObject>

class OrchReply;
class QDialog;

/// How a session ends for good: the orchestrator's word or the user's wish, what the user is told,
/// and the program's end or new start. Whatever else would end it meanwhile, it is explained once
/// and left once. GUI thread.
class SessionExit : public QObject
{
    Q_OBJECT

public:
    /// `window` is closed by the exit and owns it.
    explicit SessionExit(QDialog* window);

    /// The end is being explained, or has come: nothing new begins.
    bool isUnderWay() const { return m_sessionOver || m_explainingEnd; }

    /// The way out that a document with "code" 401 demands.
    void _handle401(const OrchReply& document);
    void endSession(SessionEnd end);

    /// The user has changed the password: tells so and logs out.
    void leaveAfterChange();

    /// Tells why the session ends, modally, without ending it.
    void explainEnd(SessionEnd end);

    /// Takes the connection down and starts the program anew in its login window.
    void logout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI);
    void quitUI();

signals:
    /// The window is to be seen.
    void windowWanted();
    /// Before an explanation: no reconnect begins behind it.
    void explaining();
    /// The connection is to be taken down, now and for good.
    void leaving(bool notifyOrch, ipc::DisconnectTypeReason reason);

private:
    void explainAndLogout(SessionEnd end, bool invalidToken, bool showTipInLoginUI);
    void _showChangePasswordDLg();

    QDialog* m_window;
    bool m_sessionOver = false;   ///< a logout or quit is under way
    bool m_explainingEnd = false; ///< the reason for the end of the session is being shown
};
