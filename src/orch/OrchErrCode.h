#pragma once

/// Numeric codes of the orchestrator that the client acts upon or turns into its own texts.
enum OrchErrCode {
    QuerySmsStatusFrequently = 422,
    QuerySmsPhoneNumberBlocked = 423,
    QuerySmsPhoneNumberInvalid = 424,
    QuerySmsStatusInSending = 427,
    OrchPartiallySucc = 450,
    QueryEmailStatusAllMesgFailed = 451,
    OrchDtoConvertValidationFailed = 452,
    QueryEmailStatusNoSuchAccount = 453,
    OrchDingtalkBotVerifyErr = 454,
    OrchDuplicatedRecords = 455,
    OrchIdNotAllowed = 456,
    OrchNoSuchTemplate = 457,
    OrchNoSuchPrefix = 458,
    OrchNoSuchProvider = 459,
    OrchVariableTemplateNotMatch = 460,
    OrchTargetRepeats = 461,
    OrchIdNotAuthed = 462,
    OrchNoPermToResource = 463,
    QueryEmailStatusNoSuchResource = 464,
    QueryEmailStatusInProgress = 465,
    QueryEmailStatusUnknownErr = 466,
    OrchSendEmailFailed = 482,
    OrchSendSmsFailed = 495,
    ResetPasswdPhoneNumChanged = 1043,
    ResetPasswdUserNotExists = 1048,
    ResetPasswdMailboxChanged = 1055,
    ResetPasswdMethodChanged = 1059,
    ResetPasswdTokenTimeout = 1060,
};

/// Codes with a fixed meaning beside those above.
namespace orchcode {
constexpr int kTokenInvalid = 401;
constexpr int kSmsSendingFailed = 425;
constexpr int kSmsSendingRefused = 426;
constexpr int kInvalidCustomerId = 1007;
constexpr int kLockedForDuration = 1019;
constexpr int kTooManyCodes = 1021;
constexpr int kCredentialsNoLongerValid = 1025;
constexpr int kDeviceBindingPending = 1127;
constexpr int kDeviceDisabled = 1128;
} // namespace orchcode
