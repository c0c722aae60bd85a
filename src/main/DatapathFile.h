#pragma once

#include <QByteArray>
#include <QString>

/// Replaces a file that the datapath reads; it is readable by its owner alone, and by the
/// datapath's service, which runs as root. A failure is written to the activity log with the
/// file's name; the old file may be gone then. Returns whether the new content stands on disk.
bool replaceDatapathFile(const QString& path, const QByteArray& content);
