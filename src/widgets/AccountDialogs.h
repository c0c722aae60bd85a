#pragma once

#include <QString>

class QWidget;

/// Notices that the orchestrator has ended the session of this account. Each runs modally over
/// `parent` until it is confirmed or closed; the caller then ends the session. GUI thread.

namespace Util {

/// An administrator has logged the user out.
void showOrchKickOff(QWidget* parent, const QString& username);

/// The account has changed in the customer's directory.
void showLdapChange(QWidget* parent);

} // namespace Util

/// The password has been changed; see DlgChangePassPrompt.
void showPasswordChanged(QWidget* parent);
