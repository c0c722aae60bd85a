#include "login/SmsReply.h"

#include "login/LoginReply.h"

namespace {

constexpr int kLongestNumber = 15;

} // namespace

SmsFollowUp decideSms(const LoginReply& reply)
{
    if (!reply.token.isEmpty())
        return SmsFollowUp::Accept;
    if (reply.requestIdForPoll.isEmpty() || reply.authResultCheckUrl.isEmpty())
        return SmsFollowUp::NoToken;
    return reply.authResultCheckTimes > 0 ? SmsFollowUp::Approval : SmsFollowUp::ApprovalOver;
}

QString shownPhoneNumber(const QString& number)
{
    return number.right(kLongestNumber);
}
