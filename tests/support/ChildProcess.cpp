#include "support/ChildProcess.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace support {

ChildProcess::ChildProcess(QObject* parent) : QProcess(parent) {}

ChildProcess::~ChildProcess()
{
    end(false);
}

void ChildProcess::end(bool politely)
{
    if (state() == NotRunning)
        return;
    if (politely) {
        terminate();
        if (waitForFinished(1000))
            return;
    }
    kill();
    waitForFinished();
}

void ChildProcess::setupChildProcess()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
}

qint64 ChildProcess::cpuTicks(qint64 pid)
{
    QFile file(QStringLiteral("/proc/%1/stat").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QByteArray stat = file.readAll();
    // The command name is the one field that may hold spaces; it ends at the last bracket.
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    constexpr int kUserTime = 11;
    constexpr int kSystemTime = 12;
    if (fields.size() <= kSystemTime)
        return -1;
    return fields.at(kUserTime).toLongLong() + fields.at(kSystemTime).toLongLong();
}

qint64 ChildProcess::statusKb(qint64 pid, const QByteArray& field)
{
    QFile file(QStringLiteral("/proc/%1/status").arg(pid));
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    const QList<QByteArray> lines = file.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(field + ':'))
            return line.mid(field.size() + 1).simplified().split(' ').first().toLongLong();
    }
    return -1;
}

/// `folder` as the kernel would name it, or nothing for what could only be a mistake: a relative
/// name, the root, or one of its direct children.
static QString killablePrefix(const QString& folder)
{
    const QString real = QFileInfo(folder).canonicalFilePath();
    const QString path = real.isEmpty() ? QDir::cleanPath(folder) : real;
    const bool deepEnough = path.startsWith(QLatin1Char('/')) && path.count(QLatin1Char('/')) >= 2;
    return deepEnough ? path + QLatin1Char('/') : QString();
}

template <typename Condition>
static QList<qint64> processesWith(Condition holds)
{
    QList<qint64> found;
    const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
    for (const QString& entry : entries) {
        bool isPid = false;
        const qint64 pid = entry.toLongLong(&isPid);
        if (isPid && holds(QStringLiteral("/proc/") + entry))
            found.append(pid);
    }
    return found;
}

static bool runsBelow(const QString& process, const QString& prefix)
{
    // Empty for a process that has ended but was not waited for yet.
    return QFile::symLinkTarget(process + QStringLiteral("/exe")).startsWith(prefix);
}

static bool isToldOf(const QString& process, const QString& prefix)
{
    QFile arguments(process + QStringLiteral("/cmdline"));
    return arguments.open(QIODevice::ReadOnly) &&
           arguments.readAll().contains(QFile::encodeName(prefix));
}

static int entriesOf(const QString& folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

int ChildProcess::descriptors(qint64 pid)
{
    return entriesOf(QStringLiteral("/proc/%1/fd").arg(pid));
}

int ChildProcess::threads(qint64 pid)
{
    return entriesOf(QStringLiteral("/proc/%1/task").arg(pid));
}

QList<qint64> ChildProcess::below(const QString& folder)
{
    const QString prefix = killablePrefix(folder);
    if (prefix.isEmpty())
        return {};
    return processesWith([&](const QString& process) { return runsBelow(process, prefix); });
}

void cleanUpAfterDeath(const QString& folder)
{
    const QString prefix = killablePrefix(folder);
    int ends[2];
    if (prefix.isEmpty() || ::pipe2(ends, O_CLOEXEC) != 0)
        return;
    const pid_t child = ::fork();
    if (child != 0) {
        ::close(ends[0]);
        if (child < 0)
            ::close(ends[1]);
        return;
    }
    ::setsid();
    for (int fd = 0; fd < 1024; ++fd) {
        if (fd != ends[0])
            ::close(fd);
    }
    char byte = 0;
    while (::read(ends[0], &byte, 1) < 0) {
    }
    const QList<qint64> left = processesWith([&](const QString& process) {
        return runsBelow(process, prefix) || isToldOf(process, prefix);
    });
    for (const qint64 pid : left)
        ::kill(static_cast<pid_t>(pid), SIGKILL);
    QDir(prefix).removeRecursively();
    ::_exit(0);
}

} // namespace support
