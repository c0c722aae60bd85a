#include "app/ProcessRun.h"

#include "app/Platform.h"

#include <QDeadlineTimer>
#include <QProcess>
#include <QThread>

namespace {

constexpr qint64 kLookMs = 100; // for an interruption, which nothing tells of

bool isInterrupted()
{
    return QThread::currentThread()->isInterruptionRequested();
}

bool waitFor(QProcess& process, int timeoutMs)
{
    const QDeadlineTimer deadline(timeoutMs < 0 ? QDeadlineTimer::Forever
                                                : QDeadlineTimer(timeoutMs));
    while (process.state() != QProcess::NotRunning && !isInterrupted()) {
        const qint64 left = deadline.remainingTime();
        if (left == 0)
            return false;
        process.waitForFinished(int(left < 0 ? kLookMs : qMin(left, kLookMs)));
    }
    return process.state() == QProcess::NotRunning && process.error() != QProcess::FailedToStart;
}

} // namespace

ProcessRun runProcess(const QString& program, const QStringList& arguments, int timeoutMs, int kept)
{
    ProcessRun run; // outlives the process, whose end may still deliver output
    if (isInterrupted())
        return run;
    QProcess process;
    const auto keep = [kept](QByteArray& all, const QByteArray& written) {
        all += written.left(kept - all.size());
    };
    QObject::connect(&process, &QProcess::readyReadStandardError, &process,
                     [&] { keep(run.errors, process.readAllStandardError()); });
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process,
                     [&] { keep(run.output, process.readAllStandardOutput()); });
    process.setProcessEnvironment(platform().sessionEnvironment());
    process.start(program, arguments, QIODevice::ReadOnly);
    run.finished = waitFor(process, timeoutMs);
    run.exitCode = process.exitCode();
    process.close();
    return run;
}
