#pragma once

#include "orch/OrchReply.h"

#include <QJsonObject>
#include <QString>

#include <functional>

/// How a failed request becomes a text in a window's top prompt and an action. The decisions are
/// pure; the windows decide and act.

/// Name of the network error, error string, status and body in one line for the log, secrets
/// masked; `separator` stands behind the name.
QString failureLogText(const OrchReply& reply, const QString& separator);

/// Error name, error string and status in one line for the user's activity log, translated.
QString failureCauseText(const OrchReply& reply);

/// Where the texts for the orchestrator's own codes come from.
struct OrchTexts
{
    bool chinese = false;
    /// The text for an orchestrator error body (OrchErrRes::getOrchErrContent).
    std::function<QString(const OrchReply&)> content;
    /// Whether the code means that this client is too old (OrchErrRes::isVersionLow).
    std::function<bool(int)> versionLow;

    /// The texts of the shared error resource in the system's language. GUI thread.
    static OrchTexts shared();
};

/// The text for a request that failed before a session, in a dialog of its own.
QString requestFailureText(const OrchReply& reply, const OrchTexts& texts);

/// What the login window does about a failure, in this order.
struct LoginFailure
{
    enum class Notice {
        None,
        BindingInProgress, ///< show the device-binding result "application in process"
        DeviceDisabled,    ///< show the device-binding result "device disabled"
    };
    enum class Action {
        ShowText,    ///< show `text` as an error
        OpenUpgrade, ///< open the upgrade dialog with `text`
        Nothing,
    };

    bool forgetCredentials = false; ///< clear the stored token, the mask and the password field
    Notice notice = Notice::None;
    Action action = Action::ShowText;
    QString text;
};

/// `verifyingCustomer`: the lookup servers are being asked; the public key has not arrived yet.
LoginFailure loginFailure(const OrchReply& reply, bool verifyingCustomer, const OrchTexts& texts);

/// Why a session is over, by the "invalidReasonCode" of a reply with code 401.
enum class Kickout {
    NoReason, ///< the reply names none
    ForcedLogout,
    AccountChanged,
    PasswordChanged,
    Other,
};
Kickout kickout(const QJsonObject& body);

/// How the main window ends a session. Every case but None first closes all popup dialogs.
enum class SessionEnd {
    None,            ///< the session goes on: show the text as an error
    LeftToSettings,  ///< the settings page is changing the password and handles it itself
    KeepToken,       ///< log out keeping the token
    InvalidToken,    ///< log out clearing the token, with the invalid-token flag
    ForcedLogout,    ///< dialog naming the user, then log out clearing the token
    AccountChanged,  ///< dialog, then log out clearing the token
    PasswordChanged, ///< dialog, then log out keeping the token
};

/// How a session ends whose token was refused with this reply; never None.
/// `settingsChangePassword`: the settings page itself is changing the password.
SessionEnd invalidSessionEnd(const OrchReply& reply, bool settingsChangePassword);

/// What the main window does about a failure.
struct MainFailure
{
    SessionEnd end = SessionEnd::None;
    QString text; ///< only with SessionEnd::None
};

/// `settingsChangePassword`: the settings page itself is changing the password.
MainFailure mainFailure(const OrchReply& reply, bool settingsChangePassword,
                        const OrchTexts& texts);
