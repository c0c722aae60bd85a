#include "StandIn.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace standin {

std::string programDirectory()
{
    char path[PATH_MAX];
    const ssize_t size = readlink("/proc/self/exe", path, sizeof path);
    const std::string whole(path, size > 0 ? static_cast<size_t>(size) : 0);
    const size_t slash = whole.rfind('/');
    return slash == std::string::npos ? std::string(".") : whole.substr(0, slash);
}

std::string readFile(const std::string& path)
{
    std::string text;
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return text;
    char chunk[65536];
    ssize_t size = 0;
    while ((size = read(fd, chunk, sizeof chunk)) > 0)
        text.append(chunk, static_cast<size_t>(size));
    close(fd);
    return text;
}

static void writeAll(int fd, const std::string& text)
{
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t size = write(fd, text.data() + done, text.size() - done);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return;
        done += static_cast<size_t>(size);
    }
}

void replaceFile(const std::string& path, const std::string& text)
{
    const std::string temporary = path + "." + std::to_string(getpid());
    const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0)
        return;
    writeAll(fd, text);
    close(fd);
    if (rename(temporary.c_str(), path.c_str()) != 0)
        unlink(temporary.c_str());
}

void appendLine(const std::string& path, const std::string& line)
{
    const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd < 0)
        return;
    writeAll(fd, line + "\n");
    close(fd);
}

Behaviour readBehaviour(const std::string& directory)
{
    Behaviour behaviour;
    const std::string text = readFile(directory + "/datapath.behaviour");
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string::npos)
            end = text.size();
        const std::string line = text.substr(start, end - start);
        const size_t equals = line.find('=');
        if (equals != std::string::npos)
            behaviour[line.substr(0, equals)] = line.substr(equals + 1);
        start = end + 1;
    }
    return behaviour;
}

std::string textOf(const Behaviour& behaviour, const std::string& key, const std::string& initial)
{
    const auto it = behaviour.find(key);
    return it == behaviour.end() ? initial : it->second;
}

long long numberOf(const Behaviour& behaviour, const std::string& key, long long initial)
{
    const auto it = behaviour.find(key);
    return it == behaviour.end() ? initial : std::strtoll(it->second.c_str(), nullptr, 10);
}

void violation(const std::string& directory, const std::string& text)
{
    appendLine(directory + "/datapath.violations", text);
}

void sleepMs(long long ms)
{
    timespec left{static_cast<time_t>(ms / 1000), static_cast<long>(ms % 1000) * 1000000L};
    while (nanosleep(&left, &left) != 0 && errno == EINTR) {
    }
}

long long monotonicMs()
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

void armSuddenDeath(const Behaviour& behaviour)
{
    const long long ms = numberOf(behaviour, "die_after_ms", 0);
    if (ms <= 0)
        return;
    // Nobody handles SIGALRM, so the process dies at once, as from a crash.
    itimerval timer{};
    timer.it_value.tv_sec = static_cast<time_t>(ms / 1000);
    timer.it_value.tv_usec = static_cast<suseconds_t>(ms % 1000) * 1000;
    setitimer(ITIMER_REAL, &timer, nullptr);
}

} // namespace standin
