#include "sim/World.h"

#include <QHash>
#include <QJsonDocument>
#include <QUuid>

#include <algorithm>

namespace sim {

namespace {

struct ErrorText
{
    const char* english;
    const char* chinese;
};

const QHash<int, ErrorText>& errorTexts()
{
    static const QHash<int, ErrorText> texts{
        {404, {"No such request", ""}},
        {1001, {"Wrong username or password.", "用户名或密码错误。"}},
        {1003, {"The verification code is wrong.", "验证码错误。"}},
        {1007, {"No such customer", ""}},
        {1048, {"The user does not exist.", "用户不存在。"}},
        {1060, {"Too much time has passed, please start again.", "操作已超时，请重新开始。"}},
        {1061, {"The new password does not meet the rules.", "新密码不符合规则。"}},
        {1062, {"The old password is wrong.", "旧密码错误。"}},
        {1108, {"The authenticator's step has expired.", "身份验证器验证已过期。"}},
        {1109, {"The authenticator's code is wrong.", "身份验证器验证码错误。"}},
        {1110, {"The recovery code is wrong.", "恢复码错误。"}},
    };
    return texts;
}

template <typename Accounts, typename Fits>
auto* firstOf(Accounts& accounts, Fits fits)
{
    const auto it = std::find_if(accounts.begin(), accounts.end(), fits);
    return it == accounts.end() ? nullptr : &*it;
}

} // namespace

QString endName(End end)
{
    return end == End::LookupPrimary  ? "primary"
           : end == End::LookupBackup ? "backup"
                                      : "orchestrator";
}
const Account* World::find(const AccountTest& fits) const
{
    return firstOf(scenario.accounts, fits);
}

Account* World::find(const AccountTest& fits)
{
    return firstOf(scenario.accounts, fits);
}

AccountTest ofCustomer(int customerId)
{
    return [=](const Account& account) { return account.customerId == customerId; };
}

AccountTest named(int customerId, const QString& username)
{
    return [=](const Account& account) {
        return account.customerId == customerId && account.username == username;
    };
}

bool World::hasToken(QString Challenge::*member, const QString& value) const
{
    return !value.isEmpty() &&
           std::any_of(challenges.begin(), challenges.end(),
                       [&](const Challenge& challenge) { return challenge.*member == value; });
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
    const auto it = sessions.find(call.token());
    return it == sessions.end() ? nullptr : &*it;
}

void insertAll(QJsonObject& object, const QJsonObject& more)
{
    for (auto it = more.begin(); it != more.end(); ++it)
        object.insert(it.key(), it.value());
}

HttpReply jsonReply(const QJsonObject& object, int status)
{
    HttpReply reply;
    reply.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    reply.status = status;
    return reply;
}

HttpReply success(const QJsonObject& members)
{
    QJsonObject object{{"code", 0}};
    insertAll(object, members);
    return jsonReply(object);
}

HttpReply errorReply(int code, int status)
{
    const ErrorText text = errorTexts().value(code);
    QJsonObject object{
        {"code", code}, {"message", text.english}, {"i18nKey", QString("error.%1").arg(code)}};
    if (*text.chinese != '\0')
        object.insert("parameters", QJsonObject{{"message_cn", text.chinese}});
    return jsonReply(object, status);
}

HttpReply refusal(const Session* session)
{
    QJsonObject object{
        {"code", 401}, {"message", "The session is not valid."}, {"i18nKey", "error.401"}};
    if (session != nullptr && session->invalidReason >= 0)
        object.insert("parameters", QJsonObject{{"invalidReasonCode", session->invalidReason}});
    return jsonReply(object, 401);
}

QString randomName()
{
    return QUuid::createUuid().toString(QUuid::Id128);
}

} // namespace sim
