#pragma once

#include <QString>
#include <QStringList>

/// The values that differ from one deployment of the service to the next. They are compiled in
/// from cmake/Deployment.cmake. Thread-safe.
namespace deployment {

/// Full address of the primary lookup server. In a development build the environment variable
/// VELTARO_LOOKUP_PRIMARY replaces it; a release build has no such switch.
QString lookupPrimary();

/// Full address of the backup lookup server; VELTARO_LOOKUP_BACKUP replaces it likewise.
QString lookupBackup();

/// Address of the user agreement, in the variant for the user interface language.
QString userAgreementUrl(bool chinese);

/// Address of the privacy policy, in the variant for the user interface language.
QString privacyPolicyUrl(bool chinese);

/// The maker's name, as the about page shows it.
QString makerName();

/// Hosts that the network diagnosis pings, in order.
QStringList pingTargets();

} // namespace deployment
