#include "orch/HttpErrorText.h"

#include "app/Platform.h"
#include "orch/ErrorCatalogue.h"
#include "orch/JsonUtil.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchTypes.h"
#include "orch/TextUtil.h"

#include <QCoreApplication>
#include <QMetaEnum>

namespace {

struct Texts
{
    Q_DECLARE_TR_FUNCTIONS(OrchReply)
};

QJsonObject parametersOf(const QJsonObject& body)
{
    return JsonUtil::getObject(body, QStringLiteral("parameters"));
}

int reasonCode(const QJsonObject& body)
{
    return JsonUtil::getInt(parametersOf(body), QStringLiteral("invalidReasonCode"), 0);
}

/// The text for a failure without an error body; `systemError` is the window's own 6009.
QString transferText(const OrchReply& reply, bool verifyingCustomer, ErrorText systemError)
{
    switch (reply.error) {
    case QNetworkReply::NoError:
        return errorText(systemError, reply.status);
    case QNetworkReply::HostNotFoundError:
        return errorText(verifyingCustomer ? ErrorText::LookupHostNotFound
                                           : ErrorText::OrchHostNotFound);
    case QNetworkReply::OperationCanceledError: // the form a transfer time-out takes
        return errorText(verifyingCustomer ? ErrorText::LookupTimeout : ErrorText::OrchTimeout);
    case QNetworkReply::UnknownServerError:
        if (reply.status == 502)
            return errorText(ErrorText::BadGateway);
        break;
    default:
        break;
    }
    return reply.errorString;
}

QString messageInLanguage(const OrchReply& reply, bool chinese)
{
    const QString message =
        JsonUtil::getQString(reply.json(), QStringLiteral("message"), QString());
    const QString messageCn =
        JsonUtil::getQString(parametersOf(reply.json()), QStringLiteral("message_cn"), QString());
    if (message.isEmpty() || messageCn.isEmpty())
        return QString();
    return Util::oneLine(QString::number(reply.code()) + QLatin1Char(' ') +
                         (chinese ? messageCn : message));
}

/// The login window's text for an orchestrator code other than 0.
QString codeText(const OrchReply& reply, const OrchTexts& texts)
{
    const int code = reply.code();
    switch (code) {
    case orchcode::kSmsSendingFailed:
    case orchcode::kSmsSendingRefused:
    case OrchSendSmsFailed:
        return errorText(ErrorText::SmsNotSent, code);
    case QuerySmsStatusInSending:
        return errorText(ErrorText::SmsQueryTimeout);
    case QuerySmsPhoneNumberBlocked:
        return errorText(ErrorText::PhoneBlocked);
    case QuerySmsPhoneNumberInvalid:
        return errorText(ErrorText::PhoneInvalid);
    case QuerySmsStatusFrequently:
        return errorText(ErrorText::SmsTooFrequent);
    default:
        return texts.content(reply);
    }
}

LoginFailure refusal(const OrchReply& reply, const QString& text, const OrchTexts& texts)
{
    const int code = reply.code();
    LoginFailure result;
    result.text = text;
    if (code == orchcode::kTokenInvalid) {
        result.text = errorText(reasonCode(reply.json()) == KickedByChangePassword
                                    ? ErrorText::PasswordWasReset
                                    : ErrorText::LoginExpired);
    }
    result.forgetCredentials =
        code == orchcode::kTokenInvalid || code == orchcode::kCredentialsNoLongerValid;
    if (code == orchcode::kDeviceBindingPending)
        result.notice = LoginFailure::Notice::BindingInProgress;
    else if (code == orchcode::kDeviceDisabled)
        result.notice = LoginFailure::Notice::DeviceDisabled;

    if (texts.versionLow(code))
        result.action = LoginFailure::Action::OpenUpgrade;
    else if (result.notice != LoginFailure::Notice::None)
        result.action = LoginFailure::Action::Nothing;
    return result;
}

QString errorName(const OrchReply& reply)
{
    const auto names = QMetaEnum::fromType<QNetworkReply::NetworkError>();
    return QLatin1String(names.valueToKey(reply.error));
}

} // namespace

QString failureCauseText(const OrchReply& reply)
{
    return Texts::tr("Error code: %1Error Info: %2 statuscode %3")
        .arg(errorName(reply), reply.errorString, QString::number(reply.status));
}

QString failureLogText(const OrchReply& reply, const QString& separator)
{
    return QStringLiteral("Error code: ") + errorName(reply) + separator + reply.logText();
}

OrchTexts OrchTexts::shared()
{
    return {
        platform().isChinese(),
        [](const OrchReply& reply) { return OrchErrRes::getInstance()->getOrchErrContent(reply); },
        [](int code) { return OrchErrRes::getInstance()->isVersionLow(code); }};
}

QString requestFailureText(const OrchReply& reply, const OrchTexts& texts)
{
    if (reply.body.isEmpty() && reply.error != QNetworkReply::NoError)
        return reply.errorString;
    const QString text = reply.body.isEmpty() ? QString() : texts.content(reply);
    return text.isEmpty() ? errorText(ErrorText::SystemErrorNoErrorText, reply.status) : text;
}

LoginFailure loginFailure(const OrchReply& reply, bool verifyingCustomer, const OrchTexts& texts)
{
    LoginFailure result;
    result.text = messageInLanguage(reply, texts.chinese);
    if (!result.text.isEmpty())
        return result;
    if (!reply.body.contains("message")) {
        result.text = transferText(reply, verifyingCustomer, ErrorText::SystemErrorAtLogin);
        return result;
    }
    const QString text = reply.code() == 0 ? QString() : codeText(reply, texts);
    if (text.isEmpty()) {
        result.text = errorText(ErrorText::SystemErrorAtLogin, reply.status);
        return result;
    }
    return refusal(reply, text, texts);
}

Kickout kickout(const QJsonObject& body)
{
    if (!parametersOf(body).contains(QStringLiteral("invalidReasonCode")))
        return Kickout::NoReason;
    switch (reasonCode(body)) {
    case KickedByOrchForceLogoutReason:
        return Kickout::ForcedLogout;
    case KickedByLdapChange:
        return Kickout::AccountChanged;
    case KickedByChangePassword:
        return Kickout::PasswordChanged;
    default:
        return Kickout::Other;
    }
}

SessionEnd invalidSessionEnd(const OrchReply& reply, bool settingsChangePassword)
{
    switch (kickout(reply.json())) {
    case Kickout::ForcedLogout:
        return SessionEnd::ForcedLogout;
    case Kickout::AccountChanged:
        return SessionEnd::AccountChanged;
    case Kickout::PasswordChanged:
        return SessionEnd::PasswordChanged;
    case Kickout::Other:
        return SessionEnd::InvalidToken;
    case Kickout::NoReason:
        break;
    }
    if (settingsChangePassword)
        return SessionEnd::LeftToSettings;
    return reply.body.contains("password") ? SessionEnd::KeepToken : SessionEnd::InvalidToken;
}

MainFailure mainFailure(const OrchReply& reply, bool settingsChangePassword, const OrchTexts& texts)
{
    if (!reply.body.contains("message")) {
        return {SessionEnd::None, transferText(reply, false, ErrorText::SystemErrorNoErrorBody)};
    }
    const QString text = texts.content(reply);
    if (text.isEmpty())
        return {SessionEnd::None, errorText(ErrorText::SystemErrorNoErrorText, reply.status)};
    if (reply.code() != orchcode::kTokenInvalid && !text.contains(QLatin1String("401")))
        return {SessionEnd::None, text};
    return {invalidSessionEnd(reply, settingsChangePassword), QString()};
}
