#include "login/OtpRecovery.h"

#include "orch/ErrorCatalogue.h"
#include "orch/JsonUtil.h"

#include <QCoreApplication>

namespace {

constexpr int kCodeMalformed = 1110;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(OtpResetOtpTipDlg)
};

} // namespace

OtpRecovery OtpRecovery::fromReply(const OrchReply& reply, const OrchTexts& texts)
{
    OtpRecovery recovery;
    if (!reply.answered()) {
        recovery.error =
            reply.code() == kCodeMalformed
                ? Texts::tr("The recovery code should consist of 16 letters and numbers")
                : requestFailureText(reply, texts);
        return recovery;
    }
    const QJsonObject& json = reply.json();
    recovery.otpKey = json.value(QLatin1String("otpKey")).toString();
    recovery.otpMiddleToken = json.value(QLatin1String("otpMiddleToken")).toString();
    if (JsonUtil::getInt(json, QStringLiteral("code"), -1) != -1)
        return recovery; // nothing to go on with, and no text for it
    recovery.done = !recovery.otpKey.isEmpty();
    if (!recovery.done)
        recovery.error = errorText(ErrorText::LoginReplyUnusable);
    return recovery;
}
