#include "orch/AccountRequests.h"

#include "orch/OrchAddress.h"
#include "orch/RequestParts.h"

using namespace requestparts;

namespace {

QJsonObject customerBody(const QString& customerId)
{
    return {{QStringLiteral("customerId"), numericId(customerId)}};
}

/// The account's name under its plain key, or encrypted with the padding that was used.
void setAccount(QJsonObject& body, const char* plainKey, const QString& name,
                const QString& encryptedName, int rsaType)
{
    if (encryptedName.isEmpty()) {
        body.insert(QLatin1String(plainKey), name);
        return;
    }
    body.insert(QStringLiteral("encryptAccountName"), encryptedName);
    body.insert(QStringLiteral("rsaType"), rsaType);
}

QString rootLast(const QString& authUrl, const char* path)
{
    return orchaddress::rootLastApi(authUrl, QLatin1String(path));
}

QString rootFirst(const QString& authUrl, const char* path)
{
    return orchaddress::rootFirstApi(authUrl, QLatin1String(path));
}

constexpr char kResetPassword[] = "/api/mobile/v2/resetpassword";

QJsonObject bothPasswords(const ipc::ResetPasswordParams& params)
{
    if (params.newEncPassword.isEmpty() || params.oldEncPassword.isEmpty())
        return {{QStringLiteral("oldPassword"), params.oldPassword},
                {QStringLiteral("newPassword"), params.newPassword}};
    return {{QStringLiteral("oldEncryptPassword"), params.oldEncPassword},
            {QStringLiteral("newEncryptPassword"), params.newEncPassword},
            {QStringLiteral("rsaType"), params.rsaType}};
}

} // namespace

namespace orchrequest {

OrchRequest resetPassword(const QString& authUrl, const OrchIdentity& identity,
                          const ipc::ResetPasswordParams& params)
{
    return sessionPost(rootLast(authUrl, kResetPassword), identity, bothPasswords(params));
}

OrchRequest changePassword(const QString& authUrl, const OrchIdentity& identity,
                           const ipc::ResetPasswordParams& params)
{
    return sessionPost(rootFirst(authUrl, kResetPassword), identity, bothPasswords(params));
}

OrchRequest resetForgottenPassword(const QString& authUrl, const QString& serial,
                                   const ipc::ForgetPasswordParams& params)
{
    QJsonObject body = customerBody(params.customerId);
    body.insert(QStringLiteral("verification"), params.verifyNum);
    if (params.encryptedPassword.isEmpty()) {
        body.insert(QStringLiteral("password"), params.password);
    } else {
        body.insert(QStringLiteral("encryptPassword"), params.encryptedPassword);
        body.insert(QStringLiteral("rsaType"), params.rsaType);
    }
    if (params.encryptedUsername.isEmpty())
        body.insert(QStringLiteral("username"), params.username);
    else
        body.insert(QStringLiteral("encryptAccountName"), params.encryptedUsername);
    body.insert(QStringLiteral("verifiCodeType"), params.verifyType);
    setUnlessEmpty(body, "phoneNumber", params.phoneNumber);
    body.insert(QStringLiteral("resetTimes"), params.resetTimes);
    body.insert(QStringLiteral("middleToken"), params.midToken);
    return jsonPost(rootFirst(authUrl, "/api/mobile/v2/forgotpassword"),
                    {serial, params.customerId, {}}, body);
}

OrchRequest sendCode(const QString& authUrl, const QString& serial,
                     const ipc::VerifySmsParams& params, const QString& lang)
{
    QJsonObject body = customerBody(params.customerId);
    setAccount(body, "accountName", params.username, params.encryptedUsername, params.rsaType);
    setUnlessEmpty(body, "phoneNumber", params.phoneNumber);
    setUnlessEmpty(body, "forgetPasswordMiddleToken", params.midToken);
    setUnlessEmpty(body, "sendType", params.sendType);
    body.insert(QStringLiteral("type"), QStringLiteral("Custom"));
    body.insert(QStringLiteral("lang"), lang);
    OrchRequest request = jsonPost(rootFirst(authUrl, "/api/mobile/v2/verification/send"),
                                   {serial, params.customerId, {}}, body);
    if (!params.middleToken.isEmpty())
        request.headers.append({QByteArrayLiteral("middleToken"), params.middleToken.toUtf8()});
    return request;
}

OrchRequest codeStatus(const QString& authUrl, const QString& serial,
                       const ipc::QuerySmsParams& params)
{
    return jsonPost(rootLast(authUrl, "/api/mobile/smsStatus"), {serial, params.customerId, {}},
                    {{QStringLiteral("id"), params.id}, {QStringLiteral("type"), params.type}});
}

OrchRequest resetMethods(const QString& authUrl, const QString& serial,
                         const ipc::ResetPasswdTypeParams& params)
{
    QJsonObject body = customerBody(params.customerId);
    setAccount(body, "username", params.username, params.encryptedUsername, params.rsaType);
    return jsonPost(rootLast(authUrl, "/api/mobile/v2/forgotpassword/mode"),
                    {serial, params.customerId, {}}, body);
}

OrchRequest passwordRules(const QString& authUrl, const QString& serial,
                          const ipc::PasswdRulesParams& params, const QString& lang)
{
    QJsonObject body = customerBody(params.customerId);
    body.insert(QStringLiteral("clientType"), params.clientType);
    body.insert(QStringLiteral("lang"), lang);
    return jsonPost(rootLast(authUrl, "/api/mobile/v2/Cryptographic/rule"),
                    {serial, params.customerId, {}}, body);
}

OrchRequest smsLogin(const QString& authUrl, const QString& serial,
                     const ipc::SmsLoginParams& params, const QJsonObject& clientInfo)
{
    QJsonObject body{{QStringLiteral("customerId"), params.customerId},
                     {QStringLiteral("accountName"), params.username},
                     {QStringLiteral("support2FA"), true},
                     {QStringLiteral("verification"), params.verifyNum},
                     {QStringLiteral("deviceId"), params.deviceId},
                     {QStringLiteral("supportPollByRequestId"), true},
                     {QStringLiteral("mobileVersion"), version()},
                     {QStringLiteral("traceExtraInfo"), clientInfo}};
    if (params.token.isEmpty())
        body.insert(QStringLiteral("password"), params.password);
    else
        body.insert(QStringLiteral("automaticLogin"), params.autoLogin);
    setUnlessEmpty(body, "requestIdForPoll", params.requestIdForPoll);
    OrchRequest request = jsonPost(authUrl, {serial, params.customerId, {}}, body);
    addType(request);
    if (!params.token.isEmpty())
        addToken(request, params.token);
    return request;
}

OrchRequest recoverOtpKey(const QString& authUrl, const QString& serial,
                          const ipc::RecoverOtpParams& params)
{
    return jsonPost(rootFirst(authUrl, "/api/mobile/v2/recoverOtpKey"),
                    {serial, params.customerId, {}},
                    {{QStringLiteral("otpMiddleToken"), params.otpMiddleToken},
                     {QStringLiteral("recoverCode"), params.recoverCode},
                     {QStringLiteral("customerId"), params.customerId}});
}

OrchRequest bindDevice(const QString& authUrl, const QString& serial,
                       const ipc::BindDeviceParams& params)
{
    const QJsonObject device{{QStringLiteral("deviceId"), params.deviceId}};
    OrchRequest request = makeRequest(OrchRequest::Method::Post,
                                      rootFirst(authUrl, "/api/mobile/v2/binddevice"), serial);
    request.headers.append({QByteArrayLiteral("X-TQ-AUTH-DEVICE-BIND"), params.token.toUtf8()});
    addType(request);
    setJson(request, {{QStringLiteral("username"), params.username},
                      {QStringLiteral("customerId"), numericId(params.customerId)},
                      {QStringLiteral("traceExtraInfo"), device}});
    return request;
}

} // namespace orchrequest
