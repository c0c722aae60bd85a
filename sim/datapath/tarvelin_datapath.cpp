// The datapath's dispatch service: a request of 8 bytes, a reply of 8 bytes and a text, on a free
// TCP port of the loopback interface that is written to the file "dispatch.port".
#include "StandIn.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

/// The protocol's header, in the byte order of the host.
struct Header
{
    uint8_t version;
    uint8_t module;
    uint16_t type;
    uint32_t length;
};
static_assert(sizeof(Header) == 8, "the header has no padding on the wire");

constexpr size_t kLongReply = 10000;

struct Client
{
    int fd;
    std::string received;
};

class Service
{
public:
    explicit Service(std::string directory) : m_directory(std::move(directory)) { refresh(); }

    bool listenOnFreePort();
    [[noreturn]] void serve();

private:
    void refresh();
    void advance();
    bool read(Client& client);
    bool answer(const Client& client, const Header& request);
    std::string flowText();
    bool send(const Client& client, const Header& request, const std::string& text);

    std::string m_directory;
    standin::Behaviour m_behaviour;
    timespec m_behaviourTime{-1, 0};
    int m_listener = -1;
    std::vector<Client> m_clients;
    long long m_lastMs = standin::monotonicMs();
    double m_txBytes = 0;
    double m_rxBytes = 0;
};

bool Service::listenOnFreePort()
{
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    auto* generic = reinterpret_cast<sockaddr*>(&address);
    socklen_t size = sizeof address;
    if (bind(m_listener, generic, size) != 0 || listen(m_listener, 16) != 0 ||
        getsockname(m_listener, generic, &size) != 0)
        return false;
    standin::replaceFile(m_directory + "/dispatch.port", std::to_string(ntohs(address.sin_port)));
    return true;
}

void Service::refresh()
{
    struct stat info
    {
    };
    const bool exists = stat((m_directory + "/datapath.behaviour").c_str(), &info) == 0;
    const timespec time = exists ? info.st_mtim : timespec{0, 0};
    if (time.tv_sec == m_behaviourTime.tv_sec && time.tv_nsec == m_behaviourTime.tv_nsec)
        return;
    m_behaviourTime = time;
    m_behaviour = standin::readBehaviour(m_directory);
}

/// Counts what has gone through the tunnels since the last look.
void Service::advance()
{
    const long long now = standin::monotonicMs();
    const double seconds = static_cast<double>(now - m_lastMs) / 1000.0;
    m_lastMs = now;
    if (standin::textOf(m_behaviour, "tunnels", "up") != "up")
        return;
    const auto tx = static_cast<double>(standin::numberOf(m_behaviour, "tx_bps", 2000000));
    const auto rx = static_cast<double>(standin::numberOf(m_behaviour, "rx_bps", 8000000));
    m_txBytes += tx / 8 * seconds;
    m_rxBytes += rx / 8 * seconds;
}

std::string tunnelText(int number, const char* peer, bool up, double tx, double rx)
{
    const auto txBytes = static_cast<long long>(tx);
    const auto rxBytes = static_cast<long long>(rx);
    char text[512];
    std::snprintf(text, sizeof text,
                  "Tunnel %d\n  Peer: %s\n  State: %s\n"
                  "  Tunnel(txbytes/rxbytes/txpkts/rxpkts): %lld,%lld,%lld,%lld\n",
                  number, peer, up ? "UP" : "DOWN", txBytes, rxBytes, txBytes / 1200,
                  rxBytes / 1200);
    return text;
}

std::string Service::flowText()
{
    const std::string tunnels = standin::textOf(m_behaviour, "tunnels", "up");
    if (tunnels == "none")
        return "Flow statistics\nno tunnels\n";
    const bool up = tunnels == "up";
    return "Flow statistics\n" +
           tunnelText(1, "203.0.113.10:4500", up, m_txBytes * 3 / 4, m_rxBytes * 3 / 4) +
           tunnelText(2, "203.0.113.20:4500", up, m_txBytes / 4, m_rxBytes / 4);
}

bool sendAll(int fd, const std::string& bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t size = ::send(fd, bytes.data() + done, bytes.size() - done, MSG_NOSIGNAL);
        if (size <= 0)
            return false;
        done += static_cast<size_t>(size);
    }
    return true;
}

bool Service::send(const Client& client, const Header& request, const std::string& text)
{
    const std::string mode = standin::textOf(m_behaviour, "dispatch", "normal");
    if (mode == "silent")
        return true;
    std::string payload = mode == "short" ? std::string() : text;
    if (mode == "long" && payload.size() + sizeof(Header) < kLongReply)
        payload.append(kLongReply - sizeof(Header) - payload.size(), '\n');
    Header header{0, request.module, request.type,
                  static_cast<uint32_t>(sizeof(Header) + payload.size())};
    if (mode == "bad_version")
        header.version = 1;
    std::string bytes(reinterpret_cast<const char*>(&header), sizeof header);
    bytes += payload;
    if (mode == "close_midreply") {
        sendAll(client.fd, bytes.substr(0, bytes.size() / 2));
        return false;
    }
    return sendAll(client.fd, bytes);
}

/// False when the connection is to be closed.
bool Service::answer(const Client& client, const Header& request)
{
    refresh();
    advance();
    const bool sound = request.version == 0 && request.length == sizeof(Header);
    if (sound && request.module == 2 && request.type == 16)
        return send(client, request, flowText());
    if (sound && request.module == 4 && request.type == 22)
        return send(client, request, standin::textOf(m_behaviour, "tunnel_ip", "10.8.0.2"));
    char text[128];
    std::snprintf(text, sizeof text,
                  "dispatch: unknown request, version %u module %u type %u length %u",
                  unsigned{request.version}, unsigned{request.module}, unsigned{request.type},
                  unsigned{request.length});
    standin::violation(m_directory, text);
    return false;
}

bool Service::read(Client& client)
{
    char chunk[4096];
    const ssize_t size = recv(client.fd, chunk, sizeof chunk, 0);
    if (size <= 0)
        return false;
    client.received.append(chunk, static_cast<size_t>(size));
    while (client.received.size() >= sizeof(Header)) {
        Header request{};
        std::memcpy(&request, client.received.data(), sizeof request);
        client.received.erase(0, sizeof request);
        if (!answer(client, request))
            return false;
    }
    return true;
}

void Service::serve()
{
    while (true) {
        std::vector<pollfd> watched{{m_listener, POLLIN, 0}};
        for (const Client& client : m_clients)
            watched.push_back({client.fd, POLLIN, 0});
        poll(watched.data(), watched.size(), -1);
        for (size_t i = watched.size(); i-- > 1;) {
            if (watched[i].revents == 0 || read(m_clients[i - 1]))
                continue;
            close(m_clients[i - 1].fd);
            m_clients.erase(m_clients.begin() + static_cast<std::ptrdiff_t>(i - 1));
        }
        if ((watched[0].revents & POLLIN) == 0)
            continue;
        const int fd = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (fd < 0)
            continue;
        const int yes = 1;
        setsockopt(fd, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
        m_clients.push_back({fd, {}});
    }
}

} // namespace

int main()
{
    signal(SIGPIPE, SIG_IGN);
    const std::string directory = standin::programDirectory();
    standin::armSuddenDeath(standin::readBehaviour(directory));
    Service service(directory);
    if (!service.listenOnFreePort())
        return 1;
    service.serve();
}
