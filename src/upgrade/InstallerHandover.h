#pragma once

#include <QByteArray>
#include <QString>

/// How the Upgrade buttons hand the user over to the system, which knows how to install.

/// Opens the installer's address in the browser where a package can be installed from there (on
/// Ubuntu, when it is a web address), otherwise the distribution's software centre.
void handOverToInstaller(const QString& url);

namespace inner {

/// Starts the software centre, found through its desktop entry. Failures are only logged.
void openNewInstaller();

} // namespace inner

/// The file name of the software centre's desktop entry on the desktop that XDG_CURRENT_DESKTOP
/// names.
QString softwareCentreEntry(const QString& currentDesktop);

/// The program of a desktop entry: the first word of the key "Exec" in the group "Desktop Entry";
/// empty when there is none. See the freedesktop.org Desktop Entry Specification.
QString desktopEntryProgram(const QByteArray& entry);
