#include "sim/Route.h"

#include <QJsonArray>
#include <QRegularExpression>

#include <cstdlib>

namespace sim {

namespace {

using Rules = HeaderRules;

constexpr qint64 kClockToleranceMs = 60000;
constexpr char kPollPath[] = "/api/mobile/v2/auth/result";

/// A credential as the orchestrator reads it: decrypted, without its time stamp.
struct Credential
{
    bool good = false;
    QString text;
    QString fault;
};

Credential decryptCredential(const World& world, const QString& cipher, int rsaType)
{
    Credential credential;
    const auto plain = world.key.decrypt(cipher.toLatin1(), rsaType == 1);
    if (!plain) {
        credential.fault = QStringLiteral("does not decrypt");
        return credential;
    }
    const int feed = plain->lastIndexOf('\n');
    bool number = false;
    const qint64 stamp = feed < 0 ? 0 : plain->mid(feed + 1).toLongLong(&number);
    if (!number) {
        credential.fault = QStringLiteral("carries no time stamp");
        return credential;
    }
    credential.text = QString::fromUtf8(plain->left(feed));
    const qint64 off = std::llabs(stamp - QDateTime::currentMSecsSinceEpoch());
    if (off > kClockToleranceMs)
        credential.fault = QStringLiteral("carries a time stamp that is off by %1 ms").arg(off);
    credential.good = credential.fault.isEmpty();
    return credential;
}

QString textOf(const Call& call, const char* member)
{
    return call.json.value(QLatin1String(member)).toString();
}

int customerOf(const Call& call)
{
    return call.json.value(QLatin1String("customerId")).toInt();
}

Credential credentialOf(const Call& call, const World& world, const char* encrypted,
                        const char* plain)
{
    if (!call.json.contains(QLatin1String(encrypted)))
        return {true, textOf(call, plain), {}};
    const int rsaType = call.json.value(QLatin1String("rsaType")).toInt();
    return decryptCredential(world, textOf(call, encrypted), rsaType);
}

HttpReply offerKey(const Call& call, World& world)
{
    const int customer = call.header("customerid").toInt();
    const Account* account = world.anyAccountOf(customer);
    QJsonArray types;
    for (int type : world.scenario.rsaTypes)
        types.append(type);
    QJsonObject reply{{QStringLiteral("code"), 0}, {QStringLiteral("rsaType"), types}};
    const bool offers = account != nullptr && account->offersKey;
    reply.insert(QStringLiteral("key"),
                 offers ? QString::fromLatin1(world.key.publicKey()) : QString());
    if (offers)
        world.keyGivenTo.insert(customer);
    else
        world.keyGivenTo.remove(customer);
    return jsonReply(reply);
}

/// Without a good key the client has nothing to encrypt with.
void keyNotGiven(const Call& call, World& world)
{
    world.keyGivenTo.remove(call.header("customerid").toInt());
}

void checkAuthConfig(const Call& call, const World&, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    body.integer("customerId", {call.header("customerid").toInt()});
    body.flag("supportMailboxFind", true);
    body.finish();
}

void checkName(JsonCheck& body, const World& world, bool encrypted, Findings& findings)
{
    if (!encrypted) {
        if (body.text("accountName").isEmpty())
            findings.add(QStringLiteral("accountName is empty"));
        return;
    }
    const bool oaep = world.scenario.rsaTypes.contains(1);
    body.integer("rsaType", {oaep ? 1 : 0});
    const Credential name = decryptCredential(world, body.text("encryptAccountName"), oaep);
    if (!name.good)
        findings.add(QStringLiteral("encryptAccountName ") + name.fault);
}

void checkPassword(JsonCheck& body, const World& world, bool encrypted, bool token,
                   Findings& findings)
{
    if (token)
        return; // finish() reports a password that came with the token
    if (!encrypted) {
        if (body.text("password").isEmpty())
            findings.add(QStringLiteral("password is empty"));
        return;
    }
    const bool oaep = world.scenario.rsaTypes.contains(1);
    const Credential password = decryptCredential(world, body.text("encryptPassword"), oaep);
    if (!password.good)
        findings.add(QStringLiteral("encryptPassword ") + password.fault);
}

void checkLogin(const Call& call, const World& world, Findings& findings)
{
    static const QRegularExpression deviceId(QStringLiteral("\\A[0-9A-Z-]*\\z"));
    static const QRegularExpression agreement(QStringLiteral("\\A(\\d*|newest)\\z"));
    JsonCheck body = jsonBody(call, findings);
    const bool encrypted = world.keyGivenTo.contains(call.header("customerid").toInt());
    checkName(body, world, encrypted, findings);
    checkPassword(body, world, encrypted, !call.header("x-tq-auth-header").isEmpty(), findings);
    body.integer("customerId", {call.header("customerid").toInt()});
    for (const char* name : {"support2FA", "supportPollByRequestId", "supportOtp"})
        body.flag(name, true);
    body.flag("otpLogin");
    body.flag("automaticLogin");
    if (!agreement.match(body.text("privacyVersion")).hasMatch())
        findings.add(QStringLiteral("privacyVersion is no version of the agreement"));
    if (!deviceId.match(body.text("deviceId")).hasMatch())
        findings.add(QStringLiteral("deviceId is no identifier in upper case"));
    body.text("mobileVersion", QStringLiteral("6.1.20"));
    for (const char* name : {"supportOtpCode", "otpMiddleToken"})
        body.optionalText(name);
    const QString approval = body.optionalText("requestIdForPoll");
    if (!approval.isEmpty() && !world.approvals.contains(approval))
        findings.add(QStringLiteral("requestIdForPoll names no approval that waits"));
    body.trueOrAbsent("agreeToPrivacy");
    checkClientInfo(body.object("traceExtraInfo"), QString::fromUtf8(call.header("sn")), findings);
    body.finish();
}

HttpReply tokenReply(const Session& session, const Account& account)
{
    return jsonReply({{QStringLiteral("code"), 0},
                      {QStringLiteral("X-TQ-AUTH-HEADER"), session.token},
                      {QStringLiteral("allowChangePass"), account.allowChangePass},
                      {QStringLiteral("needResetPassword"), false}});
}

HttpReply askForApproval(const Account& account, const QString& serial, World& world)
{
    const QString id = randomName();
    world.approvals.insert(id,
                           {account.username, account.customerId, serial, account.approvalPolls});
    const QString address =
        world.orchestratorRoot() + QLatin1String(kPollPath) + QStringLiteral("?requestId=") + id;
    return jsonReply({{QStringLiteral("code"), 0},
                      {QStringLiteral("requestIdForPoll"), id},
                      {QStringLiteral("authResultCheckUrl"), address},
                      {QStringLiteral("authResultCheckInterval"), world.scenario.approvalInterval},
                      {QStringLiteral("authResultCheckTimes"), world.scenario.approvalTimes}});
}

bool isApproved(const Call& call, const Account& account, World& world)
{
    const auto approval = world.approvals.find(textOf(call, "requestIdForPoll"));
    if (approval == world.approvals.end() || approval->username != account.username ||
        approval->pollsLeft > 0)
        return false;
    world.approvals.erase(approval);
    return true;
}

HttpReply logInByToken(const QString& username, const Call& call, World& world)
{
    const Session* session = world.sessionOf(call);
    if (session == nullptr || !session->valid || session->username != username)
        return refusal(session == nullptr ? -1 : session->invalidReason);
    const Account* account = world.account(session->customerId, username);
    return account == nullptr ? refusal(-1) : tokenReply(*session, *account);
}

HttpReply logIn(const Call& call, World& world)
{
    const Credential name = credentialOf(call, world, "encryptAccountName", "accountName");
    if (!call.header("x-tq-auth-header").isEmpty())
        return logInByToken(name.text, call, world);
    const Credential password = credentialOf(call, world, "encryptPassword", "password");
    const Account* account = world.account(customerOf(call), name.text);
    if (!name.good || !password.good || account == nullptr || account->password != password.text)
        return errorReply(1001, QStringLiteral("Wrong username or password."),
                          QStringLiteral("用户名或密码错误。"));
    const QString serial = QString::fromUtf8(call.header("sn"));
    if (account->approvalPolls > 0 && !isApproved(call, *account, world))
        return askForApproval(*account, serial, world);
    return tokenReply(world.openSession(*account, serial), *account);
}

QString polledId(const Call& call)
{
    const QByteArray prefix("requestId=");
    const QByteArray query = call.query();
    return query.startsWith(prefix) ? QString::fromUtf8(query.mid(prefix.size())) : QString();
}

void checkPoll(const Call& call, const World& world, Findings& findings)
{
    checkEmptyBody(call, findings);
    const Approval approval = world.approvals.value(polledId(call));
    if (approval.username.isEmpty())
        findings.add(QStringLiteral("polls for a request that does not wait"));
    else if (approval.customerId != call.header("customerid").toInt() ||
             approval.serial != QString::fromUtf8(call.header("sn")))
        findings.add(QStringLiteral("polls for the request of another customer or serial"));
}

HttpReply poll(const Call& call, World& world)
{
    const auto approval = world.approvals.find(polledId(call));
    if (approval == world.approvals.end())
        return errorReply(404, QStringLiteral("No such request"));
    if (approval->pollsLeft > 0)
        --approval->pollsLeft;
    return jsonReply({{QStringLiteral("code"), 0},
                      {QStringLiteral("resultCode"), approval->pollsLeft > 0 ? 1 : 0}});
}

void checkNothing(const Call& call, const World&, Findings& findings)
{
    checkEmptyBody(call, findings);
}

HttpReply authConfig(const Call&, World& world)
{
    return jsonReply(world.scenario.authConfigReply);
}

} // namespace

std::vector<Route> loginRoutes()
{
    return {
        {false,
         "GET",
         "/s/mobile/pubkey/obtain",
         {Rules::Content::None, Rules::Customer::Numeric, Rules::Token::None, false},
         checkNothing,
         offerKey,
         false,
         keyNotGiven},
        {false,
         "POST",
         "/api/mobile/auth/config",
         {Rules::Content::Json, Rules::Customer::Numeric, Rules::Token::None, false},
         checkAuthConfig,
         authConfig},
        {false,
         "POST",
         "/api/mobile/v2/auth",
         {Rules::Content::Json, Rules::Customer::Numeric, Rules::Token::Optional, true},
         checkLogin,
         logIn},
        {false,
         "POST",
         kPollPath,
         {Rules::Content::Json, Rules::Customer::Numeric, Rules::Token::None, true},
         checkPoll,
         poll,
         true},
    };
}

} // namespace sim
