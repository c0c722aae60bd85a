#include "sim/ControlPage.h"
#include "sim/Simulator.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QSaveFile>
#include <QTextStream>

#include <csignal>

namespace {

struct Options
{
    sim::Simulator::Ports ports;
    int controlPort = 0;
    QString portFile;
    QString datapathDir;
};

Options readOptions()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "The simulated service: lookup servers, orchestrator, and a page to watch "
        "and steer them.");
    parser.addHelpOption();
    const auto add = [&](const char* name, const char* description, const char* value) {
        parser.addOption(QCommandLineOption(QLatin1String(name), QLatin1String(description),
                                            QLatin1String(value)));
    };
    add("primary-port", "Port of the primary lookup server; 0, the default, takes a free one.",
        "port");
    add("backup-port", "Port of the backup lookup server.", "port");
    add("orchestrator-port", "Port of the orchestrator.", "port");
    add("control-port", "Port of the control page.", "port");
    add("port-file", "File that receives all addresses as JSON once everything is ready.", "file");
    add("datapath-dir", "Program directory whose stand-in datapath the control page steers.",
        "directory");
    parser.process(*QCoreApplication::instance());
    const auto port = [&](const char* name) { return parser.value(QLatin1String(name)).toInt(); };
    Options options;
    options.ports = {port("primary-port"), port("backup-port"), port("orchestrator-port")};
    options.controlPort = port("control-port");
    options.portFile = parser.value("port-file");
    const QString directory = parser.value("datapath-dir");
    if (!directory.isEmpty())
        options.datapathDir = QDir(directory).absolutePath();
    return options;
}

void print(const sim::Simulator& simulator, const sim::ControlPage& control)
{
    QTextStream out(stdout);
    out << "Simulator ready.\n\n"
        << "  Lookup, primary  " << simulator.primaryUrl() << "\n"
        << "  Lookup, backup   " << simulator.backupUrl() << "\n"
        << "  Orchestrator     " << simulator.orchRoot() << "\n"
        << "  Control page     " << control.url() << "\n\n"
        << "  Customer ID   Username              Password        Logs in\n";
    const sim::Scenario scenario = simulator.scenario();
    for (const sim::Account& account : scenario.accounts)
        out << "  " << account.customer.leftJustified(12) << "  "
            << account.username.leftJustified(20) << "  " << account.password.leftJustified(14)
            << "  " << account.remark() << "\n";
    out << "\nexport VELTARO_LOOKUP_PRIMARY=" << simulator.primaryUrl() << "\n"
        << "export VELTARO_LOOKUP_BACKUP=" << simulator.backupUrl() << "\n"
        << Qt::flush;
}

bool writePortFile(const QString& path, const sim::Simulator& simulator,
                   const sim::ControlPage& control)
{
    const QJsonObject addresses{{"lookupPrimary", simulator.primaryUrl()},
                                {"lookupBackup", simulator.backupUrl()},
                                {"orchestrator", simulator.orchRoot()},
                                {"authUrl", simulator.authUrl()},
                                {"control", control.url()}};
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(QJsonDocument(addresses).toJson()) > 0 &&
           file.commit();
}

int fail(const QString& message)
{
    QTextStream(stderr) << "veltaro-sim: " << message << Qt::endl;
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    // Blocked before any thread exists, so that only the wait below receives them.
    sigset_t endSignals;
    sigemptyset(&endSignals);
    sigaddset(&endSignals, SIGTERM);
    sigaddset(&endSignals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &endSignals, nullptr);

    QCoreApplication application(argc, argv);
    const Options options = readOptions();
    sim::Simulator simulator;
    simulator.watchDatapath(options.datapathDir);
    sim::ControlPage control(simulator);
    if (!simulator.start(options.ports) || !control.start(options.controlPort))
        return fail("a port is taken");
    print(simulator, control);
    if (!options.portFile.isEmpty() && !writePortFile(options.portFile, simulator, control))
        return fail("cannot write " + options.portFile);

    int received = 0;
    sigwait(&endSignals, &received);
    return 0;
}
