#include "main/TrafficWatch.h"

#include "app/NamedTimer.h"
#include "app/Platform.h"
#include "dispatch/tarvelinGetFlowStatistics.h"

namespace {

constexpr int kPollMs = 3000;
constexpr int kAllowedFailures = 3;

} // namespace

TrafficWatch::TrafficWatch(QObject* parent)
    : QObject(parent),
      m_StatCountTimer(makeTimer(this, "m_StatCountTimer", kPollMs, &TrafficWatch::onStatusNotify))
{
}

void TrafficWatch::start(bool intranet)
{
    m_intranet = intranet;
    m_StatusFailTime = 0;
    if (!intranet) {
        m_NetworkFailure = false;
        m_ConnectSuccessStamp = platform().now().toMSecsSinceEpoch();
    }
    m_StatCountTimer->start();
}

void TrafficWatch::stop()
{
    m_StatCountTimer->stop();
}

void TrafficWatch::onStatusNotify()
{
    emit tick();
    if (m_intranet)
        return;
    long long upSize = 0;
    long long downSize = 0;
    bool tunDown = false;
    bool hasTunnels = true;
    const int result = TQ_DispatchGetFlow(&upSize, &downSize, &tunDown, &hasTunnels);
    if (result != 0)
        return pollFailed(result);

    const qint64 now = platform().now().toMSecsSinceEpoch();
    m_StatusFailTime = 0;
    const TunnelHealth health =
        tunnelHealth(m_NetworkFailure, tunDown, hasTunnels, now - m_ConnectSuccessStamp);
    tellHealth(health);
    if (health == TunnelHealth::Lost)
        return;
    if (m_flow.update(now, upSize, downSize))
        emit measured(m_flow.m_LastUpSpeed, m_flow.m_LastDownSpeed);
    else
        emit unmeasured();
}

void TrafficWatch::pollFailed(int result)
{
    m_StatusFailTime += 1;
    if (m_StatusFailTime < kAllowedFailures)
        return;
    emit serviceLost(result);
    emit unmeasured();
    m_flow.reset();
}

void TrafficWatch::tellHealth(TunnelHealth health)
{
    switch (health) {
    case TunnelHealth::Unchanged:
        return;
    case TunnelHealth::Restored:
        m_NetworkFailure = false;
        emit tunnelsRestored();
        return;
    case TunnelHealth::Lost:
        m_NetworkFailure = true;
        m_flow.m_LastUpSpeed = 0;
        m_flow.m_LastDownSpeed = 0;
        emit unmeasured();
        emit tunnelsLost();
    }
}
