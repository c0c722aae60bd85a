#pragma once

#include <QJsonObject>
#include <QMetaType>
#include <QString>

/// The orchestrator's maintenance notice. Times are milliseconds since 1970-01-01 UTC.
struct OrchUpgradeReply
{
    QString type;              ///< "upgrade" for a notice that concerns the client
    QString templates;         ///< name of the text template; empty: the notice brings its title
    QString id;                ///< identifies the notice
    qlonglong startTime = 0;   ///< the maintenance begins
    qlonglong endTime = 0;     ///< the maintenance ends
    qlonglong currentTime = 0; ///< the orchestrator's clock
    qlonglong noticeTime = 60; ///< minutes between two queries
    QString message;           ///< in the system language
    QString title;             ///< in the system language
    QString state;             ///< "run" while the maintenance is in progress
};
Q_DECLARE_METATYPE(OrchUpgradeReply)

/// Reads a reply; what is missing or of another type takes its default.
OrchUpgradeReply parseOrchUpgradeReply(const QJsonObject& json);
