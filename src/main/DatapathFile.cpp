#include "main/DatapathFile.h"

#include "app/LogMarker.h"
#include "app/OtherUser.h"
#include "app/Platform.h"
#include "app/ProgramFile.h"

#include <QCoreApplication>
#include <QFile>

#include <sys/stat.h>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(DatapathFile)
};

} // namespace

bool replaceDatapathFile(const char* name, const QByteArray& content)
{
    const QString path = platform().programFile(QLatin1String(name));
    switch (ProgramFile::replace(path, content)) {
    case ProgramFile::Replaced::Done:
        return true;
    case ProgramFile::Replaced::NotRemoved:
        logDisplayCritical(Texts::tr("Can not remove ") + path);
        warnOfOtherOwner(path);
        break;
    case ProgramFile::Replaced::NotOpened:
        logDisplayCritical(Texts::tr("Can not open ") + path);
        break;
    case ProgramFile::Replaced::NotWritten:
        logDisplayCritical(Texts::tr("Can not write ") + path);
        break;
    }
    return false;
}

void leaveDatapathFiles()
{
    struct stat folder = {};
    const QByteArray path = QFile::encodeName(platform().programDir());
    if (::stat(path.constData(), &folder) != 0 || !(folder.st_mode & S_ISVTX))
        return;
    for (const char* name : {kAgentConfig, kFilterConfig})
        ProgramFile::remove(platform().programFile(QLatin1String(name)));
}
