#include "login/LoginReply.h"

#include "orch/JsonUtil.h"
#include "orch/OrchErrCode.h"

namespace {

// Codes that end the authenticator's step for good.
constexpr int kOtpStepExpired = 1108;
constexpr int kOtpStepRefused = 1112;

} // namespace

LoginReply LoginReply::fromJson(const QByteArray& body)
{
    const QJsonObject json = JsonUtil::object(body);
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
    if (!otpMiddleToken.isEmpty())
        return LoginFollowUp::Authenticator;
    return LoginFollowUp::Unusable;
}

BindingDemand BindingDemand::fromJson(const QByteArray& body)
{
    const QJsonObject json = JsonUtil::object(body);
    BindingDemand demand;
    demand.demanded =
        JsonUtil::getInt(json, QStringLiteral("code"), 0) == orchcode::kTokenInvalid &&
        body.contains("message") && body.contains("mobileBindDevice");
    const QJsonObject parameters = JsonUtil::getObject(json, QStringLiteral("parameters"));
    demand.accountName = parameters.value(QLatin1String("accountName")).toString();
    demand.middleToken = parameters.value(QLatin1String("deviceBindMiddleToken")).toString();
    return demand;
}

LoginRefusal LoginRefusal::fromJson(const QByteArray& body)
{
    const QJsonObject json = JsonUtil::object(body);
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
