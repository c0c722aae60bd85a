#include "dispatch/tarvelinGetFlowStatistics.h"

#include "dispatch/FlowText.h"

#include <QDebug>
#include <QElapsedTimer>

#include <arpa/inet.h>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace dispatch {
int port = 54321;
} // namespace dispatch

namespace {

constexpr uint32_t kFirstSize = 4096;
// Far beyond any status text; a length above it is a broken reply.
constexpr uint32_t kLargestReply = 64u << 20;
constexpr int kExchangeMs = 2000;
constexpr int kPromptMs = 50; // a service that took longer is waited for with care
constexpr unsigned char kFlowModule = 2;
constexpr unsigned short kFlowType = 16;
constexpr unsigned char kTunnelModule = 4;
constexpr unsigned short kTunnelType = 22;

/// Header of every message; multi-byte fields in the host's byte order.
struct _TQ_DISPATCH_HDR
{
    uint8_t Version;
    uint8_t Module;
    uint16_t Type;
    uint32_t Length; ///< the whole message, header included
};
static_assert(sizeof(_TQ_DISPATCH_HDR) == 8, "the header is eight bytes on the wire");

/// A message buffer, header first.
struct _TQ_DISPATCH_DESC
{
    void* Buff;
    uint32_t Size;
};

int sg_WinDispatchSock = -1;

char* bytes(const _TQ_DISPATCH_DESC* desc)
{
    return static_cast<char*>(desc->Buff);
}

_TQ_DISPATCH_HDR header(const _TQ_DISPATCH_DESC* desc)
{
    _TQ_DISPATCH_HDR hdr;
    std::memcpy(&hdr, desc->Buff, sizeof hdr);
    return hdr;
}

const char* payload(const _TQ_DISPATCH_DESC* desc)
{
    return bytes(desc) + sizeof(_TQ_DISPATCH_HDR);
}

void _TQ_WinDispatchFreeDesc(_TQ_DISPATCH_DESC* desc)
{
    std::free(desc->Buff);
    delete desc;
}

using Desc = std::unique_ptr<_TQ_DISPATCH_DESC, void (*)(_TQ_DISPATCH_DESC*)>;

Desc _TQ_WinDispatchAllocDesc()
{
    void* buffer = std::calloc(1, kFirstSize);
    return Desc(buffer ? new _TQ_DISPATCH_DESC{buffer, kFirstSize} : nullptr,
                &_TQ_WinDispatchFreeDesc);
}

void _TQ_WinDispatchInitHdr(_TQ_DISPATCH_DESC* desc, unsigned char module, unsigned short type)
{
    const _TQ_DISPATCH_HDR hdr{0, module, type, sizeof(_TQ_DISPATCH_HDR)};
    std::memcpy(desc->Buff, &hdr, sizeof hdr);
}

/// Waits until the socket can be read or written; false when the exchange's time is over.
bool waitFor(int sock, short events, const QElapsedTimer& clock)
{
    while (true) {
        const int left = kExchangeMs - int(clock.elapsed());
        if (left <= 0)
            return false;
        pollfd item{sock, events, 0};
        const int ready = ::poll(&item, 1, left);
        if (ready > 0)
            return true;
        if (ready == 0 || errno != EINTR)
            return false;
    }
}

/// Connects a non-blocking socket: a service that does not accept must not hold the caller.
bool connectInTime(int sock, const sockaddr_in& address)
{
    if (::connect(sock, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return true;
    QElapsedTimer clock;
    clock.start();
    if (errno != EINPROGRESS || !waitFor(sock, POLLOUT, clock))
        return false;
    int error = 0;
    socklen_t size = sizeof error;
    return ::getsockopt(sock, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
}

/// Makes a connected socket blocking, with the exchange's time as the longest wait of one call: a
/// service that answers at once then costs one call for each piece of its reply.
bool makeBlocking(int sock)
{
    const timeval longest{kExchangeMs / 1000, 0};
    return ::setsockopt(sock, SOL_SOCKET, SO_RCVTIMEO, &longest, sizeof longest) == 0 &&
           ::setsockopt(sock, SOL_SOCKET, SO_SNDTIMEO, &longest, sizeof longest) == 0 &&
           ::fcntl(sock, F_SETFL, ::fcntl(sock, F_GETFL) & ~O_NONBLOCK) == 0;
}

int _TQ_WinSocketConnect(const char* ip, unsigned short port)
{
    const int sock = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (sock < 0)
        return -1;
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (::inet_pton(AF_INET, ip, &address.sin_addr) != 1 || !connectInTime(sock, address) ||
        !makeBlocking(sock)) {
        ::close(sock);
        return -1;
    }
    sg_WinDispatchSock = sock;
    return 0;
}

bool tryAgain()
{
    return errno == EAGAIN || errno == EINTR;
}

int _TQ_WinDispatchSend(int sock, const _TQ_DISPATCH_DESC* desc, const QElapsedTimer& clock)
{
    const uint32_t length = header(desc).Length;
    uint32_t sent = 0;
    while (sent < length) {
        if (sent > 0 && !waitFor(sock, POLLOUT, clock))
            return -EIO;
        const ssize_t n = ::send(sock, bytes(desc) + sent, length - sent, MSG_NOSIGNAL);
        if (n >= 0)
            sent += uint32_t(n);
        else if (!tryAgain() || clock.hasExpired(kExchangeMs))
            return -errno;
    }
    return 0;
}

/// Reads until `have` has reached `want`; false when the peer closed, failed or fell silent. Only
/// the first call may wait by itself; a reply in pieces is waited for with what is left of the
/// exchange's time.
bool receiveUpTo(int sock, char* buffer, uint32_t have, uint32_t want, const QElapsedTimer& clock)
{
    for (bool first = true; have < want; first = false) {
        if ((!first || clock.elapsed() > kPromptMs) && !waitFor(sock, POLLIN, clock))
            return false;
        const ssize_t n = ::recv(sock, buffer + have, want - have, 0);
        if (n > 0)
            have += uint32_t(n);
        else if (n == 0 || !tryAgain() || clock.hasExpired(kExchangeMs))
            return false;
    }
    return true;
}

int _TQ_WinDispatchRecv(int sock, _TQ_DISPATCH_DESC* desc, const QElapsedTimer& clock)
{
    if (!receiveUpTo(sock, bytes(desc), 0, sizeof(_TQ_DISPATCH_HDR), clock))
        return -EIO;
    const _TQ_DISPATCH_HDR hdr = header(desc);
    if (hdr.Version != 0)
        return -EBADR;
    if (hdr.Length >= desc->Size) {
        void* larger =
            hdr.Length > kLargestReply ? nullptr : std::realloc(desc->Buff, hdr.Length + 1);
        if (!larger)
            return -ENOMEM;
        desc->Buff = larger;
        desc->Size = hdr.Length + 1;
        bytes(desc)[hdr.Length] = '\0';
    }
    return receiveUpTo(sock, bytes(desc), sizeof hdr, hdr.Length, clock) ? 0 : -EIO;
}

int connectToService()
{
    return _TQ_WinSocketConnect("127.0.0.1", static_cast<unsigned short>(dispatch::port));
}

/// One request and its reply, in place.
int _TQ_WinDispatchConfigure(_TQ_DISPATCH_DESC* desc)
{
    if (sg_WinDispatchSock == -1) {
        const int connected = connectToService();
        if (connected != 0)
            return connected;
    }
    QElapsedTimer clock;
    clock.start();
    int result = _TQ_WinDispatchSend(sg_WinDispatchSock, desc, clock);
    if (result == 0) {
        std::memset(desc->Buff, 0, desc->Size);
        result = _TQ_WinDispatchRecv(sg_WinDispatchSock, desc, clock);
    }
    if (result < 0)
        TQ_GetFlowStatisticsExit();
    return result;
}

} // namespace

int TQ_GetFlowStatisticsInit()
{
    qDebug("Dispatch comm port: %d", dispatch::port);
    return connectToService();
}

int TQ_DispatchGetFlow(long long* upSize, long long* downSize, bool* tunDown, bool* hasTunnels)
{
    *upSize = 0;
    *downSize = 0;
    *tunDown = false;
    *hasTunnels = true;
    const Desc desc = _TQ_WinDispatchAllocDesc();
    if (!desc)
        return -EINVAL;
    _TQ_WinDispatchInitHdr(desc.get(), kFlowModule, kFlowType);
    const int result = _TQ_WinDispatchConfigure(desc.get());
    if (result != 0)
        return result;
    const FlowTotals totals = scanFlowText(payload(desc.get()));
    *upSize = totals.upSize;
    *downSize = totals.downSize;
    *tunDown = totals.tunDown;
    *hasTunnels = totals.hasTunnels;
    return 0;
}

int TQ_DispatchGetTunIp(char* dst, int len)
{
    if (len <= 0)
        return -EINVAL;
    const size_t room = size_t(len);
    std::strncpy(dst, "Unknown", room);
    const Desc desc = _TQ_WinDispatchAllocDesc();
    if (!desc)
        return -EINVAL;
    _TQ_WinDispatchInitHdr(desc.get(), kTunnelModule, kTunnelType);
    const int result = _TQ_WinDispatchConfigure(desc.get());
    if (result != 0)
        return result;
    const size_t length = std::strlen(payload(desc.get()));
    if (length > room)
        return -EINVAL;
    std::memset(dst, 0, room);
    std::memcpy(dst, payload(desc.get()), length);
    return 0;
}

void TQ_GetFlowStatisticsExit()
{
    if (sg_WinDispatchSock == -1)
        return;
    ::close(sg_WinDispatchSock);
    sg_WinDispatchSock = -1;
}
