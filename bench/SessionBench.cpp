// What an established connection costs while nobody touches the client.
#include "FirstWindow.h"
#include "Measure.h"

#include "support/Scene.h"
#include "support/Wait.h"

#include <cstdio>

namespace {

constexpr int kSettleMs = 3000;
constexpr int kIdleSeconds = 30;

} // namespace

void benchSession(const Report& report)
{
    support::Scene scene;
    // Measured on a desktop without assistive technology: the tree it keeps is not the client's
    // usual cost.
    support::VirtualDesktop plain(support::VirtualDesktop::Accessibility::Off);
    if (!scene.start() || !scene.rememberLogin() || !plain.start()) {
        std::fprintf(stderr, "No session to measure: the client did not connect.\n");
        return;
    }
    support::StagedProgram& program = scene.program();
    program.setVariables(plain.session());
    scene.startRemembered();
    const bool connected = support::waitFor(
        [&] { return program.log().contains(QStringLiteral("[NOTICE]  Connected")); }, 20000);
    if (!connected) {
        std::fprintf(stderr, "No session to measure: the saved login did not connect.\n");
        return;
    }
    const qint64 pid = program.pid();
    support::waitFor([pid] { return support::ChildProcess::cpuTicks(pid) < 0; }, kSettleMs);
    report({QStringLiteral("resident memory 3 s after connecting"),
            static_cast<double>(support::ChildProcess::statusKb(pid, "VmRSS")) / 1024, -1,
            QStringLiteral("MB"), QString()});
    report({QStringLiteral("processor time, %1 s idle and connected").arg(kIdleSeconds),
            ticksOver(pid, kIdleSeconds), -1, QStringLiteral("ticks"), QString()});
}
