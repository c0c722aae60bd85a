#include "main/ConnState.h"

Transition transition(ConnState::CONN_STATUS current, ConnState::CONN_STATUS requested)
{
    using T = Transition;
    // Rows: current state; columns: requested state; both in the order of the enumeration:
    // DISCONNECTION, CONNECTION, CONNECTING, DISCONNECTING.
    static constexpr T table[4][4] = {
        {T::Ignored, T::Ignored, T::Begin, T::Ignored},
        {T::Ended, T::Ignored, T::Ignored, T::Stopping},
        {T::Abandoned, T::Connected, T::Ignored, T::Cancelling},
        {T::Ended, T::Ignored, T::Ignored, T::Ignored},
    };
    return table[current][requested];
}
