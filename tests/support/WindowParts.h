#pragma once

#include <QtWidgets>

/// Parts of a window under test, found by their object names. A name that is not there ends the
/// test run: the window has changed and the test with it.
template <class Part>
Part* part(const QWidget* window, const char* name)
{
    auto* found = window->findChild<Part*>(QLatin1String(name));
    if (!found)
        qFatal("no %s", name);
    return found;
}

/// Lets a timer of the window run out now.
inline void fireTimer(const QWidget* window, const char* name)
{
    auto* timer = part<QTimer>(window, name);
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
}
