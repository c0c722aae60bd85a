#pragma once

#include "support/ChildProcess.h"

#include <memory>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QProcessEnvironment>

namespace support {

/// Somebody who can log in to the simulated service.
struct SimAccount
{
    QString customer; ///< the customer ID as it is typed
    QString username;
    QString password;
};

/// The simulated service as a process of its own, spoken to over its control addresses.
class SimProcess
{
public:
    SimProcess() = default;
    ~SimProcess();

    /// Starts it for the stand-in datapath in `programFolder` and waits until it serves; false
    /// when it does not come up in ten seconds.
    bool start(const QString& programFolder);

    /// The variables that point a development build of the client at it.
    QProcessEnvironment clientVariables() const;

    /// Where a person can watch and switch it.
    QString controlPage() const;

    /// Its state now: accounts, violations, requests, clients. Empty when it does not answer.
    QJsonObject state();

    /// Carries out a command for it, see its control page; false when it refuses a part.
    bool command(const QJsonObject& members);

    /// Answers `path` with this body and status 200 from now on.
    bool replaceBody(const QString& path, const QByteArray& body);

    /// Puts the service into one of the situations of its control page, by name.
    bool enter(const QString& situation);

    /// Everything well again, and nothing remembered of what was asked so far.
    bool reset();

    /// The first account that it offers.
    SimAccount account();

    /// Every rule that a request, or what the datapath was given, broke since the last reset.
    QStringList violations();

    /// The last requests to `path`, oldest first.
    QList<QJsonObject> requests(const QString& path);

private:
    QByteArray exchange(const QByteArray& verb, const QString& path, const QByteArray& body);

    QJsonObject m_addresses;
    QNetworkAccessManager m_network;
    std::unique_ptr<ChildProcess> m_process;
};

} // namespace support
