// Codes, passwords, authenticators and devices: what an account needs beside its login.

#include "sim/Credentials.h"
#include "sim/Route.h"
#include "sim/Totp.h"

#include <QRandomGenerator>
#include <QRegularExpression>

namespace sim {

namespace {

constexpr char kMiddleToken[] = "middletoken";
constexpr char kBindToken[] = "x-tq-auth-device-bind";
constexpr CredentialNames kUsername{"encryptAccountName", "username"};
constexpr CredentialNames kOldPassword{"oldEncryptPassword", "oldPassword"};
constexpr CredentialNames kNewPassword{"newEncryptPassword", "newPassword"};
constexpr int kStepExpired = 1060;

Account* accountOf(const Call& call, World& world, const CredentialNames& names)
{
    return world.find(named(call.customer(), credentialOf(call, world, names).text));
}

HttpReply done()
{
    return success({{"success", true}});
}

/// "phone" or "mailbox", and the token that goes with it.
QString Challenge::*tokenFor(const QString& type)
{
    return type == "mailbox" ? &Challenge::mailToken : &Challenge::phoneToken;
}

void checkHeader(JsonCheck& body, const char* header, QString Challenge::*token)
{
    if (!body.world.hasToken(token, body.call.header(header)))
        body.findings.add("header %1 was never handed out", header);
}

// Codes

void checkSend(JsonCheck& body)
{
    body.customerNumber();
    if (body.has("forgetPasswordMiddleToken")) {
        checkCredentials(body, {kAccountName});
        body.handedOut("forgetPasswordMiddleToken",
                       tokenFor(body.matches("sendType", "phone|mailbox")));
        if (!body.call.header(kMiddleToken).isNull())
            body.findings.add("unexpected header middleToken");
    } else {
        body.filledText("accountName");
        body.filledText("phoneNumber");
        checkHeader(body, kMiddleToken, &Challenge::middleToken);
    }
    body.text("type", "Custom");
    body.matches("lang", "en|zh");
}

HttpReply send(const Call& call, World& world)
{
    const Account* account = accountOf(call, world, kAccountName);
    if (account == nullptr)
        return errorReply(1048);
    Challenge& challenge = world.challenges[account->username];
    const QString type = call.text("sendType");
    if (!type.isEmpty() && challenge.*tokenFor(type) != call.text("forgetPasswordMiddleToken"))
        return errorReply(kStepExpired);
    challenge.code = QString::number(QRandomGenerator::global()->bounded(100000, 1000000));
    challenge.codeId = randomName();
    challenge.codeType = type == "mailbox" ? "email" : "sms";
    return success({{"data", QJsonObject{{"id", challenge.codeId}}}});
}

void checkStatus(JsonCheck& body)
{
    const QString id = body.text("id");
    const QString type = body.text("type");
    const auto& challenges = body.world.challenges;
    const bool sent = std::any_of(challenges.begin(), challenges.end(), [&](const auto& challenge) {
        return challenge.codeId == id && challenge.codeType == type;
    });
    if (!sent || id.isEmpty())
        body.findings.add("no such code was sent");
}

HttpReply well(const Call&, World&)
{
    return done();
}

// Passwords

void checkMode(JsonCheck& body)
{
    body.customerNumber();
    checkCredentials(body, {kUsername});
}

HttpReply mode(const Call& call, World& world)
{
    const Account* account = accountOf(call, world, kUsername);
    if (account == nullptr)
        return errorReply(1048);
    Challenge& challenge = world.challenges[account->username];
    challenge.phoneToken = randomName();
    challenge.mailToken = randomName();
    const int method = account->phone.isEmpty() ? 2 : account->mailbox.isEmpty() ? 1 : 0;
    QJsonObject reply{{"resetPwdMethod", method},
                      {"phone", account->phone},
                      {"mailbox", account->mailbox},
                      {"phoneMiddleToken", challenge.phoneToken},
                      {"emailMiddleToken", challenge.mailToken}};
    insertAll(reply, world.scenario.resetModeReply);
    return success(reply);
}

void checkRules(JsonCheck& body)
{
    body.customerNumber();
    body.text("clientType", "linux");
    body.matches("lang", "en|zh");
}

bool keepsRules(const QString& password, const World& world)
{
    for (const QJsonValue rule : world.scenario.passwordRules["firstPwdRule"].toArray()) {
        const QRegularExpression regExp(
            QRegularExpression::anchoredPattern(rule["pwdRegularStr"].toString()));
        if (regExp.isValid() && !regExp.match(password).hasMatch())
            return false;
    }
    return true;
}

void checkReset(JsonCheck& body)
{
    body.customerNumber();
    body.filledText("verification");
    checkCredentials(body, {kPassword, {"encryptAccountName", "username"}});
    body.optionalText("phoneNumber");
    if (body.integer("resetTimes") < 1)
        body.findings.add("resetTimes counts from 1");
    body.handedOut("middleToken", tokenFor(body.matches("verifiCodeType", "phone|mailbox")));
}

HttpReply reset(const Call& call, World& world)
{
    Account* account = accountOf(call, world, kUsername);
    if (account == nullptr)
        return errorReply(1048);
    Challenge& challenge = world.challenges[account->username];
    if (challenge.*tokenFor(call.text("verifiCodeType")) != call.text("middleToken"))
        return errorReply(kStepExpired);
    if (challenge.code.isEmpty() || challenge.code != call.text("verification"))
        return errorReply(1003);
    const QString password = credentialOf(call, world, kPassword).text;
    if (!keepsRules(password, world))
        return errorReply(1061);
    account->password = password;
    challenge = {};
    return done();
}

void checkChange(JsonCheck& body)
{
    checkCredentials(
        body, {{"oldEncryptPassword", "oldPassword"}, {"newEncryptPassword", "newPassword"}});
}

HttpReply change(const Call& call, World& world)
{
    const Session* session = world.sessionOf(call);
    Account* account = world.find(named(session->customerId, session->username));
    if (account == nullptr)
        return refusal(nullptr);
    if (credentialOf(call, world, kOldPassword).text != account->password)
        return errorReply(1062, 400);
    const QString password = credentialOf(call, world, kNewPassword).text;
    if (!keepsRules(password, world))
        return errorReply(1061, 400);
    account->password = password;
    account->mustChangePassword = false;
    return done();
}

// Authenticators and devices

void checkRecovery(JsonCheck& body)
{
    body.customerText();
    body.handedOut("otpMiddleToken", &Challenge::otpMiddleToken);
    body.text("recoverCode");
}

/// Success names no code: one would mean a refusal.
HttpReply recover(const Call& call, World& world)
{
    const QString token = call.text("otpMiddleToken");
    Account* account = world.find([&](const Account& any) {
        return any.customerId == call.customer() && !token.isEmpty() &&
               world.challenges.value(any.username).otpMiddleToken == token;
    });
    if (account == nullptr)
        return errorReply(1108, 400);
    if (!account->recoveryCodes.removeOne(call.text("recoverCode")))
        return errorReply(1110, 400);
    Challenge& challenge = world.challenges[account->username];
    account->otpBound = false;
    challenge.otpSecret = randomSecret();
    challenge.otpMiddleToken = randomName();
    return jsonReply(
        {{"otpKey", challenge.otpSecret}, {"otpMiddleToken", challenge.otpMiddleToken}});
}

void checkBinding(JsonCheck& body)
{
    const int customer = body.integer("customerId");
    const QString username = body.text("username");
    if (body.world.find(named(customer, username)) == nullptr)
        body.findings.add("there is no such account");
    checkHeader(body, kBindToken, &Challenge::bindToken);
    body.object("traceExtraInfo").text("deviceId");
}

HttpReply bind(const Call& call, World& world)
{
    const QString username = call.text("username");
    if (world.challenges.value(username).bindToken != QString(call.header(kBindToken)))
        return errorReply(kStepExpired, 400);
    world.deviceRequests.append(username);
    return done();
}

} // namespace

std::vector<Route> accountRoutes()
{
    const HeaderRules plain{Json, Numeric};
    const HeaderRules code{Json, Numeric, NoToken, false, kMiddleToken};
    const HeaderRules session{Json, Numeric, RequiredToken, true};
    const HeaderRules device{Json, NoCustomer, NoToken, true, kBindToken};
    const auto rules = reply<&Scenario::passwordRules>;
    return {
        {"/api/mobile/v2/verification/send", code, json(checkSend), send},
        {"/api/mobile/smsStatus", plain, json(checkStatus), well},
        {"/api/mobile/v2/forgotpassword/mode", plain, json(checkMode), mode},
        {"/api/mobile/v2/forgotpassword", plain, json(checkReset), reset},
        {"/api/mobile/v2/Cryptographic/rule", plain, json(checkRules), rules},
        {"/api/mobile/v2/resetpassword", session, json(checkChange), change},
        {"/api/mobile/v2/recoverOtpKey", plain, json(checkRecovery), recover},
        {"/api/mobile/v2/binddevice", device, json(checkBinding), bind},
    };
}

} // namespace sim
