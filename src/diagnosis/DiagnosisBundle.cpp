#include "diagnosis/DiagnosisBundle.h"

#include "app/Deployment.h"
#include "app/Log.h"
#include "app/Platform.h"
#include "app/ProcessRun.h"
#include "app/ProgramFile.h"
#include "diagnosis/WorkFolder.h"

#include <QDir>
#include <QSysInfo>

namespace {

constexpr int kProgramMs = 30000;
constexpr int kMostOutput = 16 << 20; // routing tables can be long
constexpr int kSerialPart = 10;
constexpr int kSeparator = 63;

struct LogName
{
    const char* prefix;
    const char* inBundle;
};

constexpr LogName logPathMap[] = {
    {"tq_agent", "cpeagent"}, {"tarvelin_datapath", "tqconn"}, {"tarvelin_serviced", "service"}};

ProcessRun run(const QString& program, const QStringList& arguments)
{
    return runProcess(program, arguments, kProgramMs, kMostOutput);
}

QByteArray section(const QString& program, const QStringList& arguments)
{
    const QString command = QStringList(QStringList(program) + arguments).join(QLatin1Char(' '));
    return QByteArray(kSeparator, '=') + "\ncmdline: " + command.toUtf8() + '\n' +
           run(program, arguments).output + '\n';
}

} // namespace

namespace diagnosis {

QString bundleName(const QString& logFile)
{
    const int dot = logFile.indexOf(QLatin1Char('.'));
    const QString prefix = logFile.left(dot);
    for (const LogName& name : logPathMap) {
        if (prefix == QLatin1String(name.prefix))
            return QLatin1String(name.inBundle) + logFile.mid(prefix.size());
    }
    return logFile;
}

QString archiveName(const QString& serial, const QString& stamp)
{
    return QStringLiteral("linux_%1_%2.tar.gz").arg(serial.left(kSerialPart), stamp);
}

bool testNetwork(const WorkFolder& folder)
{
    bool reachable = false;
    folder.write(QStringLiteral("network.log"), QByteArray());
    const QStringList targets =
        QStringList{QStringLiteral("114.114.114.114"), QStringLiteral("8.8.8.8")} +
        deployment::pingTargets();
    for (const QString& target : targets) {
        const ProcessRun ping =
            run(QStringLiteral("ping"), {QStringLiteral("-c"), QStringLiteral("3"), target});
        folder.append(QStringLiteral("network.log"), ping.output);
        reachable = reachable || (ping.finished && ping.exitCode == 0);
    }
    return reachable;
}

void describeDevice(const WorkFolder& folder)
{
    const QString header =
        QStringLiteral("Architecture: %1\nKernel: %2\nVersion: %3\nHostname: %4\n"
                       "Product Name: %5\n")
            .arg(QSysInfo::buildAbi(), QSysInfo::kernelType(), QSysInfo::kernelVersion(),
                 QSysInfo::machineHostName(), QSysInfo::prettyProductName());
    const QString ip = QStringLiteral("ip");
    const QString route = QStringLiteral("route");
    folder.write(QStringLiteral("device.log"),
                 header.toUtf8() + section(QStringLiteral("ifconfig"), {}) + section(ip, {route}) +
                     section(ip, {QStringLiteral("-6"), route}) +
                     section(QStringLiteral("cat"), {QStringLiteral("/etc/hosts")}));
}

void getAllLogs(const WorkFolder& folder)
{
    QStringList filters;
    for (const LogName& name : logPathMap)
        filters.append(QLatin1String(name.prefix) + QStringLiteral(".*"));
    const QDir program(platform().programDir());
    const QStringList logs = program.entryList(filters, QDir::Files | QDir::CaseSensitive);
    for (const QString& log : logs)
        folder.copy(program.filePath(log), bundleName(log));
    folder.copy(Log::file(), QStringLiteral("ui.log"));
    const QString database = QStringLiteral("PersistentConf.db");
    folder.copy(program.filePath(database), database);
}

// The archive is made by us, so that tar finds a file that nobody else can have put there.
QString makeTarPackage(const WorkFolder& folder, const QString& name)
{
    const QString path = QDir::tempPath() + QLatin1Char('/') + name;
    if (!folder.isUsable() ||
        ProgramFile::replace(path, QByteArray()) != ProgramFile::Replaced::Done)
        return {};
    const QString work = folder.path();
    const int slash = work.lastIndexOf(QLatin1Char('/'));
    run(QStringLiteral("tar"), {QStringLiteral("-zcf"), path,
                                QStringLiteral("-C") + work.left(slash), work.mid(slash + 1)});
    if (ProgramFile::toRead(path).size() > 0)
        return path;
    ProgramFile::remove(path);
    return {};
}

} // namespace diagnosis
