#include "monitor/MonitorDatapath.h"

#include "app/NamedTimer.h"
#include "orch/ProcessList.h"

#include <algorithm>

namespace monitor {

bool datapathAlive(const QStringList& processNames)
{
    return std::any_of(processNames.cbegin(), processNames.cend(), [](const QString& name) {
        return name.contains(QLatin1String("tarvelin_d")) ||
               name.contains(QLatin1String("tarvelin_a"));
    });
}

MonitorDatapath* MonitorDatapath::instance()
{
    static MonitorDatapath monitor;
    return &monitor;
}

MonitorDatapath::MonitorDatapath()
    : m_checkTimer(makeTimer(this, "m_checkTimer", 3000, &MonitorDatapath::onTimerOut))
{
}

MonitorDatapath::~MonitorDatapath() = default;

void MonitorDatapath::start()
{
    watch(true);
}

void MonitorDatapath::stop()
{
    watch(false);
}

void MonitorDatapath::watch(bool wanted)
{
    {
        const QMutexLocker lock(&m_mutex);
        m_running = wanted;
    }
    // At once on the timer's own thread; no other may touch it.
    QMetaObject::invokeMethod(this, &MonitorDatapath::followRunning);
}

// What holds is the last word, in whatever order the calls of several threads arrive here.
void MonitorDatapath::followRunning()
{
    const QMutexLocker lock(&m_mutex);
    if (m_running == m_checkTimer->isActive())
        return;
    if (m_running)
        m_checkTimer->start();
    else
        m_checkTimer->stop();
}

void MonitorDatapath::onTimerOut()
{
    QStringList names;
    const QList<Util::ProcessInfo> processes = Util::getProcessInfo();
    for (const Util::ProcessInfo& process : processes)
        names.append(process.name);
    if (!datapathAlive(names))
        emit datapathVanished();
}

} // namespace monitor
