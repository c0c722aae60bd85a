#include "FirstWindow.h"

#include "support/ChildProcess.h"
#include "support/Wait.h"

#include <chrono>
#include <cstdlib>
#include <memory>
#include <poll.h>

#include <xcb/xcb.h>

namespace {

using Clock = std::chrono::steady_clock;

struct FreeDeleter
{
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, FreeDeleter>;

/// Learns of every window that the X server maps.
class MapWatch
{
public:
    explicit MapWatch(const QString& display)
        : m_connection(xcb_connect(display.toLatin1().constData(), nullptr))
    {
        const xcb_setup_t* setup = xcb_get_setup(m_connection);
        if (setup == nullptr)
            return;
        const uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, xcb_setup_roots_iterator(setup).data->root,
                                     XCB_CW_EVENT_MASK, &events);
        // A round trip, so that the server knows before the program starts.
        const Reply<xcb_get_input_focus_reply_t> ignored(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
    }
    ~MapWatch() { xcb_disconnect(m_connection); }
    MapWatch(const MapWatch&) = delete;
    MapWatch& operator=(const MapWatch&) = delete;

    /// Blocks until a window of some size is mapped; false after `timeoutMs`.
    bool awaitWindow(int timeoutMs)
    {
        const Clock::time_point end = Clock::now() + std::chrono::milliseconds(timeoutMs);
        while (Clock::now() < end && xcb_connection_has_error(m_connection) == 0) {
            const Reply<xcb_generic_event_t> event(xcb_poll_for_event(m_connection));
            if (!event) {
                pollfd server{xcb_get_file_descriptor(m_connection), POLLIN, 0};
                ::poll(&server, 1, 100);
                continue;
            }
            constexpr int kTypeMask = 0x7f;
            if ((event->response_type & kTypeMask) != XCB_MAP_NOTIFY)
                continue;
            if (isLarge(reinterpret_cast<const xcb_map_notify_event_t*>(event.get())->window))
                return true;
        }
        return false;
    }

private:
    bool isLarge(xcb_window_t window) const
    {
        const Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
        return geometry && geometry->width >= 200 && geometry->height >= 100;
    }

    xcb_connection_t* m_connection;
};

/// Waits until the process has used no processor time for a while.
void awaitRest(qint64 pid)
{
    constexpr int kQuietLooks = 15;
    qint64 last = -1;
    int quiet = 0;
    support::waitFor([&] {
        const qint64 now = support::ChildProcess::cpuTicks(pid);
        quiet = now == last ? quiet + 1 : 0;
        last = now;
        return quiet >= kQuietLooks;
    });
}

} // namespace

FirstWindow measureFirstWindow(const QString& program, const QProcessEnvironment& environment)
{
    constexpr int kTimeoutMs = 10000;
    FirstWindow result;
    MapWatch watch(environment.value(QStringLiteral("DISPLAY")));
    support::ChildProcess process;
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    const Clock::time_point start = Clock::now();
    process.start(program, QStringList());
    if (!watch.awaitWindow(kTimeoutMs))
        return result;
    result.milliseconds = std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    awaitRest(process.processId());
    result.memoryMb =
        static_cast<double>(support::ChildProcess::statusKb(process.processId(), "VmRSS")) / 1024;
    return result;
}

double ticksOver(qint64 pid, int seconds)
{
    using support::ChildProcess;
    awaitRest(pid);
    const qint64 before = ChildProcess::cpuTicks(pid);
    // The process ends the wait early only by ending itself.
    if (support::waitFor([pid] { return ChildProcess::cpuTicks(pid) < 0; }, seconds * 1000))
        return -1;
    return static_cast<double>(ChildProcess::cpuTicks(pid) - before);
}
