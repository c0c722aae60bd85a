#include "main/DatapathFile.h"

#include "app/LogMarker.h"
#include "app/ProgramFile.h"

#include <QCoreApplication>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(DatapathFile)
};

} // namespace

bool replaceDatapathFile(const QString& path, const QByteArray& content)
{
    switch (ProgramFile::replace(path, content)) {
    case ProgramFile::Replaced::Done:
        return true;
    case ProgramFile::Replaced::NotRemoved:
        logDisplayCritical(Texts::tr("Can not remove ") + path);
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
