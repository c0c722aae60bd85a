#include "orch/ClientInfo.h"

#include "app/Platform.h"
#include "app/Product.h"
#include "orch/HostIdentity.h"

#include <QHostInfo>
#include <QSysInfo>

ClientFacts gatherClientFacts()
{
    ClientFacts facts;
    facts.interfaces = hostInterfaces();
    facts.deviceName = Util::readFileContent(
        platform().hostFile(QStringLiteral("/sys/class/dmi/id/board_vendor")));
    facts.deviceType =
        Util::readFileContent(platform().hostFile(QStringLiteral("/sys/class/dmi/id/board_name")));
    facts.productType = QSysInfo::productType();
    facts.productVersion = QSysInfo::productVersion();
    facts.kernelVersion = QSysInfo::kernelVersion();
    facts.hostName = QHostInfo::localHostName();
    facts.serial = Util::getSerial();
    facts.cpuArchitecture = Util::getCpuArchitecture();
    return facts;
}

QJsonObject clientInfo(const ClientFacts& facts)
{
    return {
        {QStringLiteral("internalIp"), internalAddresses(facts.interfaces)},
        {QStringLiteral("deviceName"), facts.deviceName},
        {QStringLiteral("deviceType"), facts.deviceType},
        {QStringLiteral("opsType"), facts.productType},
        {QStringLiteral("opsVersion"), facts.productVersion + QStringLiteral("(kernel ") +
                                           facts.kernelVersion + QLatin1Char(')')},
        {QStringLiteral("hostName"), facts.hostName},
        {QStringLiteral("sn"), facts.serial},
        {QStringLiteral("osArchitecture"), facts.cpuArchitecture},
        {QStringLiteral("clientType"), QLatin1String(product::kName)},
    };
}

QString internalAddresses(const QVector<HostInterface>& interfaces)
{
    QStringList texts;
    for (const HostInterface& interface : interfaces) {
        if (!interface.up || interface.loopback)
            continue;
        for (const HostAddress& address : interface.ipv4) {
            QString text = dottedAddress(address.ip);
            if (address.prefixLength >= 0)
                text += QLatin1Char('/') + QString::number(address.prefixLength);
            texts.append(text);
        }
    }
    return texts.join(QLatin1Char(','));
}
