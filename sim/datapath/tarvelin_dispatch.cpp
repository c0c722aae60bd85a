// The datapath's command-line tool, as far as the client uses it.
#include "StandIn.h"

#include <cstdio>

namespace {

constexpr char kPcapDirFile[] = "/dispatch.pcapdir";

bool startsWith(const std::string& text, const std::string& start)
{
    return text.compare(0, start.size(), start) == 0;
}

int printPcapDir(const std::string& directory)
{
    const std::string chosen = standin::readFile(directory + kPcapDirFile);
    std::printf("Dispatch tool\n##############\n%s\n##############\n",
                chosen.empty() ? directory.c_str() : chosen.c_str());
    return 0;
}

int writeReport(const std::string& directory, const std::string& path)
{
    std::string report = "Dispatch diagnosis\nport: ";
    report += standin::readFile(directory + "/dispatch.port") + "\n";
    for (const auto& [key, value] : standin::readBehaviour(directory))
        report += key + ": " + value + "\n";
    standin::replaceFile(path, report);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string directory = standin::programDirectory();
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    std::string line;
    for (const std::string& argument : arguments)
        line += (line.empty() ? "" : " ") + argument;
    standin::appendLine(directory + "/dispatch.calls", line);

    const std::string command = arguments.empty() ? std::string() : arguments.front();
    const std::string setPcapDir = "set_pcap_dir/";
    if (command == "get_pcap_dir")
        return printPcapDir(directory);
    if (command == "diagnose" && arguments.size() == 2)
        return writeReport(directory, arguments[1]);
    if (startsWith(command, setPcapDir)) {
        standin::replaceFile(directory + kPcapDirFile, command.substr(setPcapDir.size()));
        return 0;
    }
    if (startsWith(command, "set_orvek_pcapEnable/engine=0 ") ||
        startsWith(command, "set_dp_pcap/")) {
        const std::string folder = standin::readFile(directory + kPcapDirFile);
        if (command == "set_dp_pcap/1" && !folder.empty())
            standin::replaceFile(folder + "/datapath.pcap", "no packets\n");
        return 0;
    }
    standin::violation(directory, "dispatch tool: unknown command " + line);
    std::fprintf(stderr, "dispatch: unknown command\n");
    return 1;
}
