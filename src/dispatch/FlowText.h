#pragma once

/// What the datapath's flow statistics say, summed over all tunnels.
struct FlowTotals
{
    long long upSize = 0;    ///< bytes transmitted
    long long downSize = 0;  ///< bytes received
    bool tunDown = true;     ///< no tunnel is in state UP
    bool hasTunnels = false; ///< at least one counter line was there
};

/// Reads the human-readable statistics: per tunnel a state line ("State: ...") followed by a
/// counter line ("Tunnel(txbytes/rxbytes/txpkts/rxpkts): ..."). Text that holds neither gives
/// zero counters; nothing is an error. Linear in the text's length. Any thread.
FlowTotals scanFlowText(const char* text);
