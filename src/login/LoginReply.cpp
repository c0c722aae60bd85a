#include "login/LoginReply.h"

#include "orch/JsonUtil.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchReply.h"

namespace {

// Codes that end the authenticator's step for good.
constexpr int kOtpStepExpired = 1108;
constexpr int kOtpStepRefused = 1112;

} // namespace

LoginReply LoginReply::fromJson(const QJsonObject& json)
{
    const auto text = [&json](const char* key) {
        return json.value(QLatin1String(key)).toString();
    };
    LoginReply reply;
    reply.token = text("X-TQ-AUTH-HEADER");
    reply.phoneNumber = text("phoneNumber");
    reply.middleToken = text("middleToken");
    reply.requestIdForPoll = text("requestIdForPoll");
    reply.authResultCheckUrl = text("authResultCheckUrl");
    reply.authResultCheckInterval =
        JsonUtil::getInt(json, QStringLiteral("authResultCheckInterval"), 0);
    reply.authResultCheckTimes = JsonUtil::getInt(json, QStringLiteral("authResultCheckTimes"), 0);
    reply.otpKey = text("otpKey");
    reply.otpMiddleToken = text("otpMiddleToken");
    reply.otpLogin = json.value(QLatin1String("otpLogin")).toBool(false);
    reply.needResetPassword = json.value(QLatin1String("needResetPassword")).toBool(false);
    reply.needResetPasswordReasonCn = text("needResetPasswordReasonCn");
    reply.needResetPasswordReasonEn = text("needResetPasswordReasonEn");
    reply.allowChangePass = json.value(QLatin1String("allowChangePass")).toBool(true);
    reply.otpRecoverCode = JsonUtil::getArrayToStringList(json, QStringLiteral("otpRecoverCode"));
    return reply;
}

LoginFollowUp decideLogin(const LoginReply& reply, const QString& otpMiddleToken)
{
    if (!reply.token.isEmpty())
        return reply.needResetPassword ? LoginFollowUp::ForcedPassword : LoginFollowUp::Accept;
    if (!reply.middleToken.isEmpty() && !reply.phoneNumber.isEmpty())
        return LoginFollowUp::Sms;
    if (!reply.requestIdForPoll.isEmpty() && !reply.authResultCheckUrl.isEmpty()) {
        return reply.authResultCheckTimes > 0 ? LoginFollowUp::Approval
                                              : LoginFollowUp::ApprovalOver;
    }
    if (!otpMiddleToken.isEmpty() && (reply.otpLogin || !reply.otpKey.isEmpty()))
        return LoginFollowUp::Authenticator;
    return LoginFollowUp::Unusable;
}

bool isDeviceBing(const OrchReply& reply, QString& user, QString& token)
{
    if (reply.code() != orchcode::kTokenInvalid || !reply.body.contains("message") ||
        !reply.body.contains("mobileBindDevice"))
        return false;
    const QJsonObject parameters = JsonUtil::getObject(reply.json(), QStringLiteral("parameters"));
    user = JsonUtil::getQString(parameters, QStringLiteral("accountName"), user);
    token = JsonUtil::getQString(parameters, QStringLiteral("deviceBindMiddleToken"), token);
    return true;
}

LoginRefusal LoginRefusal::fromJson(const QJsonObject& json)
{
    const int code = JsonUtil::getInt(json, QStringLiteral("code"), 0);
    LoginRefusal refusal;
    if (code == orchcode::kTokenInvalid) {
        refusal.otpRecoverCode =
            JsonUtil::getArrayToStringList(JsonUtil::getObject(json, QStringLiteral("parameters")),
                                           QStringLiteral("otpRecoverCode"));
    }
    refusal.startAgain = code == kOtpStepExpired || code == kOtpStepRefused;
    return refusal;
}

PollNext decidePoll(int resultCode, int timesLeft)
{
    if (resultCode == 0)
        return PollNext::Approved;
    return timesLeft < 1 ? PollNext::TimedOut : PollNext::PollAgain;
}
