#pragma once

#include "sim/HttpEnd.h"
#include "sim/Rsa.h"
#include "sim/Scenario.h"

#include <QDateTime>
#include <QJsonObject>
#include <QMap>
#include <QSet>
#include <QStringList>
#include <QVector>

namespace sim {

/// The three servers of the service.
enum class End { LookupPrimary, LookupBackup, Orchestrator };

/// "primary", "backup" or "orchestrator".
QString endName(End end);

/// One login: a token and what its holder has done with it.
struct Session
{
    QString token;
    QString username;
    int customerId = 0;
    QString serial;
    bool valid = true;
    int invalidReason = -1; ///< sent as "invalidReasonCode" once invalid; -1 sends none
    bool connected = false;
    bool everConnected = false;
    bool intranet = false;
    int heartbeats = 0;
    QDateTime lastSeen;
};

/// A login that waits for somebody's approval.
struct Approval
{
    QString username;
    int customerId = 0;
    QString serial;
    int pollsLeft = 0;
};

/// What one account has been sent on its way to a login or to a new password; empty: nothing.
struct Challenge
{
    QString code;           ///< sent by SMS or e-mail
    QString codeId;         ///< names it in the question for its delivery
    QString codeType;       ///< "sms" or "email"
    QString middleToken;    ///< of a login that waits for an SMS
    QString phoneToken;     ///< of a password that is reset by phone,
    QString mailToken;      ///< and by e-mail
    QString otpMiddleToken; ///< of a login that waits for its authenticator
    QString otpSecret;      ///< offered for binding
    QString bindToken;      ///< allows to ask for this device's association
};

/// A request with its body read as JSON, when it is that.
struct Call : HttpCall
{
    End end = End::Orchestrator;
    QJsonObject json;
};

/// The state of the simulated service. No lock of its own: whoever holds it has locked it.
struct World
{
    Scenario scenario;
    RsaKey key;
    QMap<End, QString> roots;            ///< "http://127.0.0.1:PORT"
    QMap<QString, Session> sessions;     ///< by token
    QMap<QString, Approval> approvals;   ///< by request ID
    QMap<QString, Challenge> challenges; ///< by username
    QStringList deviceRequests;          ///< usernames that asked for an association
    QSet<int> keyGivenTo;        ///< customers whose last key request was answered with a key
    QVector<QJsonObject> orders; ///< see Simulator::order
    QStringList violations;

    QString orchestratorRoot() const { return roots.value(End::Orchestrator); }
    const Account* account(int customerId, const QString& username) const;
    Account* account(int customerId, const QString& username);
    /// Whether some account holds this value.
    bool hasToken(QString Challenge::*member, const QString& value) const;
    const Account* anyAccountOf(int customerId) const;
    const Account* anyAccountOf(const QString& typedCustomer) const;
    Session& openSession(const Account& owner, const QString& serial);
    /// The session that the request's token names; null when there is none.
    Session* sessionOf(const Call& call);
};

/// A JSON reply with status 200.
HttpReply jsonReply(const QJsonObject& object);

/// An orchestrator error: "code", "message" and, when `messageCn` is not empty, its Chinese form.
HttpReply errorReply(int code, const QString& message, const QString& messageCn = {});

/// The reply to a token that is not, or no longer, good: HTTP 401 with the same code in the body.
HttpReply refusal(int invalidReason);

/// 32 characters, letters and digits.
QString randomName();

} // namespace sim
