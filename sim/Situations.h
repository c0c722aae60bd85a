#pragma once

#include <QJsonObject>
#include <QString>

#include <vector>

namespace sim {

/// A state of the service that a person or a test enters by its name: one button of the control
/// page. `command` is what the control page would be sent. The text "%NOW%" stands for the
/// current time in milliseconds, so that a notice entered twice is a new one each time; the
/// members "startsInMinutes" and "endsInMinutes" of a notice count from the moment of the answer.
struct Situation
{
    QString group;
    QString name;
    QJsonObject command;
};

/// All of them, in the order of their groups.
const std::vector<Situation>& situations();

/// The command of the situation with that name; empty when there is none.
QJsonObject situationCommand(const QString& name);

} // namespace sim
