// From the start of the process to the first window, and the memory there.
#include "FirstWindow.h"
#include "Measure.h"

#include "support/StagedProgram.h"
#include "support/VirtualDesktop.h"
#include "support/Wait.h"

namespace {

constexpr int kRounds = 15;
constexpr int kIdleSeconds = 20;

} // namespace

static void reportStart(const Report& report, const support::VirtualDesktop& desktop,
                        const support::StagedProgram& program)
{
    const QProcessEnvironment& environment = program.environment();
    const QString bare = QStringLiteral(VELTARO_BARE_DIALOG);
    QVector<double> times;
    QVector<double> floorTimes;
    QVector<double> memory;
    QVector<double> floorMemory;
    for (int round = 0; round <= kRounds; ++round) {
        const FirstWindow client = measureFirstWindow(program.client(), environment);
        const FirstWindow dialog = measureFirstWindow(bare, desktop.environment());
        if (round == 0)
            continue; // fills the caches
        times.append(client.milliseconds);
        floorTimes.append(dialog.milliseconds);
        memory.append(client.memoryMb);
        floorMemory.append(dialog.memoryMb);
    }
    report({QStringLiteral("start to first window (floor: bare dialog)"), median(times),
            median(floorTimes), QStringLiteral("ms"), QStringLiteral("within 0.65")});
    report({QStringLiteral("resident memory there (floor: bare dialog)"), median(memory),
            median(floorMemory), QStringLiteral("MB"), QStringLiteral("under 40 MB")});
}

static void reportIdle(const Report& report, support::StagedProgram& program)
{
    program.start();
    const double ticks = ticksOver(program.pid(), kIdleSeconds);
    program.killEverything();
    report({QStringLiteral("processor time, %1 s idle before login").arg(kIdleSeconds), ticks, -1,
            QStringLiteral("ticks"), QStringLiteral("none")});
}

void benchStart(const Report& report)
{
    // No assistive technology: the user's usual case, and the same for both programs.
    support::VirtualDesktop desktop(support::VirtualDesktop::Accessibility::Off);
    if (!desktop.start())
        return;
    support::StagedProgram program(desktop.environment());
    if (!program.stage())
        return;
    // The privacy agreement is behind us and nothing is saved: the login window waits.
    program.writeSettings({{QStringLiteral("AGREE_PRIVACY"), 1}});
    reportStart(report, desktop, program);
    reportIdle(report, program);
}
