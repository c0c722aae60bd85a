#pragma once

#include <QString>
#include <QTimer>

/// A timer of `milliseconds` that belongs to `owner`, carries `name` as its object name and calls
/// `slot`, a member of `owner` or anything callable, in `owner`'s thread. It repeats, and stands
/// still until it is started.
template <class Owner, class Slot>
QTimer* makeTimer(Owner* owner, const char* name, int milliseconds, Slot slot)
{
    auto* timer = new QTimer(owner);
    timer->setObjectName(QLatin1String(name));
    timer->setInterval(milliseconds);
    QObject::connect(timer, &QTimer::timeout, owner, slot);
    return timer;
}
