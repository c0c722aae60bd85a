#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// How a program that was waited for has ended.
struct ProcessRun
{
    /// The most bytes that are kept of each channel, unless a caller wants more.
    static constexpr int kKept = 65536;

    bool finished = false; ///< it was started and ended in time
    int exitCode = 0;      ///< 0 also when it could not be started or had to be killed
    QByteArray output;     ///< the first bytes of its standard output
    QByteArray errors;     ///< the same of its standard error
};

/// Runs a program with the session's environment (Platform::sessionEnvironment), never through a
/// shell, and waits for it on the calling thread, at most `timeoutMs` (-1: as long as it takes);
/// one that still runs then is killed. It is also killed, within a tenth of a second, when the
/// calling QThread is asked to interrupt, and not started when it has been asked before. However
/// much it writes, no more than `kept` bytes of each channel are held. Any thread.
ProcessRun runProcess(const QString& program, const QStringList& arguments, int timeoutMs,
                      int kept = ProcessRun::kKept);
