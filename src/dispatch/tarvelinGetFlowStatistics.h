#pragma once

/// Client of the datapath's dispatch service: a request/response protocol on a TCP port of the
/// loopback interface. One process-wide connection, GUI thread only. Calls block; a service that
/// does not accept is given up after two seconds, and one that does not answer after two more.
///
/// Results are 0 for success or a negated errno value: -1 not connected, -EIO a receive failure,
/// a silent or a closing service, -ENOMEM a reply too large, -EINVAL no message buffer or a reply
/// longer than the caller's buffer, -EBADR a reply of another protocol version, any other a send
/// failure. After a failure the connection is closed and the next exchange connects again.

namespace dispatch {

/// TCP port of the service on 127.0.0.1: 54321 until the agent announces another.
extern int port;

} // namespace dispatch

/// Opens the connection; 0 or -1.
int TQ_GetFlowStatisticsInit();

/// Asks for the tunnels' state and byte counters.
/// @param upSize     bytes sent through all tunnels
/// @param downSize   bytes received
/// @param tunDown    no tunnel is up
/// @param hasTunnels the service listed at least one tunnel
/// On failure: 0, 0, false, true.
int TQ_DispatchGetFlow(long long* upSize, long long* downSize, bool* tunDown, bool* hasTunnels);

/// Asks for the tunnel's address and writes it, zero-terminated when there is room, into `dst` of
/// `len` bytes; "Unknown" when it cannot be had.
int TQ_DispatchGetTunIp(char* dst, int len);

/// Closes the connection.
void TQ_GetFlowStatisticsExit();
