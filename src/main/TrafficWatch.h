#pragma once

#include "main/FlowRates.h"

#include <QObject>

class QTimer;

/// Looks every 3 s, while connected, at what the datapath has carried: the rates, the tunnels'
/// health, and whether the dispatch service still answers. One poll may block for 4 s: 2 to connect
/// again after a failure, and 2 for the exchange. GUI thread.
class TrafficWatch : public QObject
{
    Q_OBJECT

public:
    explicit TrafficWatch(QObject* parent);

    /// A connection begins. In intranet mode there is no datapath to look at: only tick() comes.
    void start(bool intranet);

    /// It ends. What was counted is kept: the next connection goes on from there.
    void stop();

    /// One poll, as the timer makes it.
    void onStatusNotify();

signals:
    /// A poll begins; the heartbeat follows this beat.
    void tick();
    /// The smoothed rates, in bit/s.
    void measured(long long up, long long down);
    /// There is nothing to show yet, or nothing any more.
    void unmeasured();
    /// No tunnel is up, 30 s after connecting at the earliest; told once.
    void tunnelsLost();
    void tunnelsRestored();
    /// The third poll in a row has failed, with this result of the dispatch service's client.
    void serviceLost(int result);

private:
    void pollFailed(int result);
    void tellHealth(TunnelHealth health);

    QTimer* m_StatCountTimer;
    bool m_intranet = false;
    bool m_NetworkFailure = false; ///< the loss of all tunnels is being shown
    int m_StatusFailTime = 0;      ///< consecutive failed polls
    FlowRates m_flow;
    long long m_ConnectSuccessStamp = 0; ///< ms since the epoch
};
