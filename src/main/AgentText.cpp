#include "main/AgentText.h"

#include <QRegularExpression>

namespace {

AgentText::Event readPort(const QString& text, int& port)
{
    static const QRegularExpression pattern(QStringLiteral("\"dispatchConfPort\"\\s*:\\s*(\\d+)"));
    bool isNumber = false;
    port = pattern.match(text).captured(1).toInt(&isNumber);
    return isNumber ? AgentText::Port : AgentText::PortUnusable;
}

} // namespace

AgentText AgentText::read(const QString& text)
{
    const auto has = [&text](const char* marker) { return text.contains(QLatin1String(marker)); };
    AgentText result;
    result.firewallEnabled = has("firewall enabled");
    result.firewallDisabled = !result.firewallEnabled && has("firewall disabled");
    result.ruleNotFound = has("rule not found");
    result.hello = has("hello");

    if (has("type\": 6"))
        result.event = Firewall;
    else if (has("dispatchConfPort"))
        result.event = readPort(text, result.port);
    else if (has("type\": 0"))
        result.event = Ready;
    else if (has("type\": 1"))
        result.event = Disconnect;
    return result;
}
