#pragma once

#include <QByteArray>
#include <QString>

class WorkFolder;

/// What a diagnosis collects, and the archive made of it. Programs run on the calling thread, at
/// most 30 s each; one that is missing or fails leaves its output out, and once the thread is to
/// stop none is started.
namespace diagnosis {

/// The name under which a file of the datapath's logs lies in the bundle.
QString bundleName(const QString& logFile);

/// The archive's name, for the moment `stamp` ("yyyyMMdd_hhmmss").
QString archiveName(const QString& serial, const QString& stamp);

/// Pings the targets; true when one of them answers. What ping says becomes network.log.
bool testNetwork(const WorkFolder& folder);

/// This machine, and what it says of its network, as device.log.
void describeDevice(const WorkFolder& folder);

/// The logs of the datapath and of this program, and the datapath's database.
void getAllLogs(const WorkFolder& folder);

/// Packs the folder into a new archive in the temporary directory, which this user alone can read.
/// Returns its path; empty when there is none.
QString makeTarPackage(const WorkFolder& folder, const QString& name);

} // namespace diagnosis
