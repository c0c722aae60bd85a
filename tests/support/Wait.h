#pragma once

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

namespace support {

/// Runs `condition` again and again, with events processed in between, until it holds or
/// `timeoutMs` has passed. The only way this folder waits: what is awaited is always something
/// that can be observed. Returns whether the condition came to hold.
template <typename Condition>
bool waitFor(Condition condition, int timeoutMs = 10000)
{
    constexpr int kPauseMs = 15;
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        if (condition())
            return true;
        if (clock.elapsed() >= timeoutMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, kPauseMs);
        QThread::msleep(kPauseMs);
    }
}

} // namespace support
