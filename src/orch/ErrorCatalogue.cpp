#include "orch/ErrorCatalogue.h"

#include <QCoreApplication>

#include <iterator>

namespace {

constexpr char kContext[] = "ErrorCatalogue";

// Long texts stay on one line: the translation tools read them here.
// clang-format off
constexpr ErrorCatalogueEntry kCatalogue[] = {
    {ErrorText::OrchTimeout,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6002 The connection to Orchestrator server has timed out, please check your network connections.")},
    {ErrorText::OrchHostNotFound,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6003 Domain name of Orchestrator server resolution fails. Please check your network connections.")},
    {ErrorText::SystemErrorAtLogin,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6009 System error(%1). Please contact your network administrator")},
    {ErrorText::SystemErrorNoErrorBody,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6009 System error (%1). Please contact your network administrator")},
    {ErrorText::SystemErrorNoErrorText,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6009 System error (%1). Please contact your network administrator.")},
    {ErrorText::AgentSilent,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6010 Unable to receive the notification of finish sending messages from the server, please check your network connections.")},
    {ErrorText::NoSmsToken,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6011 Failed to retrieve an authentication token, please log in again.")},
    {ErrorText::LoginReplyUnusable,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6014 The Orchestrator server returned an invalid or unrecognized response. If there is any proxy server, please close it and try again.")},
    {ErrorText::InvalidCustomerId,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6015 Invalid Customer ID. Please enter again or contact your network administrator")},
    {ErrorText::UsernameTooLong,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6016 The username cannot exceed the 64 characters in length. Please try again.")},
    {ErrorText::PasswordTooLong,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6017 The password cannot exceed the 64 characters in length. Please try again.")},
    {ErrorText::ConfigNotSaved,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6018 Failed to save configuration file, contact your network administrator")},
    {ErrorText::DatapathConfigNotSaved,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6018 Failed to save Datapath configuration file, please try again.")},
    {ErrorText::DatapathNotStopped,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6019 Failed to stop DP(%1)")},
    {ErrorText::DatapathNotLoaded,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6021 Failed to load executable file Datapath, please try again.")},
    {ErrorText::AllTunnelsDown,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6022 Network connection error: It appears that all tunnels have been disconnected. Rebuilding a tunnel...")},
    {ErrorText::SmsTooFrequent,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6023 SMS verification code sent too frequently, please try again 24 hours.")},
    {ErrorText::PhoneBlocked,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6024 Phone number blocked. Contact network administrator to update account info.")},
    {ErrorText::PhoneInvalid,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6025 Invalid phone number, please contact your network administrator to change the phone number on your account.")},
    {ErrorText::SmsNotSent,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6026 Failed to send SMS authentication code, please try again.(%1).")},
    {ErrorText::LoginExpired,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6027 Authentication information has expired. Please log in again.")},
    {ErrorText::LookupTimeout,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6029 The connection to the Lookup Server timed out, please check your network connections.")},
    {ErrorText::LookupHostNotFound,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6030 Failed to resolve the domain name of the Lookup Server. Please check your network connections.")},
    {ErrorText::AuthenticatorCodeMissing,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6031 Please enter the 6-digit code from your authenticator.")},
    {ErrorText::ForgotPasswordDisabled,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6032 Orchestrator server has not enable the Forgot Password function yet.")},
    {ErrorText::ForgotPasswordReplyUnusable,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6033 The Orchestrator server returned an invalid or unrecognized response. If there is any proxy server, please close it and try again.")},
    {ErrorText::ForgotPasswordOrchReply,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6033 Orch reply: ")},
    {ErrorText::ForgotPasswordOutdated,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6034 Orchestrator server is outdated and Forgot Password function may not be available.")},
    {ErrorText::CustomerPageIncomplete,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6037 Please enter your Customer ID, Username and Password.")},
    {ErrorText::LoginPageIncomplete,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6037 Please fill in customer ID, username and password.")},
    {ErrorText::BadGateway,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6038 Failed to connect Orchestrator server (Error Code 502). If you did not use proxy server, Orchestrator server may be upgrading and please try again later.")},
    {ErrorText::ApprovalTimeout,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6039 Asynchronous authentication timed out, please try again")},
    {ErrorText::EmailCodeNotSent,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6040 Failed to send verification code to your email. Please try again.")},
    {ErrorText::EmailDoesNotExist,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6041 The email address does not exist. Please contact the administrator.")},
    {ErrorText::EmailNotFound,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6042 Email was not found. Please contact the administrator.")},
    {ErrorText::EmailQueryTimeout,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6043 Query timeout: Unable to retrieve the result of the email sending. Please try again later or contact the administrator.")},
    {ErrorText::EmailCodeNotSentWithCode,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6044 Failed to send verification code to your email. Please try again(%1).")},
    {ErrorText::SmsQueryTimeout,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6045 Query timeout: Unable to retrieve the result of the SMS sending. Please try again later or contact the administrator.")},
    {ErrorText::UnderMaintenance,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6046 The system is under maintenance, please try again later.")},
    {ErrorText::PasswordWasReset,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6047 Password reset successful. Please login again with your new password.")},
    {ErrorText::TokenInvalid,
     QT_TRANSLATE_NOOP("ErrorCatalogue", "6050 Invalid token for client login authentication, please log in again")},
};
// clang-format on

constexpr bool inOrder()
{
    for (std::size_t i = 0; i < std::size(kCatalogue); ++i) {
        if (static_cast<std::size_t>(kCatalogue[i].id) != i)
            return false;
    }
    return true;
}
static_assert(inOrder(), "the rows stand in the order of the enumeration");
static_assert(static_cast<std::size_t>(ErrorText::TokenInvalid) + 1 == std::size(kCatalogue),
              "every message has its row");

} // namespace

const ErrorCatalogueEntry* errorCatalogue(std::size_t* count)
{
    *count = std::size(kCatalogue);
    return kCatalogue;
}

QString errorText(ErrorText id)
{
    return QCoreApplication::translate(kContext, kCatalogue[static_cast<std::size_t>(id)].text);
}

QString errorText(ErrorText id, int value)
{
    return errorText(id).arg(value);
}
