#include "app/OtherUser.h"

#include <QDebug>
#include <QFile>

#include <array>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

QString userName(uid_t user)
{
    std::array<char, 4096> buffer;
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == 0 && found)
        return QString::fromLocal8Bit(found->pw_name);
    return QString::number(user);
}

QString otherOwner(const QString& path)
{
    struct stat about = {};
    const bool other =
        ::lstat(QFile::encodeName(path).constData(), &about) == 0 && about.st_uid != ::geteuid();
    return other ? userName(about.st_uid) : QString();
}

void warnOfOtherOwner(const QString& path)
{
    const QString owner = otherOwner(path);
    if (!owner.isEmpty())
        qWarning().noquote() << path << "belongs to the user" << owner
                             << "and can only be removed by that user or an administrator";
}
