#include "sim/World.h"

#include <QJsonDocument>
#include <QUuid>

#include <algorithm>

namespace sim {

QString endName(End end)
{
    switch (end) {
    case End::LookupPrimary:
        return "primary";
    case End::LookupBackup:
        return "backup";
    case End::Orchestrator:
        break;
    }
    return "orchestrator";
}

const Account* World::account(int customerId, const QString& username) const
{
    for (const Account& account : scenario.accounts) {
        if (account.customerId == customerId && account.username == username)
            return &account;
    }
    return nullptr;
}

Account* World::account(int customerId, const QString& username)
{
    for (Account& account : scenario.accounts) {
        if (account.customerId == customerId && account.username == username)
            return &account;
    }
    return nullptr;
}

bool World::hasToken(QString Challenge::*member, const QString& value) const
{
    return !value.isEmpty() &&
           std::any_of(challenges.begin(), challenges.end(),
                       [&](const Challenge& challenge) { return challenge.*member == value; });
}

const Account* World::anyAccountOf(int customerId) const
{
    for (const Account& account : scenario.accounts) {
        if (account.customerId == customerId)
            return &account;
    }
    return nullptr;
}

const Account* World::anyAccountOf(const QString& typedCustomer) const
{
    for (const Account& account : scenario.accounts) {
        if (account.customer == typedCustomer ||
            QString::number(account.customerId) == typedCustomer)
            return &account;
    }
    return nullptr;
}

Session& World::openSession(const Account& owner, const QString& serial)
{
    Session session;
    session.token = randomName();
    session.username = owner.username;
    session.customerId = owner.customerId;
    session.serial = serial;
    session.lastSeen = QDateTime::currentDateTime();
    return *sessions.insert(session.token, session);
}

Session* World::sessionOf(const Call& call)
{
    const auto it = sessions.find(QString::fromUtf8(call.header("x-tq-auth-header")));
    return it == sessions.end() ? nullptr : &*it;
}

HttpReply jsonReply(const QJsonObject& object)
{
    HttpReply reply;
    reply.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return reply;
}

HttpReply errorReply(int code, const QString& message, const QString& messageCn)
{
    QJsonObject object{{"code", code}, {"message", message}};
    if (!messageCn.isEmpty())
        object.insert("parameters", QJsonObject{{"message_cn", messageCn}});
    return jsonReply(object);
}

HttpReply refusal(int invalidReason)
{
    QJsonObject object{{"code", 401}, {"message", "The session is not valid."}};
    if (invalidReason >= 0)
        object.insert("parameters", QJsonObject{{"invalidReasonCode", invalidReason}});
    HttpReply reply = jsonReply(object);
    reply.status = 401;
    return reply;
}

QString randomName()
{
    return QUuid::createUuid().toString(QUuid::Id128);
}

} // namespace sim
