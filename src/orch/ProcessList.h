#pragma once

#include <QList>
#include <QString>

/// The processes of this machine, read below Platform::fileRoot. Any thread.
namespace Util {

struct ProcessInfo
{
    int pid = 0;
    /// The first command-line argument; the kernel's command name when that is empty.
    QString name;
};

/// All processes that can be looked at. See proc(5).
QList<ProcessInfo> getProcessInfo();

} // namespace Util
