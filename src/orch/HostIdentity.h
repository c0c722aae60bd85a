#pragma once

#include <QByteArray>
#include <QString>

/// What Util reads out of the host's files and commands. Pure.
namespace hostidentity {

/// The device ID in the text of an fstab(5), "" when nothing is mounted by UUID.
QString deviceId(const QByteArray& fstab);

/// The distribution named by the text of an lsb-release file.
QString distributionId(const QString& lsbRelease);

/// The processor architecture in the output of "uname -m"; "unknown" for other machines.
QString cpuArchitecture(const QByteArray& machine);

} // namespace hostidentity
