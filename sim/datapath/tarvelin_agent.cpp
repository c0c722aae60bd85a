// The datapath's agent: reads its configuration, waits for the dispatch service and tells the
// client about it on the client's local socket. The client takes every read as one message, so a
// message goes out only when the one before has been read.
#include "StandIn.h"

#include <linux/sockios.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <regex>

namespace {

constexpr char kGreeting[] = R"({"type": 9, "msg": "hello"})";
constexpr char kReady[] = R"({"type": 0})";
constexpr char kDisconnect[] = R"({"type": 1})";
constexpr long long kPollMs = 5;

/// Whether the configuration is what the agent can work with; records what is wrong.
bool configurationIsSound(const std::string& directory)
{
    static const std::regex lines("orchid=-?\\d+\ncpeid=-?\\d+\ncustomerid=-?\\d+\n"
                                  "commaddr=[^\n]*\n(bakcommaddr=[^\n]*\n)*");
    const std::string agent = standin::readFile(directory + "/cpeagent.conf");
    const bool agentSound = std::regex_match(agent, lines);
    if (!agentSound)
        standin::violation(directory, agent.empty() ? "agent: cpeagent.conf is missing or empty"
                                                    : "agent: cpeagent.conf is malformed");
    const std::string filter = standin::readFile(directory + "/filterConfig.conf");
    const bool filterSound = !filter.empty() && filter.back() == '\n';
    if (!filterSound)
        standin::violation(directory, "agent: filterConfig.conf is missing or has no last line");
    return agentSound && filterSound;
}

std::string waitForDispatchPort(const std::string& directory)
{
    std::string port;
    while ((port = standin::readFile(directory + "/dispatch.port")).empty())
        standin::sleepMs(kPollMs);
    return port;
}

int connectToClient(const std::string& directory)
{
    // A relative name: the directory may be longer than a socket address can hold.
    if (chdir(directory.c_str()) != 0)
        return -1;
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, "UI_SOCKET");
    while (connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        standin::sleepMs(kPollMs);
    return fd;
}

bool sendAll(int fd, const std::string& text)
{
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t size = send(fd, text.data() + done, text.size() - done, MSG_NOSIGNAL);
        if (size <= 0)
            return false;
        done += static_cast<size_t>(size);
    }
    return true;
}

/// Waits until the client has read everything, then for the gap.
void settle(int fd, long long gapMs)
{
    int unread = 0;
    while (ioctl(fd, SIOCOUTQ, &unread) == 0 && unread > 0) {
        pollfd state{fd, 0, 0};
        if (poll(&state, 1, static_cast<int>(kPollMs)) > 0)
            return; // the client has closed
    }
    standin::sleepMs(gapMs);
}

std::string flood(const standin::Behaviour& behaviour)
{
    const long long size = standin::numberOf(behaviour, "agent_flood_bytes", 8LL << 20);
    std::string text;
    while (static_cast<long long>(text.size()) < size)
        text += R"({"notice": "nothing of interest, again and again"})";
    return text;
}

std::string noise()
{
    std::string bytes;
    for (int i = 0; i < 4096; ++i)
        bytes.push_back(static_cast<char>((i * 167 + 13) % 256));
    return bytes;
}

std::vector<std::string> messagesFor(const standin::Behaviour& behaviour, const std::string& port)
{
    const std::string mode = standin::textOf(behaviour, "agent", "normal");
    const std::string portMessage = R"({"dispatchConfPort": )" + port + "}";
    if (mode == "silent")
        return {};
    if (mode == "no_port")
        return {kGreeting, kReady};
    if (mode == "disconnect")
        return {kGreeting, kDisconnect};
    if (mode == "garbage")
        return {noise(), R"({"dispatchConfPort": "none"})", R"({"type":0})"};
    if (mode == "flood")
        return {flood(behaviour)};
    if (mode == "flood_ready")
        return {flood(behaviour), portMessage, kReady};
    return {kGreeting, portMessage, kReady};
}

} // namespace

int main()
{
    signal(SIGPIPE, SIG_IGN);
    const std::string directory = standin::programDirectory();
    const standin::Behaviour behaviour = standin::readBehaviour(directory);
    standin::armSuddenDeath(behaviour);
    if (configurationIsSound(directory)) {
        const std::string port = waitForDispatchPort(directory);
        const int fd = connectToClient(directory);
        const long long gap = standin::numberOf(behaviour, "agent_gap_ms", 50);
        for (const std::string& message : messagesFor(behaviour, port)) {
            if (!sendAll(fd, message))
                break;
            settle(fd, gap);
        }
    }
    while (true)
        pause();
}
