// Codes, passwords, authenticators and devices: what an account needs beside its login.

#include "sim/Credentials.h"
#include "sim/Route.h"
#include "sim/Totp.h"

#include <QRandomGenerator>
#include <QRegularExpression>

namespace sim {

namespace {

using Rules = HeaderRules;

constexpr char kMiddleToken[] = "middletoken";
constexpr char kBindToken[] = "x-tq-auth-device-bind";
constexpr int kStepExpired = 1060;

QString bytes(const QByteArray& value)
{
    return QString::fromUtf8(value);
}

Account* accountOf(const Call& call, World& world, const char* plain)
{
    return world.account(customerOf(call),
                         credentialOf(call, world, "encryptAccountName", plain).text);
}

/// By the value of one of its tokens; null when nobody holds it.
Account* ownerOf(const Call& call, World& world, QString Challenge::*token, const QString& value)
{
    for (Account& account : world.scenario.accounts) {
        if (account.customerId == customerOf(call) && !value.isEmpty() &&
            world.challenges.value(account.username).*token == value)
            return &account;
    }
    return nullptr;
}

HttpReply refuse(int code, const char* message, const char* messageCn, int status = 200)
{
    HttpReply reply = errorReply(code, QLatin1String(message), QString::fromUtf8(messageCn));
    reply.status = status;
    return reply;
}

HttpReply expired()
{
    return refuse(kStepExpired, "Too much time has passed, please start again.",
                  "操作已超时，请重新开始。");
}

HttpReply done(const QString& flag = "success")
{
    return jsonReply({{"code", 0}, {flag, true}});
}

void checkCustomer(JsonCheck& body, const Call& call)
{
    body.integer("customerId", {customerOf(call)});
}

void checkLanguage(JsonCheck& body, Findings& findings)
{
    const QString language = body.text("lang");
    if (language != "en" && language != "zh")
        findings.add("lang is neither en nor zh");
}

/// "phone" or "mailbox", and the token that goes with it.
QString Challenge::*tokenFor(const QString& type)
{
    return type == "mailbox" ? &Challenge::mailToken : &Challenge::phoneToken;
}

void checkType(const QString& type, Findings& findings)
{
    if (type != "phone" && type != "mailbox")
        findings.add(QStringLiteral("\"%1\" is no way to send a code").arg(type));
}

// Codes

void checkSend(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const bool reset = body.has("forgetPasswordMiddleToken");
    const bool encrypted = reset && isKeyGiven(call, world);
    checkCustomer(body, call);
    checkCredential(body, world, encrypted, "encryptAccountName", "accountName", findings);
    if (encrypted)
        checkPadding(body, world);
    if (reset) {
        const QString type = body.text("sendType");
        checkType(type, findings);
        if (!world.hasToken(tokenFor(type), body.text("forgetPasswordMiddleToken")))
            findings.add("forgetPasswordMiddleToken was never handed out");
        if (!call.header(kMiddleToken).isNull())
            findings.add("unexpected header middleToken");
    } else {
        if (body.text("phoneNumber").isEmpty())
            findings.add("phoneNumber is empty");
        if (!world.hasToken(&Challenge::middleToken, bytes(call.header(kMiddleToken))))
            findings.add("header middleToken was never handed out");
    }
    body.text("type", "Custom");
    checkLanguage(body, findings);
    body.finish();
}

HttpReply send(const Call& call, World& world)
{
    const Account* account = accountOf(call, world, "accountName");
    if (account == nullptr)
        return refuse(1048, "The user does not exist.", "用户不存在。");
    Challenge& challenge = world.challenges[account->username];
    const QString type = textOf(call, "sendType");
    if (!type.isEmpty() && challenge.*tokenFor(type) != textOf(call, "forgetPasswordMiddleToken"))
        return expired();
    challenge.code = QString::number(QRandomGenerator::global()->bounded(100000, 1000000));
    challenge.codeId = randomName();
    challenge.codeType = QLatin1String(type == "mailbox" ? "email" : "sms");
    return jsonReply({{"code", 0}, {"data", QJsonObject{{"id", challenge.codeId}}}});
}

void checkStatus(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const QString id = body.text("id");
    const QString type = body.text("type");
    const bool sent = std::any_of(world.challenges.begin(), world.challenges.end(),
                                  [&](const Challenge& challenge) {
                                      return challenge.codeId == id && challenge.codeType == type;
                                  });
    if (!sent || id.isEmpty())
        findings.add("no such code was sent");
    body.finish();
}

HttpReply well(const Call&, World&)
{
    return done();
}

// Passwords

void checkMode(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const bool encrypted = isKeyGiven(call, world);
    checkCustomer(body, call);
    checkCredential(body, world, encrypted, "encryptAccountName", "username", findings);
    if (encrypted)
        checkPadding(body, world);
    body.finish();
}

HttpReply mode(const Call& call, World& world)
{
    const Account* account = accountOf(call, world, "username");
    if (account == nullptr)
        return refuse(1048, "The user does not exist.", "用户不存在。");
    Challenge& challenge = world.challenges[account->username];
    challenge.phoneToken = randomName();
    challenge.mailToken = randomName();
    const int method = account->phone.isEmpty() ? 2 : account->mailbox.isEmpty() ? 1 : 0;
    QJsonObject reply{{"code", 0},
                      {"resetPwdMethod", method},
                      {"phone", account->phone},
                      {"mailbox", account->mailbox},
                      {"phoneMiddleToken", challenge.phoneToken},
                      {"emailMiddleToken", challenge.mailToken}};
    const QJsonObject& other = world.scenario.resetModeReply;
    for (auto it = other.begin(); it != other.end(); ++it)
        reply.insert(it.key(), it.value());
    return jsonReply(reply);
}

void checkRules(const Call& call, const World&, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    checkCustomer(body, call);
    body.text("clientType", "linux");
    checkLanguage(body, findings);
    body.finish();
}

HttpReply rules(const Call&, World& world)
{
    return jsonReply(world.scenario.passwordRules);
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

HttpReply againstRules()
{
    return refuse(1061, "The new password does not meet the rules.", "新密码不符合规则。");
}

void checkReset(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const bool encrypted = isKeyGiven(call, world);
    checkCustomer(body, call);
    checkCredential(body, world, false, "", "verification", findings);
    checkCredential(body, world, encrypted, "encryptPassword", "password", findings);
    checkCredential(body, world, encrypted, "encryptAccountName", "username", findings);
    if (encrypted)
        checkPadding(body, world);
    const QString type = body.text("verifiCodeType");
    checkType(type, findings);
    body.optionalText("phoneNumber");
    if (body.integer("resetTimes") < 1)
        findings.add("resetTimes counts from 1");
    if (!world.hasToken(tokenFor(type), body.text("middleToken")))
        findings.add("middleToken was never handed out");
    body.finish();
}

HttpReply reset(const Call& call, World& world)
{
    Account* account = accountOf(call, world, "username");
    if (account == nullptr)
        return refuse(1048, "The user does not exist.", "用户不存在。");
    Challenge& challenge = world.challenges[account->username];
    if (challenge.*tokenFor(textOf(call, "verifiCodeType")) != textOf(call, "middleToken"))
        return expired();
    if (challenge.code.isEmpty() || challenge.code != textOf(call, "verification"))
        return refuse(1003, "The verification code is wrong.", "验证码错误。");
    const QString password = credentialOf(call, world, "encryptPassword", "password").text;
    if (!keepsRules(password, world))
        return againstRules();
    account->password = password;
    challenge = {};
    return done();
}

void checkChange(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const bool encrypted = isKeyGiven(call, world);
    checkCredential(body, world, encrypted, "oldEncryptPassword", "oldPassword", findings);
    checkCredential(body, world, encrypted, "newEncryptPassword", "newPassword", findings);
    if (encrypted)
        checkPadding(body, world);
    body.finish();
}

HttpReply change(const Call& call, World& world)
{
    const Session* session = world.sessionOf(call);
    Account* account = world.account(session->customerId, session->username);
    if (account == nullptr)
        return refusal(-1);
    if (credentialOf(call, world, "oldEncryptPassword", "oldPassword").text != account->password)
        return refuse(1062, "The old password is wrong.", "旧密码错误。");
    const QString password = credentialOf(call, world, "newEncryptPassword", "newPassword").text;
    if (!keepsRules(password, world))
        return againstRules();
    account->password = password;
    account->mustChangePassword = false;
    return done();
}

// Authenticators and devices

void checkRecovery(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    body.text("customerId", bytes(call.header("customerid")));
    if (!world.hasToken(&Challenge::otpMiddleToken, body.text("otpMiddleToken")))
        findings.add("otpMiddleToken was never handed out");
    body.text("recoverCode");
    body.finish();
}

/// Success names no code: one would mean a refusal.
HttpReply recover(const Call& call, World& world)
{
    Account* account =
        ownerOf(call, world, &Challenge::otpMiddleToken, textOf(call, "otpMiddleToken"));
    if (account == nullptr)
        return refuse(1108, "The authenticator's step has expired.", "身份验证器验证已过期。", 400);
    if (!account->recoveryCodes.removeOne(textOf(call, "recoverCode")))
        return refuse(1110, "The recovery code is wrong.", "恢复码错误。", 400);
    Challenge& challenge = world.challenges[account->username];
    account->otpBound = false;
    challenge.otpSecret = randomSecret();
    challenge.otpMiddleToken = randomName();
    return jsonReply(
        {{"otpKey", challenge.otpSecret}, {"otpMiddleToken", challenge.otpMiddleToken}});
}

void checkBinding(const Call& call, const World& world, Findings& findings)
{
    JsonCheck body = jsonBody(call, findings);
    const int customer = body.integer("customerId");
    const QString username = body.text("username");
    if (world.account(customer, username) == nullptr)
        findings.add("there is no such account");
    if (!world.hasToken(&Challenge::bindToken, bytes(call.header(kBindToken))))
        findings.add("header X-TQ-AUTH-DEVICE-BIND was never handed out");
    JsonCheck device(body.object("traceExtraInfo"), findings, "traceExtraInfo.");
    device.text("deviceId");
    device.finish();
    body.finish();
}

HttpReply bind(const Call& call, World& world)
{
    const QString username = textOf(call, "username");
    if (world.challenges.value(username).bindToken != bytes(call.header(kBindToken)))
        return refuse(kStepExpired, "Too much time has passed, please log in again.",
                      "操作已超时，请重新登录。", 400);
    world.deviceRequests.append(username);
    return done();
}

Route route(const char* path, Rules headers, void (*check)(const Call&, const World&, Findings&),
            HttpReply (*handle)(const Call&, World&))
{
    return {false, "POST", path, std::move(headers), check, handle};
}

} // namespace

std::vector<Route> accountRoutes()
{
    const Rules plain{Rules::Content::Json, Rules::Customer::Numeric, Rules::Token::None, false};
    const Rules session{Rules::Content::Json, Rules::Customer::Numeric, Rules::Token::Required,
                        true};
    Rules code = plain;
    code.also = kMiddleToken;
    Rules device{Rules::Content::Json, Rules::Customer::None, Rules::Token::None, true};
    device.also = kBindToken;
    return {
        route("/api/mobile/v2/verification/send", code, checkSend, send),
        route("/api/mobile/smsStatus", plain, checkStatus, well),
        route("/api/mobile/v2/forgotpassword/mode", plain, checkMode, mode),
        route("/api/mobile/v2/forgotpassword", plain, checkReset, reset),
        route("/api/mobile/v2/Cryptographic/rule", plain, checkRules, rules),
        route("/api/mobile/v2/resetpassword", session, checkChange, change),
        route("/api/mobile/v2/recoverOtpKey", plain, checkRecovery, recover),
        route("/api/mobile/v2/binddevice", device, checkBinding, bind),
    };
}

} // namespace sim
