#include "support/StagedProgram.h"

#include "support/Wait.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

namespace support {

namespace {

const QString kClient = QStringLiteral("veltaro");

/// Where the build left the programs that an installation has side by side.
QStringList builtPrograms()
{
    return QStringLiteral(VELTARO_STAGED_PROGRAMS).split(QLatin1Char('|'));
}

bool linkOrCopy(const QString& from, const QString& to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
    return ::link(source.constData(), target.constData()) == 0 || QFile::copy(from, to);
}

QString programOf(qint64 pid)
{
    return QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(pid));
}

} // namespace

StagedProgram::StagedProgram(const QProcessEnvironment& desktop)
    : m_root(QDir::tempPath() + QStringLiteral("/veltaro-XXXXXX")), m_environment(desktop)
{
    // Short on purpose: the path of the client's local socket has to fit into 107 bytes.
    QDir(m_root.path()).mkpath(QStringLiteral("program"));
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"),
                         m_root.filePath(QStringLiteral("config")));
    cleanUpAfterDeath(m_root.path());
}

StagedProgram::~StagedProgram()
{
    killEverything();
}

bool StagedProgram::stage()
{
    const QStringList programs = builtPrograms();
    for (const QString& program : programs) {
        const QString target = path(QFileInfo(program).fileName());
        if (!linkOrCopy(program, target)) {
            m_error = program + QStringLiteral(": ") + QString::fromLocal8Bit(strerror(errno));
            return false;
        }
    }
    return true;
}

QString StagedProgram::folder() const
{
    return m_root.filePath(QStringLiteral("program"));
}

QString StagedProgram::path(const QString& fileName) const
{
    return folder() + QLatin1Char('/') + fileName;
}

QString StagedProgram::client() const
{
    return path(kClient);
}

bool StagedProgram::start(const QStringList& arguments)
{
    m_client = std::make_unique<ChildProcess>();
    m_client->setProcessEnvironment(m_environment);
    m_client->setProcessChannelMode(QProcess::ForwardedChannels);
    m_client->start(client(), arguments);
    return m_client->waitForStarted();
}

static int exitCodeOf(ChildProcess& process, int timeoutMs)
{
    const bool ended = waitFor([&] { return process.state() == QProcess::NotRunning; }, timeoutMs);
    return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

int StagedProgram::runSecondCopy(int timeoutMs)
{
    ChildProcess copy;
    copy.setProcessEnvironment(m_environment);
    copy.setProcessChannelMode(QProcess::ForwardedChannels);
    copy.start(client(), QStringList());
    return copy.waitForStarted() ? exitCodeOf(copy, timeoutMs) : -1;
}

qint64 StagedProgram::pid() const
{
    if (m_client && m_client->state() == QProcess::Running)
        return m_client->processId();
    const QList<qint64> running = ChildProcess::below(folder());
    for (const qint64 candidate : running) {
        if (programOf(candidate) == client())
            return candidate;
    }
    return 0;
}

int StagedProgram::awaitExit(int timeoutMs)
{
    return m_client ? exitCodeOf(*m_client, timeoutMs) : -1;
}

void StagedProgram::killEverything()
{
    if (m_client)
        m_client->end(false);
    waitFor([this] {
        const QList<qint64> running = ChildProcess::below(folder());
        for (const qint64 process : running)
            ::kill(static_cast<pid_t>(process), SIGKILL);
        return running.isEmpty();
    });
}

void StagedProgram::killClient()
{
    const qint64 client = pid();
    if (client > 0)
        ::kill(static_cast<pid_t>(client), SIGKILL);
    waitFor([this] { return pid() == 0; });
}

QList<qint64> StagedProgram::datapathProcesses() const
{
    QList<qint64> result;
    const QList<qint64> running = ChildProcess::below(folder());
    for (const qint64 process : running) {
        if (programOf(process) != client())
            result.append(process);
    }
    return result;
}

QByteArray StagedProgram::read(const QString& fileName) const
{
    QFile file(path(fileName));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool StagedProgram::remove(const QString& fileName) const
{
    return QFile::remove(path(fileName));
}

QString StagedProgram::log() const
{
    return QString::fromUtf8(read(QStringLiteral("ui.log")));
}

QString StagedProgram::settingsFile() const
{
    return m_root.filePath(QStringLiteral("config/Veltaro/setting.conf"));
}

QByteArray StagedProgram::settingsBytes() const
{
    QFile file(settingsFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QVariant StagedProgram::setting(const QString& key) const
{
    return QSettings(settingsFile(), QSettings::IniFormat).value(key);
}

void StagedProgram::writeSettings(const QVariantMap& values) const
{
    QSettings settings(settingsFile(), QSettings::IniFormat);
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        settings.setValue(it.key(), it.value());
}

} // namespace support
