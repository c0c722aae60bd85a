#pragma once

#include <QString>

#include <cstddef>

/// The client's coded messages. Each begins with its four-digit code; where one code has several
/// wordings, each is an entry of its own.
enum class ErrorText {
    OrchTimeout,
    OrchHostNotFound,
    SystemErrorAtLogin,     ///< %1: HTTP status
    SystemErrorNoErrorBody, ///< %1: HTTP status
    SystemErrorNoErrorText, ///< %1: HTTP status
    AgentSilent,
    NoSmsToken,
    LoginReplyUnusable,
    InvalidCustomerId,
    UsernameTooLong,
    PasswordTooLong,
    ConfigNotSaved,
    DatapathConfigNotSaved,
    DatapathNotStopped, ///< %1: exit code
    DatapathNotLoaded,
    AllTunnelsDown,
    SmsTooFrequent,
    PhoneBlocked,
    PhoneInvalid,
    SmsNotSent, ///< %1: the orchestrator's code
    LoginExpired,
    LookupTimeout,
    LookupHostNotFound,
    AuthenticatorCodeMissing,
    ForgotPasswordDisabled,
    ForgotPasswordReplyUnusable,
    ForgotPasswordOrchReply, ///< a prefix of the orchestrator's text
    ForgotPasswordOutdated,
    CustomerPageIncomplete,
    LoginPageIncomplete,
    BadGateway,
    ApprovalTimeout,
    EmailCodeNotSent,
    EmailDoesNotExist,
    EmailNotFound,
    EmailQueryTimeout,
    EmailCodeNotSentWithCode, ///< %1: the orchestrator's code
    SmsQueryTimeout,
    UnderMaintenance,
    PasswordWasReset,
    TokenInvalid,
};

/// One row of the catalogue.
struct ErrorCatalogueEntry
{
    ErrorText id;
    const char* text; ///< source text, translation context "ErrorCatalogue"
};

/// All entries, in the order of the enumeration; `count` receives their number.
const ErrorCatalogueEntry* errorCatalogue(std::size_t* count);

/// The translated text. GUI thread.
QString errorText(ErrorText id);

/// The translated text with its place-holder filled.
QString errorText(ErrorText id, int value);
