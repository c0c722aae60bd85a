#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

namespace sim {

/// How the stand-in datapath behaves: "key=value" lines of the file "datapath.behaviour" in its
/// directory. A key that is absent means that all is well.
///
/// | key | value |
/// |---|---|
/// | script_exit, stop_exit | exit code of the control script's start and stop |
/// | script_stdout, script_stderr | what the script prints, in one line |
/// | script_delay_ms | wait before the script does anything |
/// | agent | normal, silent, no_port, garbage, flood, flood_ready, disconnect |
/// | agent_flood_bytes, agent_gap_ms | size of the flood; pause between two messages |
/// | dispatch | normal, silent, close_midreply, bad_version, short, long |
/// | tunnels | up, down, none |
/// | tx_bps, rx_bps | rates in bits per second |
/// | tunnel_ip | answer to the tunnel address request |
/// | die_after_ms | service and agent die suddenly this long after their start |
///
/// The dispatch service reads the file anew when it has changed, so tunnels, rates and its own
/// behaviour can be switched while it runs; the rest applies from the next start.
using Behaviour = QMap<QString, QString>;

/// The behaviour in force for a directory; empty when there is no file.
Behaviour readBehaviour(const QString& directory);

/// Replaces the file as a whole. False when it cannot be written.
bool writeBehaviour(const QString& directory, const Behaviour& behaviour);

/// What the stand-ins found wrong with what they were given, one text each: arguments,
/// configuration files, dispatch requests.
QStringList datapathViolations(const QString& directory);
void clearDatapathViolations(const QString& directory);

/// Kills the datapath's running processes, as a crash would; false when that cannot be done.
bool crashDatapath(const QString& directory);

/// Calls of the control script, oldest first, one line each with the token masked.
QStringList scriptCalls(const QString& directory);

} // namespace sim
