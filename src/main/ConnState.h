#pragma once

/// The states of a connection and the rules by which one leads to the next.
///
///                          Begin                    Connected
///     DISCONNECTION ------------------> CONNECTING -----------> CONNECTION
///        ^  ^  ^                          |    |                 |    |
///        |  |  |        Abandoned         |    | Cancelling      |    | Stopping
///        |  |  \--------------------------/    v                 |    v
///        |  \----------- Ended ----------- DISCONNECTING <-------)----/
///        \-------------- Ended ----------------------------------/
///
/// Every other request is ignored.
struct ConnState
{
    enum CONN_STATUS { DISCONNECTION = 0, CONNECTION = 1, CONNECTING = 2, DISCONNECTING = 3 };

    /// Which exchange the window's own network manager is waiting for.
    enum CONN_STEP { CONNECT_ORCH = 0, GET_FILTER = 1, DISCONNECT_NOTIFY_ORCH = 2, HEART_BEAT = 3 };
};

/// What a requested state does in the current one.
enum class Transition {
    Ignored,
    Begin,      ///< an attempt starts
    Connected,  ///< the attempt has succeeded
    Abandoned,  ///< the attempt has failed or was cancelled
    Cancelling, ///< the attempt ends when its pending step answers
    Stopping,   ///< the connection is being taken down
    Ended       ///< the connection is down
};

/// The transition table.
Transition transition(ConnState::CONN_STATUS current, ConnState::CONN_STATUS requested);
