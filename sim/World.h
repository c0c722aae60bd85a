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

#include <functional>

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

/// A diagnosis bundle: as it is announced, as it has arrived, and as it is reported.
struct Bundle
{
    QString name;
    qint64 size = 0; ///< 0: it has been lost
    int trigger = 0; ///< 0: the client, 1: the orchestrator
    QString logId;   ///< under which the service knows it
    QString requestId;
    bool sent = false;       ///< whatever was answered
    QByteArray content = {}; ///< as it has been taken
    QStringList files = {};  ///< what is in it
    QJsonObject report = {};
};

constexpr char kTokenHeader[] = "x-tq-auth-header";

/// A request with its body read as JSON, when it is that.
struct Call : HttpCall
{
    End end = End::Orchestrator;
    QJsonObject json;

    QString text(const char* member) const { return json.value(member).toString(); }
    int customer() const { return header("customerid").toInt(); }
    QString serial() const { return header("sn"); }
    QString token() const { return header(kTokenHeader); }
};

/// Tells an account that is looked for.
using AccountTest = std::function<bool(const Account&)>;
AccountTest ofCustomer(int customerId);
AccountTest named(int customerId, const QString& username);

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
    Bundle bundle;               ///< the last one
    QStringList violations;

    QString orchestratorRoot() const { return roots.value(End::Orchestrator); }
    /// The first account that fits; null when none does.
    const Account* find(const AccountTest& fits) const;
    Account* find(const AccountTest& fits);
    /// Whether some account holds this value.
    bool hasToken(QString Challenge::*member, const QString& value) const;
    Session& openSession(const Account& owner, const QString& serial);
    /// The session that the request's token names; null when there is none.
    Session* sessionOf(const Call& call);
};

/// Adds all members of `more`, in place of those of the same names.
void insertAll(QJsonObject& object, const QJsonObject& more);

HttpReply jsonReply(const QJsonObject& object, int status = 200);

/// The answer that all is well.
HttpReply success(const QJsonObject& members = {});

/// An orchestrator error with the texts of its code.
HttpReply errorReply(int code, int status = 200);

/// The reply to a token that is not, or no longer, good: HTTP 401 with the same code in the body.
HttpReply refusal(const Session* session);

/// 32 characters, letters and digits.
QString randomName();

} // namespace sim
