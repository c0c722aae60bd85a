#pragma once

#include <QJsonObject>
#include <QString>

/// The rules about versions of the privacy agreement. Versions are compared as text.
namespace privacyversion {

/// Saved when the user agreed without a known version; any version received later takes its place.
extern const QString kNewest;

/// What follows a lookup server's answer.
enum class Next {
    AskBackup, ///< the primary server names no version: ask the backup server
    GoOn,      ///< nothing to agree to
    Prompt     ///< the user must agree to the received version
};

struct Decision
{
    Next next;
    QString saved; ///< the version that the settings hold from now on
};

/// The version that a lookup server's document names; empty when it names none.
QString fromJson(const QJsonObject& json);

/// The primary server answered: prompt when the received version sorts after the saved one.
Decision afterPrimary(const QString& received, const QString& saved);

/// The backup server answered: prompt when the received version differs from the saved one.
Decision afterBackup(const QString& received, const QString& saved);

} // namespace privacyversion
