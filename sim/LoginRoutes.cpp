#include "sim/Credentials.h"
#include "sim/Route.h"
#include "sim/Totp.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <optional>

namespace sim {

namespace {

using Rules = HeaderRules;

constexpr char kPollPath[] = "/api/mobile/v2/auth/result";
constexpr int kRecoveryCodes = 4;

HttpReply offerKey(const Call& call, World& world)
{
    const int customer = call.header("customerid").toInt();
    const Account* account = world.anyAccountOf(customer);
    QJsonArray types;
    for (int type : world.scenario.rsaTypes)
        types.append(type);
    QJsonObject reply{{"code", 0}, {"rsaType", types}};
    const bool offers = account != nullptr && account->offersKey;
    reply.insert("key", offers ? QString::fromLatin1(world.key.publicKey()) : QString());
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

/// What both kinds of login say of this client.
void checkDevice(JsonCheck& body, const Call& call, const World& world, Findings& findings)
{
    static const QRegularExpression deviceId("\\A[0-9A-Z-]*\\z");
    if (!deviceId.match(body.text("deviceId")).hasMatch())
        findings.add("deviceId is no identifier in upper case");
    body.text("mobileVersion", "6.1.20");
    const QString approval = body.optionalText("requestIdForPoll");
    if (!approval.isEmpty() && !world.approvals.contains(approval))
        findings.add("requestIdForPoll names no approval that waits");
    checkClientInfo(body.object("traceExtraInfo"), QString::fromUtf8(call.header("sn")), findings);
}

/// A login with the code of an SMS: nothing in it is encrypted.
void checkSmsLogin(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    body.text("customerId", QString::fromUtf8(call.header("customerid")));
    checkCredential(body, world, false, "", "accountName", findings);
    checkCredential(body, world, false, "", "verification", findings);
    for (const char* name : {"support2FA", "supportPollByRequestId"})
        body.flag(name, true);
    if (call.header("x-tq-auth-header").isEmpty())
        checkCredential(body, world, false, "", "password", findings);
    else
        body.flag("automaticLogin");
    checkDevice(body, call, world, findings);
    body.finish();
}

void checkLogin(const Call& call, const World& world, Findings& findings)
{
    static const QRegularExpression agreement("\\A(\\d*|newest)\\z");
    if (call.json.contains("verification"))
        return checkSmsLogin(call, world, findings);
    JsonCheck body = jsonBody(call, findings);
    const bool encrypted = isKeyGiven(call, world);
    checkCredential(body, world, encrypted, "encryptAccountName", "accountName", findings);
    if (encrypted)
        checkPadding(body, world);
    if (call.header("x-tq-auth-header").isEmpty()) // finish() reports a password beside a token
        checkCredential(body, world, encrypted, "encryptPassword", "password", findings);
    body.integer("customerId", {call.header("customerid").toInt()});
    for (const char* name : {"support2FA", "supportPollByRequestId", "supportOtp"})
        body.flag(name, true);
    body.flag("otpLogin");
    body.flag("automaticLogin");
    if (!agreement.match(body.text("privacyVersion")).hasMatch())
        findings.add("privacyVersion is no version of the agreement");
    body.optionalText("supportOtpCode");
    const QString otpToken = body.optionalText("otpMiddleToken");
    if (body.has("supportOtpCode") != body.has("otpMiddleToken"))
        findings.add("supportOtpCode and otpMiddleToken go together");
    if (!otpToken.isEmpty() && !world.hasToken(&Challenge::otpMiddleToken, otpToken))
        findings.add("otpMiddleToken was never handed out");
    body.trueOrAbsent("agreeToPrivacy");
    checkDevice(body, call, world, findings);
    body.finish();
}

HttpReply tokenReply(const Session& session, const Account& account,
                     const QStringList& recoveryCodes = {})
{
    QJsonObject reply{{"code", 0},
                      {"X-TQ-AUTH-HEADER", session.token},
                      {"allowChangePass", account.allowChangePass},
                      {"needResetPassword", account.mustChangePassword}};
    if (account.mustChangePassword) {
        reply.insert("needResetPasswordReasonCn", account.changeReasonCn);
        reply.insert("needResetPasswordReasonEn", account.changeReasonEn);
    }
    if (!recoveryCodes.isEmpty())
        reply.insert("otpRecoverCode", QJsonArray::fromStringList(recoveryCodes));
    return jsonReply(reply);
}

HttpReply askForApproval(const Account& account, const QString& serial, World& world)
{
    const QString id = randomName();
    world.approvals.insert(id,
                           {account.username, account.customerId, serial, account.approvalPolls});
    const QString address = world.orchestratorRoot() + kPollPath + "?requestId=" + id;
    return jsonReply({{"code", 0},
                      {"requestIdForPoll", id},
                      {"authResultCheckUrl", address},
                      {"authResultCheckInterval", world.scenario.approvalInterval},
                      {"authResultCheckTimes", world.scenario.approvalTimes}});
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

HttpReply askForSms(const Account& account, World& world)
{
    Challenge& challenge = world.challenges[account.username];
    challenge.middleToken = randomName();
    return jsonReply(
        {{"code", 0}, {"middleToken", challenge.middleToken}, {"phoneNumber", account.phone}});
}

HttpReply askForAuthenticator(const Account& account, World& world)
{
    Challenge& challenge = world.challenges[account.username];
    challenge.otpMiddleToken = randomName();
    QJsonObject reply{
        {"code", 0}, {"otpMiddleToken", challenge.otpMiddleToken}, {"otpLogin", account.otpBound}};
    if (!account.otpBound) {
        challenge.otpSecret = randomSecret();
        reply.insert("otpKey", challenge.otpSecret);
    }
    return jsonReply(reply);
}

/// What a second factor answers instead of letting the login pass; nothing when it does.
std::optional<HttpReply> secondFactor(const Call& call, Account& account, World& world,
                                      QStringList* recoveryCodes)
{
    const Challenge challenge = world.challenges.value(account.username);
    if (account.factor == Account::Factor::Sms) {
        if (!call.json.contains("verification"))
            return askForSms(account, world);
        if (challenge.code.isEmpty() || textOf(call, "verification") != challenge.code)
            return errorReply(1003, "The verification code is wrong.", "验证码错误。");
    }
    if (account.factor != Account::Factor::Authenticator)
        return {};
    if (!call.json.contains("supportOtpCode"))
        return askForAuthenticator(account, world);
    if (textOf(call, "otpMiddleToken") != challenge.otpMiddleToken)
        return errorReply(1108, "The authenticator's step has expired.", "身份验证器验证已过期。");
    const QString secret = account.otpBound ? account.otpSecret : challenge.otpSecret;
    if (!isTotp(secret, textOf(call, "supportOtpCode")))
        return errorReply(1109, "The authenticator's code is wrong.", "身份验证器验证码错误。");
    if (account.otpBound)
        return {};
    account.otpBound = true;
    account.otpSecret = secret;
    for (int i = 0; i < kRecoveryCodes; ++i)
        *recoveryCodes << randomName().left(16).toUpper();
    account.recoveryCodes = *recoveryCodes;
    return {};
}

HttpReply demandDevice(const Account& account, World& world)
{
    Challenge& challenge = world.challenges[account.username];
    const bool ask = account.deviceRule == Account::DeviceRule::AskWithToken;
    challenge.bindToken = ask ? randomName() : QString();
    return jsonReply({{"code", 401},
                      {"message", "mobileBindDevice"},
                      {"parameters", QJsonObject{{"accountName", account.username},
                                                 {"deviceBindMiddleToken", challenge.bindToken}}}});
}

HttpReply answerLogin(const Call& call, World& world)
{
    const Credential name = credentialOf(call, world, "encryptAccountName", "accountName");
    if (!call.header("x-tq-auth-header").isEmpty())
        return logInByToken(name.text, call, world);
    const Credential password = credentialOf(call, world, "encryptPassword", "password");
    Account* account = world.account(customerOf(call), name.text);
    if (!name.good || !password.good || account == nullptr || account->password != password.text)
        return errorReply(1001, "Wrong username or password.", "用户名或密码错误。");
    const QString serial = QString::fromUtf8(call.header("sn"));
    QStringList recoveryCodes;
    if (const auto reply = secondFactor(call, *account, world, &recoveryCodes))
        return *reply;
    if (account->deviceRule != Account::DeviceRule::Any)
        return demandDevice(*account, world);
    if (account->approvalPolls > 0 && !isApproved(call, *account, world))
        return askForApproval(*account, serial, world);
    Challenge& challenge = world.challenges[account->username];
    challenge.code.clear(); // each works once
    challenge.otpMiddleToken.clear();
    return tokenReply(world.openSession(*account, serial), *account, recoveryCodes);
}

/// To a login by SMS a refusal must not look like an answer without a token.
HttpReply logIn(const Call& call, World& world)
{
    HttpReply reply = answerLogin(call, world);
    const int code = QJsonDocument::fromJson(reply.body).object().value("code").toInt();
    if (code != 0 && call.json.contains("verification"))
        reply.status = 400;
    return reply;
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
        findings.add("polls for a request that does not wait");
    else if (approval.customerId != call.header("customerid").toInt() ||
             approval.serial != QString::fromUtf8(call.header("sn")))
        findings.add("polls for the request of another customer or serial");
}

HttpReply poll(const Call& call, World& world)
{
    const auto approval = world.approvals.find(polledId(call));
    if (approval == world.approvals.end())
        return errorReply(404, "No such request");
    if (approval->pollsLeft > 0)
        --approval->pollsLeft;
    return jsonReply({{"code", 0}, {"resultCode", approval->pollsLeft > 0 ? 1 : 0}});
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
