#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

/// The host's IPv4 interfaces and its default gateway. The functions over values are pure; the
/// others ask the kernel. Any thread.

/// One IPv4 address of an interface.
struct HostAddress
{
    quint32 ip = 0;        ///< host byte order
    int prefixLength = -1; ///< 0 to 32, -1 when unknown
};

struct HostInterface
{
    bool up = false;
    bool loopback = false;
    QVector<HostAddress> ipv4;
};

/// The system's interfaces with their IPv4 addresses.
QVector<HostInterface> hostInterfaces();

/// "192.168.1.20" for 0xC0A80114.
QString dottedAddress(quint32 hostOrder);

/// The first address, on an interface that is not loopback, whose subnet holds `gateway` (host
/// byte order), as dotted text; empty when there is none or `gateway` is 0.
QString addressFacing(const QVector<HostInterface>& interfaces, quint32 gateway);

/// What one datagram of a netlink route dump means for the receiver (see netlink(7)).
struct RouteChunk
{
    enum class State {
        More,    ///< a multi-part dump goes on
        Done,    ///< the dump is complete
        Invalid, ///< cut short, inconsistent, or an error message
    };
    State state = State::Invalid;
    int messageType = 0; ///< nlmsg_type of the message that decided; 0 when there was no header
};
RouteChunk checkRouteChunk(const QByteArray& chunk);

/// The gateway in the first IPv4 route of the main table, in network byte order as received; 0
/// when that route has none or there is no such route. `messages` is the received dump; anything
/// after the first inconsistent length is ignored (see rtnetlink(7)).
quint32 parseDefaultGateway(const QByteArray& messages);

namespace Util {

/// Dotted IPv4 address of the interface on the default gateway's subnet, or "".
QString getNICIp();

/// The IPv4 default gateway in network byte order, 0 when there is none. `ok`, when given,
/// tells whether the kernel could be asked. Blocks at most 2 s a datagram.
quint32 getGateway(bool* ok);

} // namespace Util
