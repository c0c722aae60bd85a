#pragma once

#include "orch/OrchUpgradeReply.h"

#include <QMetaType>
#include <QString>

/// What the client makes of a maintenance notice: whether it is shown, when it stops a login, and
/// in which words. The decisions are pure; only the last two functions use the settings.

/// The two kinds of notice. The values are fixed.
enum NoticeType {
    OrchPreparing = 0, ///< the maintenance lies ahead
    OrchUpgrading = 1  ///< the maintenance is in progress
};
Q_DECLARE_METATYPE(NoticeType)

namespace maintenance {

/// A login stops once for a notice that is neither handled nor over nor in progress.
bool stopsLogin(const OrchUpgradeReply& notice, bool handled);

/// The main window announces the same, up to and including the last moment.
bool announcedOnFocus(const OrchUpgradeReply& notice, bool handled);

/// Whether the notice is asked for again: `elapsed` seconds after the last query, which come every
/// `interval` minutes.
bool queryDue(long long elapsed, long long interval);

/// The maintenance is in progress by the orchestrator's own clock.
bool isRunning(const OrchUpgradeReply& notice);

/// Whether times are written in the Chinese way: as the locale named by `lcTime` (the environment
/// variable LC_TIME) has it, as the system language has it when that is empty.
bool chineseTimes(const QString& lcTime, bool chineseSystem);

/// A moment (milliseconds since 1970-01-01 UTC) in local time.
QString noticeTime(qlonglong moment, bool chinese);

/// The notice as HTML, with both times already written.
QString noticeBody(NoticeType type, const QString& start, const QString& end);

/// The notice's heading, unless the orchestrator brings its own.
QString noticeTitle(NoticeType type);

/// Whether the settings name the notice among those already handled.
bool isHandled(const QString& id);

/// Adds a notice, an empty identifier included, to that list. Any thread.
void recordNotice(const QString& id);

} // namespace maintenance
