#pragma once

#include <QString>

#include <optional>

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

    /// From root's or the own user's process: it counts for an attempt or a session.
    bool trusted = false;

    /// Not to be logged as datapath data: said a moment ago already, or by somebody who is not
    /// trusted.
    bool quiet = false;

    /// Whether it holds a notice for the user.
    bool hasNotice() const { return firewallEnabled || firewallDisabled || ruleNotFound; }

    static AgentText read(const QString& text);
};

/// Takes what was said a moment ago already out of what the agent's connections say, so that no
/// flood of texts becomes one of prompts and log lines. A notice counts once in kPause, whatever
/// text it stands in. A text without an event is quiet when it is the one before it again. Events
/// always pass: an attempt may wait for a second ready notice that is the same as the first.
class AgentTextFilter
{
public:
    static constexpr qint64 kPause = 5000; ///< milliseconds

    /// What `text` says at the moment `now`, in milliseconds of any clock, with what it repeats
    /// taken out. From a peer that is not trusted it is at most a notice.
    AgentText admit(const QString& text, bool trusted, qint64 now);

private:
    struct Moment
    {
        bool pass(qint64 now);
        std::optional<qint64> last;
    };

    Moment m_firewallEnabled;
    Moment m_firewallDisabled;
    Moment m_ruleNotFound;
    Moment m_sameText;
    QString m_lastText;
};
