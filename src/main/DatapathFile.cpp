#include "main/DatapathFile.h"

#include "app/LogMarker.h"

#include <QFile>

bool replaceDatapathFile(const QString& path, const QByteArray& content)
{
    QFile file(path);
    if (file.exists() && !file.remove()) {
        logDisplayCritical(QStringLiteral("Can not remove ") + path);
        return false;
    }
    if (!file.open(QIODevice::WriteOnly)) {
        logDisplayCritical(QStringLiteral("Can not open ") + path);
        return false;
    }
    if (file.write(content) != content.size() || !file.flush()) {
        logDisplayCritical(QStringLiteral("Can not write ") + path);
        return false;
    }
    return true;
}
