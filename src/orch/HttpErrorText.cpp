#include "orch/HttpErrorText.h"

#include "app/Platform.h"
#include "orch/ErrorCatalogue.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchTypes.h"
#include "orch/ReplyFacts.h"
#include "orch/Util.h"

#include <QMetaEnum>

namespace {

QJsonObject parametersOf(const QJsonObject& body)
{
    return JsonUtil::getObject(body, QStringLiteral("parameters"));
}

int reasonCode(const QJsonObject& body)
{
    return JsonUtil::getInt(parametersOf(body), QStringLiteral("invalidReasonCode"), 0);
}

/// The text for a failure without an error body; `systemError` is the window's own 6009.
QString transferText(const HttpFailure& failure, bool verifyingCustomer, ErrorText systemError)
{
    switch (failure.error) {
    case QNetworkReply::NoError:
        return errorText(systemError, failure.status);
    case QNetworkReply::HostNotFoundError:
        return errorText(verifyingCustomer ? ErrorText::LookupHostNotFound
                                           : ErrorText::OrchHostNotFound);
    case QNetworkReply::OperationCanceledError: // the form a transfer time-out takes
        return errorText(verifyingCustomer ? ErrorText::LookupTimeout : ErrorText::OrchTimeout);
    case QNetworkReply::UnknownServerError:
        if (failure.status == 502)
            return errorText(ErrorText::BadGateway);
        break;
    default:
        break;
    }
    return failure.errorString;
}

QString messageInLanguage(const QJsonObject& body, int code, bool chinese)
{
    const QString message = JsonUtil::getQString(body, QStringLiteral("message"), QString());
    const QString messageCn =
        JsonUtil::getQString(parametersOf(body), QStringLiteral("message_cn"), QString());
    if (message.isEmpty() || messageCn.isEmpty())
        return QString();
    return Util::oneLine(QString::number(code) + QLatin1Char(' ') +
                         (chinese ? messageCn : message));
}

/// The login window's text for an orchestrator code other than 0.
QString codeText(int code, const QByteArray& body, const OrchTexts& texts)
{
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
        return texts.content(body);
    }
}

LoginFailure refusal(int code, const QString& text, const QJsonObject& body, const OrchTexts& texts)
{
    LoginFailure result;
    result.text = text;
    if (code == orchcode::kTokenInvalid) {
        result.text =
            errorText(reasonCode(body) == KickedByChangePassword ? ErrorText::PasswordWasReset
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

QString errorName(const HttpFailure& failure)
{
    const auto names = QMetaEnum::fromType<QNetworkReply::NetworkError>();
    return QStringLiteral("Error code: ") + QLatin1String(names.valueToKey(failure.error));
}

QString withStatus(const HttpFailure& failure)
{
    return failure.errorString + QStringLiteral(" statuscode ") + QString::number(failure.status);
}

} // namespace

HttpFailure HttpFailure::of(const QByteArray& body, const QNetworkReply* reply)
{
    if (!reply)
        return {body, QNetworkReply::NoError, QString(), 0};
    // The error string names the address, and a query may carry an identifier.
    QString text = reply->errorString();
    if (reply->url().hasQuery())
        text.replace(reply->url().toString(), reply->url().toString(QUrl::RemoveQuery));
    return {body, reply->error(), Util::oneLine(text), httpStatus(reply)};
}

QString HttpFailure::logText() const
{
    return withStatus(*this) + QStringLiteral(" orch return text ") + maskSecrets(body);
}

QString failureCauseText(const HttpFailure& failure, const QString& separator)
{
    return errorName(failure) + separator + withStatus(failure);
}

QString failureLogText(const HttpFailure& failure, const QString& separator)
{
    return errorName(failure) + separator + failure.logText();
}

OrchTexts OrchTexts::shared()
{
    return {
        platform().isChinese(),
        [](const QByteArray& body) { return OrchErrRes::getInstance()->getOrchErrContent(body); },
        [](int code) { return OrchErrRes::getInstance()->isVersionLow(code); }};
}

LoginFailure loginFailure(const HttpFailure& failure, bool verifyingCustomer,
                          const OrchTexts& texts)
{
    const QJsonObject body = JsonUtil::object(failure.body);
    const int code = JsonUtil::getInt(body, QStringLiteral("code"), 0);

    LoginFailure result;
    result.text = messageInLanguage(body, code, texts.chinese);
    if (!result.text.isEmpty())
        return result;
    if (!failure.body.contains("message")) {
        result.text = transferText(failure, verifyingCustomer, ErrorText::SystemErrorAtLogin);
        return result;
    }
    const QString text = code == 0 ? QString() : codeText(code, failure.body, texts);
    if (text.isEmpty()) {
        result.text = errorText(ErrorText::SystemErrorAtLogin, failure.status);
        return result;
    }
    return refusal(code, text, body, texts);
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

SessionEnd invalidSessionEnd(const QByteArray& body, bool settingsChangePassword)
{
    switch (kickout(JsonUtil::object(body))) {
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
    return body.contains("password") ? SessionEnd::KeepToken : SessionEnd::InvalidToken;
}

MainFailure mainFailure(const HttpFailure& failure, bool settingsChangePassword,
                        const OrchTexts& texts)
{
    if (!failure.body.contains("message")) {
        return {SessionEnd::None, transferText(failure, false, ErrorText::SystemErrorNoErrorBody)};
    }
    const QString text = texts.content(failure.body);
    if (text.isEmpty())
        return {SessionEnd::None, errorText(ErrorText::SystemErrorNoErrorText, failure.status)};

    const QJsonObject body = JsonUtil::object(failure.body);
    const int code = JsonUtil::getInt(body, QStringLiteral("code"), 0);
    if (code != orchcode::kTokenInvalid && !text.contains(QLatin1String("401")))
        return {SessionEnd::None, text};
    return {invalidSessionEnd(failure.body, settingsChangePassword), QString()};
}
