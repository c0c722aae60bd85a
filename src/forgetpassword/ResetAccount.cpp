#include "forgetpassword/ResetAccount.h"

#include "orch/JsonUtil.h"
#include "orch/OrchErrCode.h"

#include <algorithm>

ResetOffer ResetAccount::take(const QJsonObject& methods)
{
    const auto text = [&methods](const char* key) {
        return JsonUtil::getQString(methods, QLatin1String(key), QString());
    };
    phoneNumber = text("phone");
    email = text("mailbox");
    phoneMidToken = text("phoneMiddleToken");
    emailMidToken = text("emailMiddleToken");
    switch (JsonUtil::getInt(methods, QStringLiteral("resetPwdMethod"), RESET_INVALID)) {
    case RESET_BOTH:
        return phoneNumber.isEmpty() && email.isEmpty() ? ResetOffer::NoAddress
                                                        : ResetOffer::ShowPage;
    case RESET_PHONE:
        return phoneNumber.isEmpty() ? ResetOffer::NoPhone : ResetOffer::ShowPage;
    case RESET_EMAIL:
        return email.isEmpty() ? ResetOffer::NoMailbox : ResetOffer::ShowPage;
    case RESET_UNSUP:
        return ResetOffer::Unsupported;
    default:
        return ResetOffer::Unusable;
    }
}

SUPPORT_RESET_TYPE ResetAccount::supportResetType() const
{
    if (phoneNumber.isEmpty())
        return email.isEmpty() ? RESET_INVALID : RESET_EMAIL;
    return email.isEmpty() ? RESET_PHONE : RESET_BOTH;
}

bool isAccountChanged(int code)
{
    switch (code) {
    case ResetPasswdPhoneNumChanged:
    case ResetPasswdUserNotExists:
    case ResetPasswdMailboxChanged:
    case ResetPasswdMethodChanged:
    case ResetPasswdTokenTimeout:
        return true;
    default:
        return false;
    }
}

bool isVerificationCode(const QString& text)
{
    return text.size() >= 6 && std::all_of(text.cbegin(), text.cend(), [](QChar c) {
               return c >= QLatin1Char('0') && c <= QLatin1Char('9');
           });
}
