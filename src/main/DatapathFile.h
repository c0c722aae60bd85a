#pragma once

#include <QByteArray>
#include <QString>

/// The files in the program's folder that tell the datapath what to do: the agent's configuration
/// and the IP filter lists.
constexpr char kAgentConfig[] = "cpeagent.conf";
constexpr char kFilterConfig[] = "filterConfig.conf";

/// Replaces one of them; it is readable by its owner alone, and by the datapath's service, which
/// runs as root. A failure is written to the activity log with the file's name; the old file may be
/// gone then. Returns whether the new content stands on disk.
bool replaceDatapathFile(const char* name, const QByteArray& content);

/// For the end of the program: removes both where the folder is sticky, since no other user of the
/// machine could replace them there and connect. Elsewhere they stay.
void leaveDatapathFiles();
