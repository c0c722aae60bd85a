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

/// What 500 connections, made and stopped by hand one after the other, leave behind in the client.
void benchCycles(const Report& report)
{
    constexpr int kCycles = 500;
    support::Scene scene;
    if (!scene.start() || !scene.rememberLogin() || !scene.startRemembered() ||
        !scene.driver().awaitConnected()) {
        std::fprintf(stderr, "No cycles to measure: the client did not connect.\n");
        return;
    }
    struct Held
    {
        double memory;
        double descriptors;
        double threads;
    };
    const qint64 pid = scene.program().pid();
    const auto held = [pid] {
        return Held{static_cast<double>(support::ChildProcess::statusKb(pid, "VmRSS")) / 1024,
                    static_cast<double>(support::ChildProcess::descriptors(pid)),
                    static_cast<double>(support::ChildProcess::threads(pid))};
    };
    Held first{};
    for (int cycle = 0; cycle < kCycles; ++cycle) {
        if (!scene.driver().stop() || !scene.app().press(QStringLiteral("Connect")) ||
            !scene.driver().awaitConnected()) {
            std::fprintf(stderr, "Cycle %d did not come to its end.\n", cycle + 1);
            return;
        }
        if (cycle == 0)
            first = held();
    }
    const Held last = held();
    const QString after = QStringLiteral("%1 after ").append(QString::number(kCycles)) +
                          QStringLiteral(" connect/stop cycles (floor: after 1)");
    report({after.arg(QStringLiteral("memory")), last.memory, first.memory, QStringLiteral("MB"),
            QString()});
    report({after.arg(QStringLiteral("descriptors")), last.descriptors, first.descriptors,
            QString(), QString()});
    report(
        {after.arg(QStringLiteral("threads")), last.threads, first.threads, QString(), QString()});
}

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
