#include "sim/Credentials.h"
#include "sim/Route.h"
#include "sim/Totp.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <optional>

namespace sim {

namespace {

constexpr char kPollPath[] = "/api/mobile/v2/auth/result";
constexpr int kRecoveryCodes = 4;

HttpReply offerKey(const Call& call, World& world)
{
    const Account* account = world.find(ofCustomer(call.customer()));
    const bool offers = account != nullptr && account->offersKey;
    QJsonArray types;
    for (int type : world.scenario.rsaTypes)
        types.append(type);
    if (offers)
        world.keyGivenTo.insert(call.customer());
    else
        world.keyGivenTo.remove(call.customer());
    return success(
        {{"rsaType", types}, {"key", QString(offers ? world.key.publicKey() : QByteArray())}});
}

/// Without a good key the client has nothing to encrypt with.
void keyNotGiven(const Call& call, World& world)
{
    world.keyGivenTo.remove(call.customer());
}

void checkAuthConfig(JsonCheck& body)
{
    body.customerNumber();
    body.flag("supportMailboxFind", true);
}

void checkClientInfo(JsonCheck info)
{
    info.matches("internalIp", QString("(%1(,%1)*)?").arg("\\d+(\\.\\d+){3}(/\\d+)?"));
    info.matches("opsVersion", ".*\\(kernel .+\\)");
    info.matches("osArchitecture", "X86|ARM|unknown");
    for (const char* name : {"deviceName", "deviceType", "opsType", "hostName"})
        info.text(name);
    info.serial();
    info.text("clientType", "Veltaro");
}

/// What both kinds of login say of this client.
void checkDevice(JsonCheck& body)
{
    body.matches("deviceId", "[0-9A-Z-]*");
    body.text("mobileVersion", kClientVersion);
    const QString approval = body.optionalText("requestIdForPoll");
    if (!approval.isEmpty() && !body.world.approvals.contains(approval))
        body.findings.add("requestIdForPoll names no approval that waits");
    checkClientInfo(body.object("traceExtraInfo"));
}

/// A login with the code of an SMS: nothing in it is encrypted.
void checkSmsLogin(JsonCheck& body)
{
    body.customerText();
    body.filledText("accountName");
    body.filledText("verification");
    for (const char* name : {"support2FA", "supportPollByRequestId"})
        body.flag(name, true);
    if (body.call.token().isEmpty())
        body.filledText("password");
    else
        body.flag("automaticLogin");
    checkDevice(body);
}

void checkLogin(JsonCheck& body)
{
    if (body.has("verification"))
        return checkSmsLogin(body);
    QVector<CredentialNames> credentials{kAccountName};
    if (body.call.token().isEmpty()) // a password beside a token is one member too many
        credentials.append(kPassword);
    checkCredentials(body, credentials);
    body.customerNumber();
    for (const char* name : {"support2FA", "supportPollByRequestId", "supportOtp"})
        body.flag(name, true);
    body.flag("otpLogin");
    body.flag("automaticLogin");
    body.matches("privacyVersion", "\\d*|newest");
    body.optionalText("supportOtpCode");
    if (body.has("supportOtpCode") != body.has("otpMiddleToken"))
        body.findings.add("supportOtpCode and otpMiddleToken go together");
    if (body.has("otpMiddleToken"))
        body.handedOut("otpMiddleToken", &Challenge::otpMiddleToken);
    if (body.has("agreeToPrivacy"))
        body.flag("agreeToPrivacy", true);
    checkDevice(body);
}

HttpReply tokenReply(const Session& session, const Account& account,
                     const QStringList& recoveryCodes = {})
{
    QJsonObject reply{{"X-TQ-AUTH-HEADER", session.token},
                      {"allowChangePass", account.allowChangePass},
                      {"needResetPassword", account.mustChangePassword}};
    if (account.mustChangePassword) {
        reply.insert("needResetPasswordReasonCn", account.changeReasonCn);
        reply.insert("needResetPasswordReasonEn", account.changeReasonEn);
    }
    if (!recoveryCodes.isEmpty())
        reply.insert("otpRecoverCode", QJsonArray::fromStringList(recoveryCodes));
    return success(reply);
}

HttpReply askForApproval(const Account& account, const QString& serial, World& world)
{
    const QString id = randomName();
    const QString address = world.orchestratorRoot() + kPollPath + "?requestId=" + id;
    world.approvals.insert(id,
                           {account.username, account.customerId, serial, account.approvalPolls});
    return success({{"requestIdForPoll", id},
                    {"authResultCheckUrl", address},
                    {"authResultCheckInterval", world.scenario.approvalInterval},
                    {"authResultCheckTimes", world.scenario.approvalTimes}});
}

bool isApproved(const Call& call, const Account& account, World& world)
{
    const auto approval = world.approvals.find(call.text("requestIdForPoll"));
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
        return refusal(session);
    const Account* account = world.find(named(session->customerId, username));
    return account == nullptr ? refusal(nullptr) : tokenReply(*session, *account);
}

HttpReply askForSms(const Account& account, World& world)
{
    Challenge& challenge = world.challenges[account.username];
    challenge.middleToken = randomName();
    return success({{"middleToken", challenge.middleToken}, {"phoneNumber", account.phone}});
}

HttpReply askForAuthenticator(const Account& account, World& world)
{
    Challenge& challenge = world.challenges[account.username];
    challenge.otpMiddleToken = randomName();
    QJsonObject reply{{"otpMiddleToken", challenge.otpMiddleToken}, {"otpLogin", account.otpBound}};
    if (!account.otpBound) {
        challenge.otpSecret = randomSecret();
        reply.insert("otpKey", challenge.otpSecret);
    }
    return success(reply);
}

/// What a second factor answers instead of letting the login pass; nothing when it does.
std::optional<HttpReply> secondFactor(const Call& call, Account& account, World& world,
                                      QStringList* recoveryCodes)
{
    const Challenge challenge = world.challenges.value(account.username);
    if (account.factor == Account::Factor::Sms) {
        if (!call.json.contains("verification"))
            return askForSms(account, world);
        if (challenge.code.isEmpty() || call.text("verification") != challenge.code)
            return errorReply(1003);
    }
    if (account.factor != Account::Factor::Authenticator)
        return {};
    if (!call.json.contains("supportOtpCode"))
        return askForAuthenticator(account, world);
    if (call.text("otpMiddleToken") != challenge.otpMiddleToken)
        return errorReply(1108);
    const QString secret = account.otpBound ? account.otpSecret : challenge.otpSecret;
    if (!isTotp(secret, call.text("supportOtpCode")))
        return errorReply(1109);
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
    const QJsonObject parameters{{"accountName", account.username},
                                 {"deviceBindMiddleToken", challenge.bindToken}};
    return jsonReply({{"code", 401}, {"message", "mobileBindDevice"}, {"parameters", parameters}});
}

HttpReply answerLogin(const Call& call, World& world)
{
    const Credential name = credentialOf(call, world, kAccountName);
    if (!call.token().isEmpty())
        return logInByToken(name.text, call, world);
    const Credential password = credentialOf(call, world, kPassword);
    Account* account = world.find(named(call.customer(), name.text));
    if (!name.good || !password.good || account == nullptr || account->password != password.text)
        return errorReply(1001);
    QStringList recoveryCodes;
    if (const auto reply = secondFactor(call, *account, world, &recoveryCodes))
        return *reply;
    if (account->deviceRule != Account::DeviceRule::Any)
        return demandDevice(*account, world);
    if (account->approvalPolls > 0 && !isApproved(call, *account, world))
        return askForApproval(*account, call.serial(), world);
    Challenge& challenge = world.challenges[account->username];
    challenge.code.clear(); // each works once
    challenge.otpMiddleToken.clear();
    return tokenReply(world.openSession(*account, call.serial()), *account, recoveryCodes);
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
    return call.query().startsWith(prefix) ? call.query().mid(prefix.size()) : QByteArray();
}

void checkPoll(const Call& call, const World& world, Findings& findings)
{
    nothing(call, world, findings);
    const Approval approval = world.approvals.value(polledId(call));
    if (approval.username.isEmpty())
        findings.add("polls for a request that does not wait");
    else if (approval.customerId != call.customer() || approval.serial != call.serial())
        findings.add("polls for the request of another customer or serial");
}

HttpReply poll(const Call& call, World& world)
{
    const auto approval = world.approvals.find(polledId(call));
    if (approval == world.approvals.end())
        return errorReply(404);
    if (approval->pollsLeft > 0)
        --approval->pollsLeft;
    return success({{"resultCode", approval->pollsLeft > 0 ? 1 : 0}});
}

} // namespace

std::vector<Route> loginRoutes()
{
    const HeaderRules key{NoContent, Numeric};
    const HeaderRules config{Json, Numeric};
    const HeaderRules login{Json, Numeric, OptionalToken, true};
    const HeaderRules polling{Json, Numeric, NoToken, true};
    const auto authConfig = reply<&Scenario::authConfigReply>;
    return {
        {"/s/mobile/pubkey/obtain", key, nothing, offerKey, false, keyNotGiven},
        {"/api/mobile/auth/config", config, json(checkAuthConfig), authConfig},
        {"/api/mobile/v2/auth", login, json(checkLogin), logIn},
        {kPollPath, polling, checkPoll, poll, true},
    };
}

} // namespace sim
