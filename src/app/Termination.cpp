#include "app/Termination.h"

#include <QSocketNotifier>

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

namespace {

int s_pipe[2] = {-1, -1};

// Little is allowed here: the rest follows from the event loop.
void passOn(int)
{
    const ssize_t written = ::write(s_pipe[1], "", 1);
    Q_UNUSED(written)
}

} // namespace

Termination::Termination()
{
    if (::pipe2(s_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto* const notifier = new QSocketNotifier(s_pipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        emit wanted();
    });
    struct sigaction action = {};
    action.sa_handler = &passOn;
    action.sa_flags = int(SA_RESTART | SA_RESETHAND);
    for (const int signal : {SIGTERM, SIGHUP, SIGINT})
        ::sigaction(signal, &action, nullptr);
}
