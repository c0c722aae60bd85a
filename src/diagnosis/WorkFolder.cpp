#include "diagnosis/WorkFolder.h"

#include "app/LogMarker.h"
#include "app/OtherUser.h"
#include "app/ProgramFile.h"

#include <QDir>

#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr char kName[] = "linux_diagnosis";
constexpr QDir::Filters kEverything =
    QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;

// Whether it is a folder of ours alone, from now on if not before.
bool makePrivate(const QByteArray& path)
{
    QDir().mkpath(QDir::tempPath());
    ::mkdir(path.constData(), S_IRWXU);
    struct stat about = {};
    if (::lstat(path.constData(), &about) != 0 || !S_ISDIR(about.st_mode) ||
        about.st_uid != ::geteuid())
        return false;
    return (about.st_mode & ACCESSPERMS) == S_IRWXU || ::chmod(path.constData(), S_IRWXU) == 0;
}

void removeFiles(const QString& folder, const QString& failure)
{
    const auto entries = QDir(folder).entryInfoList(kEverything);
    for (const QFileInfo& entry : entries) {
        const bool isFolder = entry.isDir() && !entry.isSymLink();
        if (!isFolder && !ProgramFile::remove(entry.filePath()))
            logDisplayDebug(failure + entry.filePath());
    }
}

void empty(const QString& folder)
{
    removeFiles(folder, QStringLiteral("Could not remove file "));
    const auto entries = QDir(folder).entryInfoList(QDir::Dirs | QDir::Hidden | QDir::NoSymLinks |
                                                    QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries)
        removeFiles(entry.filePath(), QStringLiteral("Could not remove file in sub dir "));
}

} // namespace

WorkFolder WorkFolder::prepare()
{
    const QString path = QDir::tempPath() + QLatin1Char('/') + QLatin1String(kName);
    WorkFolder folder;
    if (!makePrivate(QFile::encodeName(path))) {
        qCritical("Can not create directory for diagnosis");
        warnOfOtherOwner(path);
        return folder;
    }
    empty(path);
    folder.m_path = path;
    return folder;
}

void WorkFolder::write(const QString& name, const QByteArray& content) const
{
    ProgramFile::replace(file(name), content);
}

void WorkFolder::append(const QString& name, const QByteArray& content) const
{
    ProgramFile::toAppend(file(name)).write(content);
}

void WorkFolder::copy(const QString& source, const QString& name) const
{
    ProgramFile::copy(source, file(name));
}
