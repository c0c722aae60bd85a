#pragma once

#include <QMutex>
#include <QObject>
#include <QStringList>

class QTimer;

namespace monitor {

/// Whether one of the process names is the datapath's: its service or its agent.
bool datapathAlive(const QStringList& processNames);

/// Watches, while the client is connected, that the datapath's processes are alive. One instance
/// for the process; it lives on the GUI thread, which makes it. start() and stop() may be called
/// from any thread; from another than the GUI thread they take effect in its event loop.
class MonitorDatapath : public QObject
{
    Q_OBJECT

public:
    /// The one instance, made on first use.
    static MonitorDatapath* instance();

    ~MonitorDatapath() override;

    /// Begins to look every 3 s; does nothing while already watching.
    void start();

    /// Ends the watch.
    void stop();

signals:
    /// No datapath process was found. Repeated every 3 s until the watch is stopped.
    void datapathVanished();

private slots:
    void onTimerOut();

private:
    MonitorDatapath();

    void watch(bool wanted);
    void followRunning();

    bool m_running = false; ///< what was asked for last
    QTimer* m_checkTimer;
    QMutex m_mutex; ///< guards m_running and the timer's start and stop
};

} // namespace monitor
