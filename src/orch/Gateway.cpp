#include "orch/Gateway.h"

#include "app/Platform.h"

#include <QHostAddress>
#include <QNetworkInterface>
#include <QtDebug>
#include <QtEndian>

#include <cerrno>
#include <cstring>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

constexpr int kHeaderSize = sizeof(nlmsghdr);
constexpr int kRouteSize = sizeof(rtmsg);
constexpr int kAttributeSize = sizeof(rtattr);
constexpr int kReceiveSize = 4096;
/// The kernel answers at once; the bound only keeps a broken one from holding the window.
constexpr timeval kReceiveTimeout{2, 0};

int aligned(int length)
{
    return (length + 3) & ~3;
}

/// Netlink data carries no alignment promise once it is a slice of a larger buffer.
template <typename Record>
Record readRecord(const QByteArray& bytes, int at)
{
    Record record;
    std::memcpy(&record, bytes.constData() + at, sizeof record);
    return record;
}

/// Reads the header at `at`; false when it or its message does not lie within the bytes.
bool readHeader(const QByteArray& bytes, int at, nlmsghdr& header)
{
    if (bytes.size() - at < kHeaderSize)
        return false;
    header = readRecord<nlmsghdr>(bytes, at);
    return header.nlmsg_len >= static_cast<quint32>(kHeaderSize) &&
           header.nlmsg_len <= static_cast<quint32>(bytes.size() - at);
}

/// The first gateway attribute between two positions, 0 when there is none.
quint32 gatewayAttribute(const QByteArray& bytes, int at, int end)
{
    while (end - at >= kAttributeSize) {
        const auto attribute = readRecord<rtattr>(bytes, at);
        if (attribute.rta_len < kAttributeSize || attribute.rta_len > end - at)
            return 0;
        if (attribute.rta_type == RTA_GATEWAY) {
            const int payload = attribute.rta_len - kAttributeSize;
            return payload >= 4 ? readRecord<quint32>(bytes, at + kAttributeSize) : 0;
        }
        at += aligned(attribute.rta_len);
    }
    return 0;
}

/// Closes the socket on every path.
class RouteSocket
{
public:
    RouteSocket() : m_fd(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_ROUTE))
    {
        if (m_fd >= 0)
            ::setsockopt(m_fd, SOL_SOCKET, SO_RCVTIMEO, &kReceiveTimeout, sizeof kReceiveTimeout);
    }
    ~RouteSocket()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    RouteSocket(const RouteSocket&) = delete;
    RouteSocket& operator=(const RouteSocket&) = delete;

    bool isOpen() const { return m_fd >= 0; }

    bool requestDump() const
    {
        struct
        {
            nlmsghdr header;
            rtmsg route;
        } request{};
        static_assert(sizeof request == 28, "the request is a header and a route message");
        request.header.nlmsg_len = sizeof request;
        request.header.nlmsg_type = RTM_GETROUTE;
        request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
        request.header.nlmsg_pid = static_cast<quint32>(::getpid());
        return ::send(m_fd, &request, sizeof request, 0) == ssize_t(sizeof request);
    }

    /// Receives the whole dump; false, with a log line where the data is to blame, otherwise.
    bool receiveDump(QByteArray& messages) const
    {
        QByteArray buffer(kReceiveSize, Qt::Uninitialized);
        for (;;) {
            const ssize_t received = ::recv(m_fd, buffer.data(), size_t(buffer.size()), 0);
            if (received < 0 && errno == EINTR)
                continue;
            if (received < 0)
                return false;
            const QByteArray chunk = buffer.left(static_cast<int>(received));
            const RouteChunk verdict = checkRouteChunk(chunk);
            if (verdict.state == RouteChunk::State::Invalid) {
                qCritical("readNlSock: received packets is not valid, nlmsg_type: %d",
                          verdict.messageType);
                return false;
            }
            messages += chunk;
            if (verdict.state == RouteChunk::State::Done)
                return true;
        }
    }

private:
    int m_fd;
};

} // namespace

QVector<HostInterface> hostInterfaces()
{
    QVector<HostInterface> result;
    const auto all = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface& one : all) {
        HostInterface entry;
        entry.up = one.flags().testFlag(QNetworkInterface::IsUp);
        entry.loopback = one.flags().testFlag(QNetworkInterface::IsLoopBack);
        const auto addresses = one.addressEntries();
        for (const QNetworkAddressEntry& address : addresses) {
            if (address.ip().protocol() == QAbstractSocket::IPv4Protocol)
                entry.ipv4.append({address.ip().toIPv4Address(), address.prefixLength()});
        }
        result.append(entry);
    }
    return result;
}

QString dottedAddress(quint32 hostOrder)
{
    return QHostAddress(hostOrder).toString();
}

QString addressFacing(const QVector<HostInterface>& interfaces, quint32 gateway)
{
    if (gateway == 0)
        return QString();
    for (const HostInterface& interface : interfaces) {
        if (interface.loopback)
            continue;
        for (const HostAddress& address : interface.ipv4) {
            if (address.prefixLength < 0 || address.prefixLength > 32)
                continue;
            // Shifting 32 bits by 32 is undefined, hence the wider type.
            const auto mask = static_cast<quint32>(~quint64(0) << (32 - address.prefixLength));
            if ((address.ip & mask) == (gateway & mask))
                return dottedAddress(address.ip);
        }
    }
    return QString();
}

RouteChunk checkRouteChunk(const QByteArray& chunk)
{
    nlmsghdr header{};
    int at = 0;
    do {
        if (!readHeader(chunk, at, header))
            return {RouteChunk::State::Invalid, header.nlmsg_type};
        if (header.nlmsg_type == NLMSG_ERROR)
            return {RouteChunk::State::Invalid, header.nlmsg_type};
        // Newer kernels put the end of the dump into the datagram of its last routes.
        if (header.nlmsg_type == NLMSG_DONE || !(header.nlmsg_flags & NLM_F_MULTI))
            return {RouteChunk::State::Done, header.nlmsg_type};
        at += aligned(static_cast<int>(header.nlmsg_len));
    } while (at < chunk.size());
    return {RouteChunk::State::More, header.nlmsg_type};
}

quint32 parseDefaultGateway(const QByteArray& messages)
{
    nlmsghdr header{};
    for (int at = 0; readHeader(messages, at, header);
         at += aligned(static_cast<int>(header.nlmsg_len))) {
        const int end = at + static_cast<int>(header.nlmsg_len);
        const int body = at + kHeaderSize;
        if (header.nlmsg_type != RTM_NEWROUTE || end - body < kRouteSize)
            continue;
        const auto route = readRecord<rtmsg>(messages, body);
        if (route.rtm_family == AF_INET && route.rtm_table == RT_TABLE_MAIN)
            return gatewayAttribute(messages, body + kRouteSize, end);
    }
    return 0;
}

quint32 Util::getGateway(bool* ok)
{
    if (ok)
        *ok = false;
    const RouteSocket socket;
    if (!socket.isOpen()) {
        qCritical("getGateway: create socket failed");
        return 0;
    }
    if (!socket.requestDump()) {
        qCritical("getGateway: send messages which get gateway requests failed");
        return 0;
    }
    QByteArray messages;
    if (!socket.receiveDump(messages)) {
        qCritical("getGateway: read messages from socket failed");
        return 0;
    }
    if (ok)
        *ok = true;
    return parseDefaultGateway(messages);
}

QString Util::getNICIp()
{
    if (platform().ownAddress)
        return platform().ownAddress();
    return addressFacing(hostInterfaces(), qFromBigEndian(getGateway(nullptr)));
}
