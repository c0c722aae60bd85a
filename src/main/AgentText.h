#pragma once

#include <QString>

/// What one text of the datapath's agent says. The texts are JSON, but they are recognised by
/// fixed substrings alone, exactly as the agent writes them.
struct AgentText
{
    enum Event {
        Nothing,      ///< no marker
        Firewall,     ///< a firewall notice
        Port,         ///< the dispatch service's port
        PortUnusable, ///< a port that is no number
        Ready,        ///< the tunnel can be used
        Disconnect    ///< the agent refuses the session
    };

    bool firewallEnabled = false;  ///< the host firewall is on
    bool firewallDisabled = false; ///< the host firewall is off
    bool ruleNotFound = false;     ///< the agent had to restore its firewall rule
    bool hello = false;            ///< a greeting
    Event event = Nothing;         ///< what it means to a running attempt; one event a text
    int port = 0;                  ///< with Port

    static AgentText read(const QString& text);
};
