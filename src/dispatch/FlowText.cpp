#include "dispatch/FlowText.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr char kState[] = "State: ";
constexpr char kStateUp[] = "State: UP";
constexpr char kCounters[] = "Tunnel(txbytes/rxbytes/txpkts/rxpkts):";

// Counters are foreign numbers: a sum beyond the range wraps instead of being undefined.
long long add(long long a, long long b)
{
    const uint64_t sum = static_cast<uint64_t>(a) + static_cast<uint64_t>(b);
    return static_cast<int64_t>(sum);
}

// Reads "<blanks>number<comma>number" after a counter marker. A number that cannot be read leaves
// its field, and the ones after it, as the previous section set them.
void readCounters(const char* text, long long& sent, long long& received)
{
    char* end = nullptr;
    const long long first = std::strtoll(text, &end, 10);
    if (end == text)
        return;
    sent = first;
    if (*end != ',')
        return;
    text = end + 1;
    const long long second = std::strtoll(text, &end, 10);
    if (end != text)
        received = second;
}

} // namespace

FlowTotals scanFlowText(const char* text)
{
    FlowTotals totals;
    long long sent = 0;
    long long received = 0;
    const char* cursor = text;
    const char* state = nullptr; // the next state line; searched for anew only behind the cursor
    while (true) {
        if (totals.tunDown) {
            if (!state || state < cursor)
                state = std::strstr(cursor, kState);
            if (!state)
                return totals;
            totals.tunDown = std::strncmp(state, kStateUp, sizeof kStateUp - 1) != 0;
        }
        const char* counters = std::strstr(cursor, kCounters);
        if (!counters)
            return totals;
        readCounters(counters + sizeof kCounters - 1, sent, received);
        totals.upSize = add(totals.upSize, sent);
        totals.downSize = add(totals.downSize, received);
        totals.hasTunnels = true;
        cursor = counters + 1;
    }
}
