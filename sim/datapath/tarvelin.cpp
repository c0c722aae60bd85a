// The datapath's control script, as the client sees it: "tarvelin -S serial -T token -R domains
// -D start" and "tarvelin -D stop". "tarvelin -D crash", for tests and the simulator's control page
// alone, kills the daemons as a crash would.
#include "StandIn.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char kSupervise[] = "-supervise";
constexpr int kUsageError = 2;
constexpr long long kPatienceMs = 2000;

std::string linkTarget(const std::string& path)
{
    char target[PATH_MAX];
    const ssize_t size = readlink(path.c_str(), target, sizeof target);
    std::string text(target, size > 0 ? static_cast<size_t>(size) : 0);
    const std::string deleted = " (deleted)";
    if (text.size() > deleted.size() &&
        text.compare(text.size() - deleted.size(), deleted.size(), deleted) == 0)
        text.erase(text.size() - deleted.size());
    return text;
}

bool isSupervisor(const std::string& process)
{
    const std::string commandLine = standin::readFile(process + "/cmdline");
    const size_t end = commandLine.find('\0');
    return end != std::string::npos &&
           commandLine.compare(end + 1, strlen(kSupervise), kSupervise) == 0;
}

/// The processes that were started from this directory, and no others: several clients may run
/// on one machine.
std::vector<pid_t> daemonsOf(const std::string& directory)
{
    std::vector<pid_t> found;
    DIR* processes = opendir("/proc");
    if (processes == nullptr)
        return found;
    while (const dirent* entry = readdir(processes)) {
        const auto pid = static_cast<pid_t>(std::strtol(entry->d_name, nullptr, 10));
        if (pid <= 0 || pid == getpid())
            continue;
        const std::string process = std::string("/proc/") + entry->d_name;
        const std::string program = linkTarget(process + "/exe");
        if (program == directory + "/tarvelin_datapath" ||
            program == directory + "/tarvelin_agent" ||
            (program == directory + "/tarvelin" && isSupervisor(process)))
            found.push_back(pid);
    }
    closedir(processes);
    return found;
}

void stopDaemons(const std::string& directory)
{
    const long long start = standin::monotonicMs();
    int signalToSend = SIGTERM;
    for (auto pids = daemonsOf(directory); !pids.empty(); pids = daemonsOf(directory)) {
        for (pid_t pid : pids)
            kill(pid, signalToSend);
        standin::sleepMs(2);
        if (standin::monotonicMs() - start > kPatienceMs)
            signalToSend = SIGKILL;
    }
}

/// The supervisor stays, to collect them.
void crashDaemons(const std::string& directory)
{
    for (pid_t pid : daemonsOf(directory)) {
        if (!isSupervisor("/proc/" + std::to_string(pid)))
            kill(pid, SIGKILL);
    }
}

/// Detaches from the caller's terminal and pipes: it waits for them to close.
void detach(int keptFd)
{
    setsid();
    const int null = open("/dev/null", O_RDWR);
    for (int fd = 0; fd < 3; ++fd)
        dup2(null, fd);
    const long highest = sysconf(_SC_OPEN_MAX) < 4096 ? sysconf(_SC_OPEN_MAX) : 4096;
    for (int fd = 3; fd < highest; ++fd) {
        if (fd != keptFd)
            close(fd);
    }
}

void run(const std::string& program, const std::vector<std::string>& arguments)
{
    std::vector<char*> argv{const_cast<char*>(program.c_str())};
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(program.c_str(), argv.data());
    _exit(127);
}

pid_t spawn(const std::string& program)
{
    const pid_t pid = fork();
    if (pid == 0) {
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        run(program, {});
    }
    return pid;
}

/// A test that crashes takes its datapath along: it has left its process ID here.
bool ownerHasGone(const std::string& directory)
{
    const std::string owner = standin::readFile(directory + "/standin.owner");
    return !owner.empty() && kill(std::atoi(owner.c_str()), 0) != 0;
}

/// Parent of the two daemons. It collects them when they die, whoever kills them, because an
/// uncollected process still shows up in the process list.
int supervise(const std::string& directory, int readyFd)
{
    sigset_t signals;
    sigemptyset(&signals);
    for (int number : {SIGTERM, SIGINT, SIGHUP, SIGCHLD})
        sigaddset(&signals, number);
    sigprocmask(SIG_BLOCK, &signals, nullptr);
    fcntl(readyFd, F_SETFD, FD_CLOEXEC);
    const pid_t children[] = {spawn(directory + "/tarvelin_datapath"),
                              spawn(directory + "/tarvelin_agent")};
    close(readyFd);
    while (true) {
        const timespec aWhile{1, 0};
        const int received = sigtimedwait(&signals, nullptr, &aWhile);
        if (received < 0 ? ownerHasGone(directory) : received != SIGCHLD) {
            for (pid_t child : children)
                kill(child, SIGTERM);
        }
        pid_t collected = 0;
        do {
            collected = waitpid(-1, nullptr, WNOHANG);
        } while (collected > 0);
        if (collected < 0)
            return 0;
    }
}

/// Returns once both daemons run: the pipe reports its end when neither holds it any longer.
void startDaemons(const std::string& directory)
{
    unlink((directory + "/dispatch.port").c_str());
    int ends[2];
    if (pipe(ends) != 0)
        return;
    if (fork() == 0) {
        detach(ends[1]);
        run(directory + "/tarvelin", {kSupervise, std::to_string(ends[1])});
    }
    close(ends[1]);
    char nothing = 0;
    while (read(ends[0], &nothing, 1) > 0) {
    }
    close(ends[0]);
}

bool isSerial(const std::string& serial)
{
    return serial.size() == 32 && serial.find_first_not_of("0123456789ABCDE") == std::string::npos;
}

/// What is wrong with the arguments; empty when they are good.
std::string findFault(const std::vector<std::string>& arguments)
{
    if (arguments == std::vector<std::string>{"-D", "stop"})
        return {};
    if (arguments.size() != 8 || arguments[0] != "-S" || arguments[2] != "-T" ||
        arguments[4] != "-R" || arguments[6] != "-D" || arguments[7] != "start")
        return "unknown arguments";
    if (!isSerial(arguments[1]))
        return "\"" + arguments[1] + "\" is no serial";
    if (arguments[3].empty())
        return "the token is empty";
    return {};
}

void logCall(const std::string& directory, std::vector<std::string> arguments)
{
    std::string line;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const bool token = i > 0 && arguments[i - 1] == "-T";
        line += (i == 0 ? "" : " ") + (token && !arguments[i].empty() ? "***" : arguments[i]);
    }
    standin::appendLine(directory + "/tarvelin.calls", line);
}

} // namespace

int main(int argc, char** argv)
{
    const std::string directory = standin::programDirectory();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() == 2 && arguments[0] == kSupervise)
        return supervise(directory, std::atoi(arguments[1].c_str()));
    if (arguments == std::vector<std::string>{"-D", "crash"}) {
        crashDaemons(directory);
        return 0;
    }

    logCall(directory, arguments);
    const std::string fault = findFault(arguments);
    if (!fault.empty()) {
        standin::violation(directory, "tarvelin: " + fault);
        std::fprintf(stderr, "tarvelin: %s\n", fault.c_str());
        return kUsageError;
    }
    const standin::Behaviour behaviour = standin::readBehaviour(directory);
    standin::sleepMs(standin::numberOf(behaviour, "script_delay_ms", 0));
    std::fputs(standin::textOf(behaviour, "script_stdout", "").c_str(), stdout);
    std::fputs(standin::textOf(behaviour, "script_stderr", "").c_str(), stderr);

    const bool start = arguments.back() == "start";
    stopDaemons(directory);
    const auto exitCode =
        static_cast<int>(standin::numberOf(behaviour, start ? "script_exit" : "stop_exit", 0));
    if (start && exitCode == 0)
        startDaemons(directory);
    return exitCode;
}
