#pragma once

#include "support/ChildProcess.h"

#include <memory>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantMap>

namespace support {

/// The built client with the stand-in datapath around it, in a program folder of its own, as an
/// installation would have it, with settings of its own. Whatever was started there is killed
/// when this object goes, or when this process dies.
class StagedProgram
{
public:
    /// `desktop` is the environment of the desktop to run on.
    explicit StagedProgram(const QProcessEnvironment& desktop);
    ~StagedProgram();

    /// Puts the files in place; false with `error()` when one is missing.
    bool stage();
    QString error() const { return m_error; }

    /// The program folder, without a trailing "/".
    QString folder() const;
    QString path(const QString& fileName) const;

    /// The client's executable.
    QString client() const;

    /// What clients started from now on find around them: the desktop, and settings of this
    /// program folder alone. setVariables adds to it.
    const QProcessEnvironment& environment() const { return m_environment; }
    void setVariables(const QProcessEnvironment& variables) { m_environment.insert(variables); }

    /// Starts the client; what it prints goes to this process's standard error.
    bool start(const QStringList& arguments = {});

    /// Starts one more copy and waits for its end: the exit code, -1 when it is still there after
    /// `timeoutMs` or crashed.
    int runSecondCopy(int timeoutMs);

    /// The client that runs from the program folder now, also one that replaced the one started
    /// here; 0 when there is none.
    qint64 pid() const;

    /// Waits for the end of the client started last: its exit code, -1 as above.
    int awaitExit(int timeoutMs);

    /// Ends every client and every datapath process with SIGKILL.
    void killEverything();

    /// Ends the client alone with SIGKILL, as a crash would.
    void killClient();

    /// The running processes of the stand-in datapath.
    QList<qint64> datapathProcesses() const;

    /// The bytes of a file in the program folder; empty when it is not there.
    QByteArray read(const QString& fileName) const;
    bool remove(const QString& fileName) const;

    /// The client's log so far, as text.
    QString log() const;

    /// The settings file: its bytes, one value, all values at once.
    QString settingsFile() const;
    QByteArray settingsBytes() const;
    QVariant setting(const QString& key) const;
    void writeSettings(const QVariantMap& values) const;

private:
    QTemporaryDir m_root;
    QString m_error;
    QProcessEnvironment m_environment;
    std::unique_ptr<ChildProcess> m_client;
};

} // namespace support
