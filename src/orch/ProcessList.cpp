#include "orch/ProcessList.h"

#include "app/Platform.h"

#include <QDir>
#include <QFile>

namespace {

/// A first argument is a path; more than this is cut, like the rest of the command line.
constexpr int kLongestName = 4096;

/// The first bytes of a file under /proc; `ok` tells whether it could be opened. One process is
/// looked at every few seconds for each entry, so nothing more than these bytes is read.
QByteArray head(const QString& path, bool* ok)
{
    QFile file(path);
    *ok = file.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    return *ok ? file.read(kLongestName) : QByteArray();
}

/// The kernel's command name, which stands in parentheses.
QString commandName(const QByteArray& stat)
{
    const int open = stat.indexOf('(');
    const int close = open < 0 ? -1 : stat.indexOf(')', open);
    return close < 0 ? QString() : QString::fromLatin1(stat.mid(open + 1, close - open - 1));
}

} // namespace

QList<Util::ProcessInfo> Util::getProcessInfo()
{
    const QString proc = platform().hostFile(QStringLiteral("/proc"));
    const auto entries =
        QDir(proc).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden, QDir::Unsorted);
    QList<ProcessInfo> processes;
    for (const QString& entry : entries) {
        bool ok = false;
        const int pid = entry.toInt(&ok);
        if (!ok)
            continue;
        const QString folder = proc + QLatin1Char('/') + entry;
        QByteArray commandLine = head(folder + QStringLiteral("/cmdline"), &ok);
        if (!ok)
            continue;
        QString name = QString::fromLatin1(commandLine.constData()); // up to the first zero byte
        if (name.isEmpty())
            name = commandName(head(folder + QStringLiteral("/stat"), &ok));
        processes.append({pid, name});
    }
    return processes;
}
