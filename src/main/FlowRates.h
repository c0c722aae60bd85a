#pragma once

/// The smoothed transfer rates between polls of the datapath's byte counters.
struct FlowRates
{
    long long m_LastUpSize = 0;    ///< bytes sent at the previous poll
    long long m_LastDownSize = 0;  ///< bytes received at the previous poll
    long long m_LastTimeStamp = 0; ///< time of the previous poll, ms since the epoch; 0: none
    long long m_LastUpSpeed = 0;   ///< smoothed send rate, bit/s
    long long m_LastDownSpeed = 0; ///< smoothed receive rate, bit/s

    /// Takes one poll. True when there are rates to show; false for the first poll and for one
    /// less than a second after the previous: the rates are 0 then.
    bool update(long long nowMs, long long upSize, long long downSize);

    /// Forgets the rates and the previous poll's time, but not its counters.
    void reset();
};

/// What a poll says about the tunnels.
enum class TunnelHealth {
    Unchanged,
    Lost,    ///< no tunnel is up, for the first time, long enough after connecting
    Restored ///< a tunnel is up again
};

/// `failing` says whether the loss is already being shown, `connectedMs` how long the connection
/// has been up.
TunnelHealth tunnelHealth(bool failing, bool tunDown, bool hasTunnels, long long connectedMs);
