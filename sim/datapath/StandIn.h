#pragma once

#include <map>
#include <string>
#include <vector>

/// What the stand-in programs of the datapath share. Plain POSIX: they are started with every
/// connection, and their start-up must not weigh on what is measured.
namespace standin {

using Behaviour = std::map<std::string, std::string>;

/// The directory of the running program, resolved, without a trailing "/".
std::string programDirectory();

/// The whole file; empty when it cannot be read.
std::string readFile(const std::string& path);

/// Writes a file so that readers see either the old or the new one.
void replaceFile(const std::string& path, const std::string& text);

/// Appends one line in a single write.
void appendLine(const std::string& path, const std::string& line);

/// The "key=value" lines of "datapath.behaviour".
Behaviour readBehaviour(const std::string& directory);

std::string textOf(const Behaviour& behaviour, const std::string& key, const std::string& initial);
long long numberOf(const Behaviour& behaviour, const std::string& key, long long initial);

/// Records that the client has broken a rule of the datapath's interface.
void violation(const std::string& directory, const std::string& text);

void sleepMs(long long ms);

/// Milliseconds of the monotonic clock.
long long monotonicMs();

/// Lets the process die by a signal when the behaviour says so ("die_after_ms").
void armSuddenDeath(const Behaviour& behaviour);

} // namespace standin
