#include "app/ProcessRun.h"

#include "app/Platform.h"

#include <QProcess>

namespace {

void keep(QByteArray& kept, const QByteArray& written)
{
    kept += written.left(ProcessRun::kKept - kept.size());
}

} // namespace

ProcessRun runProcess(const QString& program, const QStringList& arguments, int timeoutMs)
{
    ProcessRun run; // outlives the process, whose end may still deliver output
    QProcess process;
    QObject::connect(&process, &QProcess::readyReadStandardError, &process,
                     [&] { keep(run.errors, process.readAllStandardError()); });
    QObject::connect(&process, &QProcess::readyReadStandardOutput, &process,
                     [&] { keep(run.output, process.readAllStandardOutput()); });
    process.setProcessEnvironment(platform().sessionEnvironment());
    process.start(program, arguments, QIODevice::ReadOnly);
    run.finished = process.waitForFinished(timeoutMs);
    run.exitCode = process.exitCode();
    process.close();
    return run;
}
