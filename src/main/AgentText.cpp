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

bool AgentTextFilter::Moment::pass(qint64 now)
{
    // A clock that was set back does not close it for longer.
    if (last && now >= *last && now - *last < kPause)
        return false;
    last = now;
    return true;
}

AgentText AgentTextFilter::admit(const QString& text, bool trusted, qint64 now)
{
    AgentText said = AgentText::read(text);
    said.trusted = trusted;
    said.firewallEnabled = said.firewallEnabled && m_firewallEnabled.pass(now);
    said.firewallDisabled = said.firewallDisabled && m_firewallDisabled.pass(now);
    said.ruleNotFound = said.ruleNotFound && m_ruleNotFound.pass(now);
    if (!trusted) {
        said.event = AgentText::Nothing;
        said.quiet = true;
    } else if (said.event == AgentText::Nothing || said.event == AgentText::Firewall) {
        if (text != m_lastText)
            m_sameText.last.reset();
        m_lastText = text;
        said.quiet = !m_sameText.pass(now);
    }
    return said;
}
