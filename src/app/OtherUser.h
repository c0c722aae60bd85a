#pragma once

#include <QString>

#include <sys/types.h>

/// The name of a user of this machine, or the number when it has none. Any thread; asks the
/// system's user database, which may be one in the network.
QString userName(uid_t user);

/// Whose file, folder, link or socket stands at `path`, when that is another user; empty when it
/// is ours or nothing stands there. In the program's folder, which is sticky, only that user and
/// root can remove it.
QString otherOwner(const QString& path);

/// Says in the log whose `path` is, when it is another user's; for a path that could not be
/// written.
void warnOfOtherOwner(const QString& path);
