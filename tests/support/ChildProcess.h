#pragma once

#include <QProcess>
#include <QStringList>

namespace support {

/// A process that the kernel kills when this one dies, however it dies. Start it from the main
/// thread: the kernel watches the thread that forked. Killed, and waited for, on destruction.
class ChildProcess : public QProcess
{
    Q_OBJECT
public:
    explicit ChildProcess(QObject* parent = nullptr);
    ~ChildProcess() override;

    /// Ends it: SIGTERM first when `politely`, SIGKILL if it has not ended after a second.
    void end(bool politely);

    /// Its processor time so far, user and system, in clock ticks (see proc(5)); -1 when gone.
    static qint64 cpuTicks(qint64 pid);

    /// One "kB" field of /proc/PID/status, such as "VmRSS"; -1 when gone.
    static qint64 statusKb(qint64 pid, const QByteArray& field);

    /// How many descriptors it has open, and how many threads; 0 when gone.
    static int descriptors(qint64 pid);
    static int threads(qint64 pid);

    /// The processes whose executable lies below `folder`, in no order. None for a relative
    /// folder or one directly below the root.
    static QList<qint64> below(const QString& folder);

protected:
    void setupChildProcess() override;
};

/// Once this process is gone, kills every process whose executable lies below `folder` or whose
/// command line names something below it, and removes the folder. For daemons that leave their
/// parent on purpose: a crashed or killed test leaves nothing running. The folder should have a
/// name that nothing else has. Call it before the first of them is started.
void cleanUpAfterDeath(const QString& folder);

} // namespace support
