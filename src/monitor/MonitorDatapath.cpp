#include "monitor/MonitorDatapath.h"

#include "orch/Util.h"

#include <QTimer>

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

MonitorDatapath::MonitorDatapath() : m_checkTimer(new QTimer(this))
{
    m_checkTimer->setObjectName(QStringLiteral("m_checkTimer"));
    m_checkTimer->setInterval(3000);
    connect(m_checkTimer, &QTimer::timeout, this, &MonitorDatapath::onTimerOut);
}

MonitorDatapath::~MonitorDatapath() = default;

void MonitorDatapath::start()
{
    const QMutexLocker lock(&m_mutex);
    if (m_running)
        return;
    m_running = true;
    m_checkTimer->start();
}

void MonitorDatapath::stop()
{
    const QMutexLocker lock(&m_mutex);
    if (!m_running)
        return;
    m_running = false;
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
