#include "orch/OrchRequests.h"

#include "orch/OrchAddress.h"
#include "orch/RequestParts.h"

#include <QJsonArray>

using namespace requestparts;

namespace {

using Method = OrchRequest::Method;

QJsonObject logoResource(const char* key, const char* file, int height)
{
    return {{QStringLiteral("keyName"), QLatin1String(key)},
            {QStringLiteral("clientName"), QLatin1String(file)},
            {QStringLiteral("dpi"), 96},
            {QStringLiteral("heightPixel"), height}};
}

QJsonObject loginBody(const ipc::LoginParams& params, const QJsonObject& clientInfo)
{
    QJsonObject body;
    if (params.encryptedUsername.isEmpty()) {
        body.insert(QStringLiteral("accountName"), params.username);
    } else {
        body.insert(QStringLiteral("encryptAccountName"), params.encryptedUsername);
        body.insert(QStringLiteral("rsaType"), params.rsaType);
    }
    body.insert(QStringLiteral("customerId"), numericId(params.customerId));
    body.insert(QStringLiteral("support2FA"), true);
    body.insert(QStringLiteral("supportPollByRequestId"), true);
    body.insert(QStringLiteral("supportOtp"), true);
    body.insert(QStringLiteral("otpLogin"), params.isOtpLogin);
    body.insert(QStringLiteral("automaticLogin"), params.autoLogin);
    body.insert(QStringLiteral("privacyVersion"), params.privacyVersion);
    body.insert(QStringLiteral("deviceId"), params.deviceId);
    body.insert(QStringLiteral("mobileVersion"), version());
    setUnlessEmpty(body, "supportOtpCode", params.verifyNum);
    setUnlessEmpty(body, "otpMiddleToken", params.otpMiddleToken);
    if (params.agreePolicy)
        body.insert(QStringLiteral("agreeToPrivacy"), true);
    if (params.asynAuth)
        setUnlessEmpty(body, "requestIdForPoll", params.requestIdForPoll);
    if (params.token.isEmpty()) {
        if (params.encryptedPassword.isEmpty())
            body.insert(QStringLiteral("password"), params.password);
        else
            body.insert(QStringLiteral("encryptPassword"), params.encryptedPassword);
    }
    body.insert(QStringLiteral("traceExtraInfo"), clientInfo);
    return body;
}

} // namespace

namespace orchrequest {

OrchRequest verifyCustomer(const QString& lookupUrl, const OrchIdentity& identity)
{
    return formPost(lookupUrl, identity,
                    {{QStringLiteral("customerId"), identity.customerId},
                     {QStringLiteral("sn"), identity.serial},
                     {QStringLiteral("model"), model()}});
}

OrchRequest privacyVersion(const QString& lookupUrl, const QString& serial)
{
    const QString url =
        orchaddress::rootFirstApi(lookupUrl, QStringLiteral("/static/version/privacyversion.json"));
    return makeRequest(Method::Get, url, serial);
}

OrchRequest publicKey(const QString& authUrl, const OrchIdentity& identity)
{
    const QString url =
        orchaddress::rootFirstApi(authUrl, QStringLiteral("/s/mobile/pubkey/obtain"));
    OrchRequest request = makeRequest(Method::Get, url, identity.serial);
    addCustomer(request, identity.customerId);
    return request;
}

OrchRequest authConfig(const QString& authUrl, const OrchIdentity& identity)
{
    return jsonPost(orchaddress::rootLastApi(authUrl, QStringLiteral("/api/mobile/auth/config")),
                    identity,
                    {{QStringLiteral("customerId"), numericId(identity.customerId)},
                     {QStringLiteral("supportMailboxFind"), true}});
}

OrchRequest login(const QString& authUrl, const QString& serial, const ipc::LoginParams& params,
                  const QJsonObject& clientInfo)
{
    const OrchIdentity identity{serial, params.customerId, params.token};
    OrchRequest request = jsonPost(authUrl, identity, loginBody(params, clientInfo));
    if (!params.token.isEmpty())
        addToken(request, params.token);
    addType(request);
    return request;
}

OrchRequest asyncAuthPoll(const QString& serial, const ipc::AsyncAuthPollParams& params)
{
    OrchRequest request = emptyPost(params.pollUrl, {serial, params.customerId, {}});
    addType(request);
    return request;
}

OrchRequest signout(const QString& authUrl, const QString& serial, const ipc::SignoutParams& params)
{
    return sessionPost(orchaddress::sibling(authUrl, QStringLiteral("/signout")),
                       {serial, params.customerId, params.token},
                       {{QStringLiteral("mobileActionLogType"), params.reason}});
}

OrchRequest connectSession(const QString& authUrl, const OrchIdentity& identity,
                           ipc::DisconnectTypeReason reason, const QString& internalIp)
{
    const QJsonObject features{{QStringLiteral("supportHttps"), true},
                               {QStringLiteral("supportHeartBeat"), true},
                               {QStringLiteral("supportIpFilterDownloadUrlV2"), true},
                               {QStringLiteral("supportCheckToken"), true}};
    return sessionPost(orchaddress::rootLastApi(authUrl, QStringLiteral("/api/mobile/v2/connect")),
                       identity,
                       {{QStringLiteral("deviceModel"), model()},
                        {QStringLiteral("mobileVersion"), version()},
                        {QStringLiteral("sn"), identity.serial},
                        {QStringLiteral("deviceSupportMode"), QStringLiteral("native")},
                        {QStringLiteral("supportFeature"), features},
                        {QStringLiteral("internalIp"), internalIp},
                        {QStringLiteral("mobileActionLogType"), reason}});
}

OrchRequest upgradeCheck(const QString& authUrl, const OrchIdentity& identity,
                         const QString& distributionId, const QString& cpuArchitecture)
{
    return formPost(orchaddress::rootLastApi(authUrl, QStringLiteral("/s/mobile/v1/upgrade")),
                    identity,
                    {{QStringLiteral("customerId"), identity.customerId},
                     {QStringLiteral("model"), model()},
                     {QStringLiteral("version"), version()},
                     {QStringLiteral("subModel"), distributionId},
                     {QStringLiteral("cpuType"), cpuArchitecture},
                     {QStringLiteral("type"), QStringLiteral("Custom")}});
}

OrchRequest maintenanceNotice(const QString& authUrl, const OrchIdentity& identity)
{
    return jsonPost(
        orchaddress::rootLastApi(authUrl, QStringLiteral("/api/mobile/v2/upgradeNotice")), identity,
        {{QStringLiteral("customerId"), identity.customerId},
         {QStringLiteral("model"), model()},
         {QStringLiteral("sn"), identity.serial}});
}

OrchRequest customerLogo(const QString& authUrl, const OrchIdentity& identity)
{
    return jsonPost(
        orchaddress::rootLastApi(authUrl, QStringLiteral("/api/mobile/v2/getCustomerLogoUrl")),
        identity,
        {{QStringLiteral("customerId"), numericId(identity.customerId)},
         {QStringLiteral("resource"), QJsonArray{logoResource("pictureLogo", "orvek-round.png", 50),
                                                 logoResource("textLogo", "logo.png", 40)}}});
}

OrchRequest logoFile(const QString& url, const OrchIdentity& identity)
{
    OrchRequest request = makeRequest(OrchRequest::Method::Get, url, identity.serial);
    addCustomer(request, identity.customerId);
    request.timeoutMs = 20000;
    request.deadlineMs = 60000; // a login waits for it
    return request;
}

OrchRequest disconnectNotice(const QString& authUrl, const OrchIdentity& identity,
                             ipc::DisconnectTypeReason reason)
{
    return sessionPost(orchaddress::sibling(authUrl, QStringLiteral("/disconnect")), identity,
                       {{QStringLiteral("customerId"), numericId(identity.customerId)},
                        {QStringLiteral("mobileVersion"), version()},
                        {QStringLiteral("sn"), identity.serial},
                        {QStringLiteral("mobileActionLogType"), reason}});
}

OrchRequest heartbeat(const QString& heartbeatUrl, const OrchIdentity& identity, bool intranetMode)
{
    QJsonObject body;
    if (intranetMode)
        body.insert(QStringLiteral("intranetMode"), true);
    return sessionPost(heartbeatUrl, identity, body);
}

OrchRequest filterDocument(const QString& documentUrl, const OrchIdentity& identity)
{
    OrchRequest request = makeRequest(Method::Get, documentUrl, identity.serial);
    request.deadlineMs = 0;
    addCustomer(request, identity.customerId);
    addToken(request, identity.token);
    return request;
}

OrchRequest errorResourceAddress(const QString& authUrl, const QString& path,
                                 const OrchIdentity& identity)
{
    return formPost(orchaddress::errorResource(authUrl, path), identity, {});
}

OrchRequest errorResourceDocument(const QString& documentUrl, const QString& serial)
{
    OrchRequest request = makeRequest(Method::Get, documentUrl, serial);
    request.deadlineMs = 0;
    return request;
}

} // namespace orchrequest
