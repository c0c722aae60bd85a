#pragma once

#include "sim/HttpEnd.h"
#include "sim/Simulator.h"

#include <QJsonObject>

namespace sim {

/// The window into a running simulator: a page for people at "/", and for programs
///
/// - GET /sim/state: addresses, accounts, clients, violations, the last 500 requests (or N with
///   "?last=N"), faults, the scenario and the datapath's behaviour as one JSON object;
/// - GET /sim/bundle: the last diagnosis bundle, as a file
/// - POST /sim/switch: a JSON object with any of the members below; replies with
///   {"ok": true} or status 400 and {"ok": false, "refused": [names]}.
///
/// | member | effect |
/// |---|---|
/// | situation: name | everything well, then what the situation of that name says |
/// | well: true | everything well again; sessions stay |
/// | scenario: {...} | change the scenario, see Scenario::apply |
/// | fault: {path, ...} or faults: [...] | put faults on paths, see Fault |
/// | clearFaults: true | all faults away |
/// | filterSize: {inclusive, exclusive, duplicates} | generate a filter document |
/// | order: {...} | an order with the next heartbeat, see Simulator::order |
/// | revoke: reason | end all sessions; -1 for no reason code |
/// | datapath: {key: value, ...} | change keys of the behaviour file; null removes one |
/// | resetDatapath: true | everything about the datapath well again |
/// | crashDatapath: true | kill the datapath's running processes |
/// | stop, start: "primary", "backup" or "orchestrator" | one server away or back |
/// | clear: true | forget requests and violations |
class ControlPage
{
public:
    explicit ControlPage(Simulator& simulator);
    ~ControlPage();

    /// Serves on 127.0.0.1; 0 takes a free port. False when it is taken.
    bool start(int port = 0);
    void stop();

    /// "http://127.0.0.1:PORT/"
    QString url() const;

    /// What /sim/state replies with, at most this many requests among it.
    QJsonObject state(int lastRequests) const;

    /// Carries out the members of `command`; returns the names that it could not.
    QStringList carryOut(const QJsonObject& command);

private:
    HttpReply serve(const HttpCall& call);

    Simulator& m_simulator;
    HttpEnd m_http;
};

/// The page itself.
QByteArray controlHtml();

} // namespace sim
