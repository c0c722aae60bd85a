#include "main/FlowRates.h"

namespace {

// Far beyond any link, far below the range: a broken counter cannot overflow the arithmetic.
constexpr long long kHighestRate = 1000000000000000LL; // 1 Pbit/s

long long rawRate(long long size, long long lastSize, long long seconds)
{
    if (seconds < 0 || size <= lastSize)
        return 0;
    const unsigned long long grown =
        static_cast<unsigned long long>(size) - static_cast<unsigned long long>(lastSize);
    if (grown > static_cast<unsigned long long>(kHighestRate))
        return kHighestRate;
    return static_cast<long long>(grown) * 8 / seconds;
}

long long smoothed(long long oldRate, long long raw)
{
    return 7 * oldRate / 8 + raw / 8;
}

} // namespace

bool FlowRates::update(long long nowMs, long long upSize, long long downSize)
{
    const long long seconds = (nowMs - m_LastTimeStamp) / 1000;
    const bool measurable = m_LastTimeStamp != 0 && seconds != 0;
    if (measurable) {
        m_LastUpSpeed = smoothed(m_LastUpSpeed, rawRate(upSize, m_LastUpSize, seconds));
        m_LastDownSpeed = smoothed(m_LastDownSpeed, rawRate(downSize, m_LastDownSize, seconds));
    } else {
        m_LastUpSpeed = 0;
        m_LastDownSpeed = 0;
    }
    m_LastUpSize = upSize;
    m_LastDownSize = downSize;
    m_LastTimeStamp = nowMs;
    return measurable;
}

void FlowRates::reset()
{
    m_LastTimeStamp = 0;
    m_LastUpSpeed = 0;
    m_LastDownSpeed = 0;
}

TunnelHealth tunnelHealth(bool failing, bool tunDown, bool hasTunnels, long long connectedMs)
{
    constexpr long long kBuildUpMs = 30000;
    if (!hasTunnels)
        return TunnelHealth::Unchanged;
    if (!tunDown)
        return failing ? TunnelHealth::Restored : TunnelHealth::Unchanged;
    return !failing && connectedMs > kBuildUpMs ? TunnelHealth::Lost : TunnelHealth::Unchanged;
}
