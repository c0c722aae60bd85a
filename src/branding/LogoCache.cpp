#include "branding/LogoCache.h"

#include "app/ProgramFile.h"
#include "branding/LogoPicture.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

namespace {

bool isOwnFolder(const QString& path)
{
    struct stat about = {};
    return ::lstat(QFile::encodeName(path).constData(), &about) == 0 && S_ISDIR(about.st_mode) &&
           about.st_uid == ::geteuid();
}

bool isFolderName(const QString& name)
{
    return !name.isEmpty() && !name.startsWith(QLatin1Char('.')) &&
           !name.contains(QLatin1Char('/'));
}

} // namespace

LogoCache::LogoCache(const QString& folder, const QString& customerId)
    : m_folder(folder),
      m_path(isFolderName(customerId) ? folder + QLatin1Char('/') + customerId : QString())
{
}

void LogoCache::create() const
{
    ::mkdir(QFile::encodeName(m_folder).constData(), S_IRWXU);
    if (!m_path.isEmpty() && isOwnFolder(m_folder)) // not through a link
        ::mkdir(QFile::encodeName(m_path).constData(), S_IRWXU);
}

bool LogoCache::isUsable() const
{
    return !m_path.isEmpty() && isOwnFolder(m_folder) && isOwnFolder(m_path);
}

QByteArray LogoCache::read(const QString& name) const
{
    if (!isUsable())
        return {};
    const ProgramFile file = ProgramFile::toRead(m_path + QLatin1Char('/') + name);
    if (!file.isOpen() || file.size() > logopicture::kMostBytes)
        return {};
    return file.read(logopicture::kMostBytes).value_or(QByteArray());
}

bool LogoCache::write(const QString& name, const QByteArray& content) const
{
    return isUsable() && ProgramFile::replace(m_path + QLatin1Char('/') + name, content) ==
                             ProgramFile::Replaced::Done;
}
