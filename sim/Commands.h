#pragma once

#include "sim/Simulator.h"

#include <QJsonObject>
#include <QStringList>

namespace sim {

/// Carries out the members of a command to the simulator, the table in ControlPage.h, and returns
/// the names of those that it could not; of a scenario, the names of its members.
QStringList carryOut(Simulator& simulator, const QJsonObject& command);

} // namespace sim
