#include "main/SessionExit.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/SessionRules.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchReply.h"
#include "widgets/AccountDialogs.h"

#include <QDialog>
#include <QPointer>
#include <QTimer>

namespace {

// Time for the last requests to be sent before the program ends.
constexpr int kEndDelayMs = 100;

} // namespace

SessionExit::SessionExit(QDialog* window) : QObject(window), m_window(window) {}

void SessionExit::_handle401(const OrchReply& document)
{
    logDisplayDebug(QStringLiteral(" orch return text ") + maskSecrets(document.body));
    switch (kickout(document.json())) {
    case Kickout::PasswordChanged:
        return endSession(SessionEnd::PasswordChanged);
    case Kickout::ForcedLogout:
        return endSession(SessionEnd::ForcedLogout);
    case Kickout::AccountChanged:
        return endSession(SessionEnd::AccountChanged);
    case Kickout::Other:
        return logout(false, true, false, true);
    case Kickout::NoReason:
        return logout(true, true, false, true);
    }
}

void SessionExit::endSession(SessionEnd end)
{
    switch (end) {
    case SessionEnd::None:
    case SessionEnd::LeftToSettings:
        return;
    case SessionEnd::KeepToken:
        return logout(false, false, false, true);
    case SessionEnd::InvalidToken:
        return logout(false, true, false, true);
    case SessionEnd::ForcedLogout:
    case SessionEnd::AccountChanged:
    case SessionEnd::PasswordChanged:
        return explainAndLogout(end, end != SessionEnd::PasswordChanged, false);
    }
}

void SessionExit::leaveAfterChange()
{
    explainAndLogout(SessionEnd::PasswordChanged, false, true);
}

void SessionExit::explainAndLogout(SessionEnd end, bool invalidToken, bool showTipInLoginUI)
{
    if (isUnderWay())
        return;
    emit windowWanted();
    const QPointer<SessionExit> alive(this);
    explainEnd(end);
    if (alive)
        logout(false, invalidToken, false, showTipInLoginUI);
}

void SessionExit::explainEnd(SessionEnd end)
{
    if (m_explainingEnd)
        return;
    const QPointer<SessionExit> alive(this);
    m_explainingEnd = true;
    emit explaining();
    if (end == SessionEnd::ForcedLogout)
        Util::showOrchKickOff(m_window, ConfigUtil::savedText(ConfigUtil::USERNAME));
    else if (end == SessionEnd::AccountChanged)
        Util::showLdapChange(m_window);
    else
        _showChangePasswordDLg();
    if (alive)
        m_explainingEnd = false;
}

void SessionExit::_showChangePasswordDLg()
{
    showPasswordChanged(m_window);
}

void SessionExit::logout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI)
{
    if (isUnderWay())
        return;
    m_sessionOver = true;
    ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString());
    emit leaving(notifyOrch, invalidToken ? ipc::DisConnNormalReason : ipc::DisConnAbnormalReason);
    const QStringList arguments =
        session::logoutArguments(invalidToken, isByUser, showTipInLoginUI);
    QTimer::singleShot(kEndDelayMs, this, [this, arguments, invalidToken] {
        m_window->accept();
        if (invalidToken)
            ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
        platform().relaunch(arguments);
    });
}

void SessionExit::quitUI()
{
    if (m_sessionOver)
        return;
    m_sessionOver = true;
    emit leaving(true, ipc::DisConnNormalReason);
    QTimer::singleShot(kEndDelayMs, this, [this] {
        m_window->done(QDialog::Rejected);
        platform().quit();
    });
}
