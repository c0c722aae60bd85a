#include "orch/CodeDelivery.h"

#include "orch/ErrorCatalogue.h"
#include "orch/OrchErrCode.h"

namespace {

CodeDelivery underWay(int queries, ErrorText timeout)
{
    if (queries < CodeDelivery::kMostQueries)
        return {CodeDelivery::Next::QueryAgain, {}};
    return {CodeDelivery::Next::GiveUp, errorText(timeout)};
}

CodeDelivery failed(ErrorText text)
{
    return {CodeDelivery::Next::ShowError, errorText(text)};
}

CodeDelivery afterSms(int code, int queries)
{
    switch (code) {
    case QuerySmsPhoneNumberBlocked:
        return failed(ErrorText::PhoneBlocked);
    case QuerySmsPhoneNumberInvalid:
        return failed(ErrorText::PhoneInvalid);
    case QuerySmsStatusInSending:
        return underWay(queries, ErrorText::SmsQueryTimeout);
    default:
        return {CodeDelivery::Next::ShowError, errorText(ErrorText::SmsNotSent, code)};
    }
}

CodeDelivery afterEmail(int code, int queries)
{
    switch (code) {
    case QueryEmailStatusAllMesgFailed:
        return failed(ErrorText::EmailCodeNotSent);
    case QueryEmailStatusNoSuchAccount:
        return failed(ErrorText::EmailDoesNotExist);
    case QueryEmailStatusNoSuchResource:
        return failed(ErrorText::EmailNotFound);
    case QueryEmailStatusInProgress:
        return underWay(queries, ErrorText::EmailQueryTimeout);
    default:
        return {CodeDelivery::Next::ShowError,
                errorText(ErrorText::EmailCodeNotSentWithCode, code)};
    }
}

} // namespace

CodeDelivery CodeDelivery::after(CodeChannel channel, int code, int queries)
{
    if (code == QuerySmsStatusFrequently)
        return {Next::TooFrequent, errorText(ErrorText::SmsTooFrequent)};
    return channel == CodeChannel::Sms ? afterSms(code, queries) : afterEmail(code, queries);
}
