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

/// What the client knows about its host. Host files are read below Platform::fileRoot; failures are
/// values: "" or "unknown". Any thread, except that the serial and the two cached values must have
/// been asked for once before a second thread asks.
namespace Util {

/// The client serial, 32 characters of "0" to "9" and "A" to "E", made and stored on first
/// use.
QString getSerial();

/// The first UUID that /etc/fstab mounts by UUID, in upper case; "" when there is none.
QString getDeviceId();

/// "uosLinux", "kylinLinux", "ubuntu" or "unknown". Cached for the life of the process.
QString getDistributionId();

/// "X86", "ARM" or "unknown". Cached; the first call runs "uname" and blocks up to 30 s.
QString getCpuArchitecture();

/// The content of a file as text, "" when it cannot be read.
QString readFileContent(const QString& path);

} // namespace Util
