#pragma once

#include <QObject>
#include <QString>

class QTimer;

/// Starts and stops the datapath through its control script, waits for its agent, and watches over
/// its processes. A call of the script blocks for up to 30 s. GUI thread.
class DatapathControl : public QObject
{
    Q_OBJECT

public:
    explicit DatapathControl(QObject* parent);
    ~DatapathControl() override;

    /// The orchestrator's domains, joined with ",", as the script wants them.
    void setOrchDomain(const QString& domains);

    /// Starts the datapath. Returns the script's exit code: 0 for success; a failure is told.
    int startDP();

    /// Stops it; a failure is told.
    void stopDP();

    /// The activity log's line about who connects, and how.
    void logConnectLine(bool intranet);

    /// Waits 90 s for the agent's ready notice.
    void waitForAgent();
    bool isWaitingForAgent() const;
    void endWait();

    /// Opens the connection to the dispatch service; false, and told, when it cannot be had.
    bool dispatchInit();

    /// The connection is up: its processes are watched from now on.
    void watch();
    /// It is being taken down: neither they nor the dispatch service are asked any more.
    void unwatch();

signals:
    /// Something has failed that the user must read.
    void error(const QString& text);
    /// The agent has not reported in time.
    void agentSilent();
    /// The datapath has died and may be started again.
    void restartWanted();

private:
    void onDatapathVanished();
    void onWaitDpFailed();

    int m_restartDPCount = 0;
    QString m_OrchDomain;
    QTimer* m_WaitAgentTimer;
};
