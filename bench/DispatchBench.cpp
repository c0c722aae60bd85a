// One poll of the dispatch service against the same bytes over a raw blocking socket.
#include "Measure.h"

#include "dispatch/tarvelinGetFlowStatistics.h"

#include <arpa/inet.h>
#include <chrono>
#include <cstring>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

constexpr int kRequestSize = 8;
constexpr int kReplySize = 600;
constexpr int kExchanges = 4000;

std::string makeReply()
{
    std::string text = "Tunnel 1\nState: UP\n"
                       "Tunnel(txbytes/rxbytes/txpkts/rxpkts): 123456789,987654321,1000,2000\n";
    text.resize(kReplySize - kRequestSize, '\n');
    std::string reply(kRequestSize, '\0');
    reply[1] = 2;
    reply[2] = 16;
    const uint32_t length = kReplySize;
    std::memcpy(&reply[4], &length, sizeof length);
    return reply + text;
}

bool readWhole(int socket, char* buffer, int size)
{
    int have = 0;
    while (have < size) {
        const ssize_t n = ::recv(socket, buffer + have, static_cast<size_t>(size - have), 0);
        if (n <= 0)
            return false;
        have += static_cast<int>(n);
    }
    return true;
}

void switchOffDelay(int socket)
{
    const int on = 1;
    ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
}

/// Keeps this thread, and those that it starts meanwhile, on one core. Waking a thread on another
/// core costs several times an exchange, and where the scheduler puts the threads changes from run
/// to run.
class OneCore
{
public:
    OneCore()
    {
        ::sched_getaffinity(0, sizeof m_before, &m_before);
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(::sched_getcpu(), &one);
        ::sched_setaffinity(0, sizeof one, &one);
    }
    ~OneCore() { ::sched_setaffinity(0, sizeof m_before, &m_before); }
    OneCore(const OneCore&) = delete;
    OneCore& operator=(const OneCore&) = delete;

private:
    cpu_set_t m_before{};
};

/// Answers every request on every connection until its listener is closed.
class Service
{
public:
    Service()
    {
        m_listener = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), size);
        ::listen(m_listener, 4);
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size);
        m_port = ntohs(address.sin_port);
        m_acceptor = std::thread([this] { run(); });
    }

    ~Service()
    {
        ::shutdown(m_listener, SHUT_RDWR);
        m_acceptor.join();
        ::close(m_listener);
    }

    int port() const { return m_port; }

private:
    void run()
    {
        for (;;) {
            const int peer = ::accept(m_listener, nullptr, nullptr);
            if (peer < 0)
                return;
            std::thread([peer] { serve(peer); }).detach();
        }
    }

    static void serve(int peer)
    {
        const std::string reply = makeReply();
        switchOffDelay(peer);
        char request[kRequestSize];
        while (readWhole(peer, request, kRequestSize)) {
            if (::send(peer, reply.data(), reply.size(), MSG_NOSIGNAL) < 0)
                break;
        }
        ::close(peer);
    }

    int m_listener = -1;
    int m_port = 0;
    std::thread m_acceptor;
};

int connectTo(int port)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<uint16_t>(port));
    ::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address);
    return socket;
}

} // namespace

void benchDispatch(const Report& report)
{
    const OneCore pinned;
    const Service service;
    dispatch::port = service.port();
    const int raw = connectTo(service.port());
    char request[kRequestSize] = {0, 2, 16, 0, kRequestSize, 0, 0, 0};
    char reply[kReplySize];
    int failures = 0;
    const Pair times = interleaved(
        kExchanges,
        [&] {
            long long up = 0;
            long long down = 0;
            bool tunDown = false;
            bool hasTunnels = false;
            if (TQ_DispatchGetFlow(&up, &down, &tunDown, &hasTunnels) != 0 || up != 123456789)
                ++failures;
        },
        [&] {
            ::send(raw, request, kRequestSize, 0);
            if (!readWhole(raw, reply, kReplySize))
                ++failures;
        });
    TQ_GetFlowStatisticsExit();
    ::close(raw);
    report({failures == 0 ? QStringLiteral("dispatch poll of 600 bytes")
                          : QStringLiteral("dispatch poll: %1 EXCHANGES FAILED").arg(failures),
            times.subject * 1000, times.floor * 1000, QStringLiteral("us"),
            QStringLiteral("within 1.3")});
}
