#include "settings/PasswordChangeRules.h"

#include "orch/ErrorCatalogue.h"
#include "orch/JsonUtil.h"
#include "orch/OrchErrCode.h"
#include "orch/TextUtil.h"

#include <QCoreApplication>

namespace {

constexpr int kLongest = 64; // characters of a new password
constexpr int kRefused = 406;

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(WidgetSetting)
};

SessionEnd endOf(const OrchReply& reply)
{
    return kickout(reply.json()) == Kickout::NoReason ? SessionEnd::None
                                                      : invalidSessionEnd(reply, true);
}

QString message(const OrchReply& reply, const OrchTexts& texts)
{
    if (!reply.body.contains("i18nKey"))
        return reply.error == QNetworkReply::NoError ? QString() : reply.errorString;
    if (reply.code() == kRefused)
        return Util::oneLine(
            JsonUtil::getQString(reply.json(), QStringLiteral("i18nKey"), QString()));
    return texts.content(reply);
}

} // namespace

namespace passwordchange {

QString fault(const QString& oldPass, const QString& newPass, const QString& confirmation)
{
    if (oldPass.isEmpty())
        return Texts::tr("Old password is a required field");
    if (newPass.isEmpty())
        return Texts::tr("New password is a required field");
    if (confirmation.isEmpty())
        return Texts::tr("Confirm password is a required field");
    if (newPass.size() > kLongest)
        return Texts::tr("Password too long. Please enter again.");
    if (confirmation != newPass)
        return Texts::tr("Confirm password and new password are inconsistent");
    return {};
}

Answer answer(const OrchReply& reply, const OrchTexts& texts)
{
    Answer result;
    result.changed = reply.answered();
    if (result.changed)
        return result;
    result.sessionInvalid =
        reply.body.contains("i18nKey") && reply.code() == orchcode::kTokenInvalid;
    if (result.sessionInvalid)
        result.end = endOf(reply);
    if (result.end != SessionEnd::None)
        return result;
    result.text = message(reply, texts);
    if (result.text.isEmpty())
        result.text = errorText(ErrorText::SystemErrorNoErrorText, reply.status);
    return result;
}

} // namespace passwordchange
