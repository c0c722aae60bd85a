#include "main/ConnectReply.h"

#include "orch/JsonUtil.h"
#include "orch/TextUtil.h"

#include <algorithm>

ConnectReply ConnectReply::fromJson(const QJsonObject& json)
{
    const auto text = [&json](const char* key) {
        return JsonUtil::getQString(json, QLatin1String(key), QString());
    };
    const auto number = [&json](const char* key, int missing) {
        return JsonUtil::getInt(json, QLatin1String(key), missing);
    };
    const auto flag = [&json](const char* key) {
        return JsonUtil::getBool(json, QLatin1String(key), false);
    };
    ConnectReply reply;
    reply.heartbeatUrl = text("heartbeatUrl");
    reply.heartbeatInterval = number("heartbeatInterval", reply.heartbeatInterval);
    reply.lanAssignIp = text("lanAssignIp");
    reply.orchDomains = JsonUtil::getArrayToString(json, QStringLiteral("orchDomains"));
    reply.cpeId = number("cpeId", reply.cpeId);
    reply.agentCpeId = number("cpeId", reply.agentCpeId);
    reply.mobileDetect = flag("mobileDetect");
    reply.mobileDetectFailed = text("mobileDetectFailed");
    reply.mobileDetectFailedEn = text("mobileDetectFailedEn");
    reply.enableQuantum = flag("enableQuantum");
    reply.enablePQC = flag("enablePQC");
    reply.orchId = number("orchId", 0);
    reply.customerId = number("customerId", 0);
    reply.candidateCommServers =
        JsonUtil::getArrayToStringList(json, QStringLiteral("candidateCommServers"));
    reply.commuServerAddr = text("commuServerAddr");
    reply.siteTemplateId = text("siteTemplateId");
    reply.mobileTrafficVersion = number("mobileTrafficVersion", reply.mobileTrafficVersion);
    reply.mobileTrafficDownloadUrl = text("mobileTrafficDownloadUrl");
    return reply;
}

QByteArray ConnectReply::cpeAgentConf() const
{
    QByteArray conf;
    conf += "orchid=" + QByteArray::number(orchId) + '\n';
    conf += "cpeid=" + QByteArray::number(agentCpeId) + '\n';
    conf += "customerid=" + QByteArray::number(customerId) + '\n';
    conf += "commaddr=" + commuServerAddr.toUtf8() + '\n';
    for (const QString& candidate : candidateCommServers)
        conf += "bakcommaddr=" + candidate.toUtf8() + '\n';
    return conf;
}

bool ConnectReply::addressesFitLines() const
{
    const auto isControl = [](QChar c) { return c.category() == QChar::Other_Control; };
    const auto fits = [&isControl](const QString& address) {
        return std::none_of(address.cbegin(), address.cend(), isControl);
    };
    return fits(commuServerAddr) &&
           std::all_of(candidateCommServers.cbegin(), candidateCommServers.cend(), fits);
}

QStringList ConnectReply::commServerHosts() const
{
    QStringList hosts{Util::trimmedHost(commuServerAddr)};
    for (const QString& candidate : candidateCommServers) {
        if (hosts.size() == kMostHosts)
            break;
        const QString host = Util::trimmedHost(candidate);
        if (!hosts.contains(host))
            hosts.append(host);
    }
    return hosts;
}

QString ConnectReply::filterVersion() const
{
    return siteTemplateId + QLatin1Char('/') + QString::number(mobileTrafficVersion);
}
