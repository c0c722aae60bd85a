#pragma once

#include "sim/Scenario.h"
#include "sim/World.h"

#include <QDateTime>
#include <QJsonObject>
#include <QList>
#include <QStringList>

#include <functional>
#include <memory>

namespace sim {

/// A request as it was received.
struct RequestRecord
{
    End end = End::Orchestrator;
    QByteArray method;
    QByteArray path;
    QByteArray query;
    QList<QPair<QByteArray, QByteArray>> headers; ///< names in lower case
    QByteArray body;
    QDateTime time;

    QByteArray header(const QByteArray& lowerCaseName) const;
    QJsonObject json() const;
};

/// The simulated service: two lookup servers and an orchestrator on loopback ports, each with its
/// own threads. Every request is checked to the last member; whatever is wrong with one is kept
/// as a violation, and a test with violations fails. All functions may be called from any thread.
class Simulator
{
public:
    /// Fixed ports; 0 takes a free one.
    struct Ports
    {
        int primary = 0;
        int backup = 0;
        int orchestrator = 0;
    };

    Simulator();
    ~Simulator();

    /// Starts all three servers; false when a port is taken.
    bool start();
    bool start(const Ports& ports);
    void stop();

    /// Stops one server; connections to it are then refused. startEnd() brings it back on the
    /// same port.
    void stopEnd(End end);
    bool startEnd(End end);
    bool isRunning(End end) const;

    /// Full addresses, as the client is configured with.
    QString primaryUrl() const;
    QString backupUrl() const;
    /// "http://127.0.0.1:PORT" of the orchestrator, and the login address derived from it.
    QString orchRoot() const;
    QString authUrl() const;

    /// Changes the scenario; what `change` does is seen by the next request as a whole.
    void edit(const std::function<void(Scenario&)>& change);
    Scenario scenario() const;

    /// Puts a fault on a path, or takes it away again. A path may name its server in front:
    /// "primary:/api/mobile/v1/orchinfo".
    void setFault(const QString& path, const Fault& fault);
    void clearFaults();

    /// Ends the sessions of all logged-in clients: each token is refused from now on, with this
    /// "invalidReasonCode", or without one for -1.
    void revokeSessions(int reason);

    /// An order to the client whose heartbeat or disconnect notice comes next: its members are
    /// merged into that one answer. The member "logfile" asks for a diagnosis bundle by the header
    /// "orch-logfile".
    void order(const QJsonObject& members);
    void cancelOrders();

    QList<Session> sessions() const;

    /// Opens a session as a login would and returns its token; empty for an unknown username.
    QString issueToken(const QString& username, const QString& serial);

    /// The last code that was sent to this user by SMS or e-mail; empty: none that still works.
    QString sentCode(const QString& username) const;
    /// What the user's authenticator shows now: of the bound secret, or of the one on offer.
    QString totp(const QString& username) const;
    /// Usernames that have asked for the association of their device.
    QStringList deviceRequests() const;

    /// The last diagnosis bundle that was announced.
    Bundle bundle() const;

    QList<RequestRecord> requests() const;
    /// The last request to `path` on any server; its method is empty when there was none.
    RequestRecord lastRequest(const QByteArray& path) const;
    int count(const QByteArray& path) const;

    /// "METHOD path: what is wrong", in the order of arrival, and then what the stand-in datapath
    /// of the watched directory found wrong.
    QStringList violations() const;

    /// Forgets requests and violations. Sessions stay.
    void clear();

    /// Adds the violations that the stand-in datapath in this directory records.
    void watchDatapath(const QString& directory);
    QString datapathDirectory() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace sim
