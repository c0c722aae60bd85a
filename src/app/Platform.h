#pragma once

#include <QDateTime>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <optional>

#include <sys/types.h>

/// What the program takes from its surroundings and a test may replace. Set up before the code
/// under test runs and left alone afterwards; reading is thread-safe under that rule.
struct Platform
{
    /// The wall clock, milliseconds since 1970-01-01 UTC.
    std::function<qint64()> clock;

    /// Whether the system language is Chinese (any script or country). Decides the translation,
    /// the texts that exist in two languages, and the document addresses.
    std::function<bool()> isChinese;

    /// Put in front of every absolute system path that is read ("/etc/fstab", "/proc", ...).
    /// Empty for the real system; no trailing "/".
    QString fileRoot;

    /// The folder that holds the log, the local socket, the datapath's configuration, its control
    /// script and its tools: the folder of the executable. No trailing "/".
    std::function<QString()> programDir;

    /// Sets a variable of this process that the session leaves open, for our own libraries to
    /// read. Programs that we start do not get it.
    void setForOurselves(const char* name, const QByteArray& value);

    /// This process's environment without what setForOurselves() added: what every program that we
    /// start gets.
    QProcessEnvironment sessionEnvironment() const;

    /// Gives up being the first copy, starts this program anew, detached, with the arguments, and
    /// ends the event loop, also when the start fails. How a logout leads back to the login window.
    std::function<void(const QStringList& arguments)> relaunch;

    /// The program's command line, the program itself first.
    std::function<QStringList()> arguments;

    /// Ends the program's event loop.
    std::function<void()> quit;

    /// Opens an address in the desktop's default application. GUI thread, once a window stands and
    /// the network is in use: from then on this process is without what setForOurselves() added.
    std::function<bool(const QUrl&)> openUrl;

    /// Starts a program that outlives this one, without arguments, with this environment.
    std::function<bool(const QString& program, const QProcessEnvironment& environment)>
        startDetached;

    /// The wall clock as local time.
    QDateTime now() const { return QDateTime::fromMSecsSinceEpoch(clock()); }

    /// `path` below fileRoot.
    QString hostFile(const QString& path) const { return fileRoot + path; }

    /// The user that the peer of a connected local socket ran as when it connected; nothing when
    /// the system does not say.
    std::function<std::optional<uid_t>(int descriptor)> peerUser;

    /// This machine's own IPv4 address in dotted form, in place of what the network interfaces say.
    /// Not set for the real one.
    std::function<QString()> ownAddress;

    /// `name` in the program's folder.
    QString programFile(const QString& name) const;

    Platform();

private:
    void dropOwnVariables();

    QStringList m_ownVariables;
};

/// The one instance, filled with the real surroundings on first use.
Platform& platform();
