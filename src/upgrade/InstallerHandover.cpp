#include "upgrade/InstallerHandover.h"

#include "app/LogMarker.h"
#include "app/Platform.h"
#include "orch/HostIdentity.h"

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QUrl>

namespace {

bool isUkui(const QString& currentDesktop)
{
    return currentDesktop.compare(QLatin1String("ukui"), Qt::CaseInsensitive) == 0;
}

// An orchestrator's address may name a web page, not a file of this machine.
bool isWebAddress(const QUrl& url)
{
    return url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http");
}

} // namespace

void handOverToInstaller(const QString& url)
{
    QUrl address(url.trimmed());
    if (!url.isEmpty() && address.scheme().isEmpty())
        address = QUrl(QStringLiteral("https://") + url.trimmed());
    if (isWebAddress(address) && Util::getDistributionId() == QLatin1String("ubuntu"))
        platform().openUrl(address);
    else
        inner::openNewInstaller();
}

void inner::openNewInstaller()
{
    QProcessEnvironment environment = platform().sessionEnvironment();
    const QString desktop = environment.value(QStringLiteral("XDG_CURRENT_DESKTOP"));
    if (!isUkui(desktop))
        environment.remove(QStringLiteral("LD_LIBRARY_PATH"));

    const QString path = QStringLiteral("/usr/share/applications/") + softwareCentreEntry(desktop);
    QFile entry(platform().hostFile(path));
    if (!entry.open(QIODevice::ReadOnly))
        return logDisplayDebug(QStringLiteral("Can not open ") + path);
    const QString program = desktopEntryProgram(entry.readAll());
    if (program.isEmpty())
        return logDisplayDebug(QStringLiteral("Can not find the `Exec=`"));
    platform().startDetached(program, environment);
}

QString softwareCentreEntry(const QString& currentDesktop)
{
    return isUkui(currentDesktop) ? QStringLiteral("kylin-software-center.desktop")
                                  : QStringLiteral("deepin-app-store.desktop");
}

QString desktopEntryProgram(const QByteArray& entry)
{
    bool mainGroup = false;
    for (const QByteArray& rawLine : entry.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('['))
            mainGroup = line == "[Desktop Entry]";
        if (!mainGroup || !line.startsWith("Exec"))
            continue;
        const QByteArray rest = line.mid(4).trimmed();
        if (rest.startsWith('='))
            return QProcess::splitCommand(QString::fromUtf8(rest.mid(1))).value(0);
    }
    return {};
}
