#include "orch/HostIdentity.h"

#include "app/ConfigUtil.h"
#include "app/Platform.h"
#include "app/ProcessRun.h"

#include <QFile>
#include <QRandomGenerator>

namespace {

constexpr int kSerialLength = 32;
constexpr quint32 kSerialSymbols = 15;
constexpr char kSerialAlphabet[] = "0123456789ABCDE";
constexpr int kUnameTimeoutMs = 30000;

QString unknown()
{
    return QStringLiteral("unknown");
}

QString newSerial()
{
    QString serial;
    serial.reserve(kSerialLength);
    for (int i = 0; i < kSerialLength; ++i) {
        const quint32 symbol = QRandomGenerator64::global()->bounded(kSerialSymbols);
        serial += QLatin1Char(kSerialAlphabet[symbol]);
    }
    return serial;
}

QString readDistribution()
{
    QFile file(platform().hostFile(QStringLiteral("/etc/lsb-release")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return unknown();
    return hostidentity::distributionId(QString::fromUtf8(file.readAll()));
}

QString askArchitecture()
{
    const ProcessRun uname =
        runProcess(QStringLiteral("uname"), {QStringLiteral("-m")}, kUnameTimeoutMs);
    return uname.finished ? hostidentity::cpuArchitecture(uname.output) : unknown();
}

} // namespace

namespace hostidentity {

QString deviceId(const QByteArray& fstab)
{
    static constexpr char kUuid[] = "UUID=";
    const auto lines = fstab.split('\n');
    for (const QByteArray& line : lines) {
        const int found = line.startsWith('#') ? -1 : line.indexOf(kUuid);
        if (found < 0)
            continue;
        const int start = found + int(qstrlen(kUuid));
        int end = start;
        while (end < line.size() && line[end] != ' ' && line[end] != '\t')
            ++end;
        if (end < line.size())
            return QString::fromUtf8(line.mid(start, end - start)).trimmed().toUpper();
    }
    return QString();
}

QString distributionId(const QString& lsbRelease)
{
    if (lsbRelease.contains(QLatin1String("uos")))
        return QStringLiteral("uosLinux");
    if (lsbRelease.contains(QLatin1String("kylin")))
        return QStringLiteral("kylinLinux");
    return QStringLiteral("ubuntu");
}

QString cpuArchitecture(const QByteArray& machine)
{
    if (machine.contains("x86_64"))
        return QStringLiteral("X86");
    if (machine.contains("aarch64"))
        return QStringLiteral("ARM");
    return unknown();
}

} // namespace hostidentity

QString Util::getSerial()
{
    QString serial = ConfigUtil::savedText(ConfigUtil::SERIAL);
    if (serial.size() != kSerialLength) {
        serial = newSerial();
        ConfigUtil::writeValue(ConfigUtil::SERIAL, serial);
    }
    return serial;
}

QString Util::getDeviceId()
{
    QFile file(platform().hostFile(QStringLiteral("/etc/fstab")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    return hostidentity::deviceId(file.readAll());
}

QString Util::getDistributionId()
{
    static const QString cached = readDistribution();
    return cached;
}

QString Util::getCpuArchitecture()
{
    static const QString cached = askArchitecture();
    return cached;
}

QString Util::readFileContent(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return QString();
    return QString::fromUtf8(file.readAll());
}
