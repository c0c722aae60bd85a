#pragma once

#include "orch/OrchReply.h"

#include <QString>

/// Padding of an encrypted credential; the value travels as "rsaType".
enum RSAPaddingType {
    PKCS1v15 = 0, ///< RSAES-PKCS1-v1_5
    OAEP_SHA = 1, ///< RSAES-OAEP with SHA-256
};

/// Why the orchestrator ended a session: the "invalidReasonCode" of a reply with code 401.
enum OrchKickoutReason {
    KickedByChangePassword = 1,
    KickedByDefaultReason = 2,
    KickedByOrchForceLogoutReason = 3,
    KickedByLdapChange = 5,
};

/// Who asked for a diagnosis run.
enum DiagnoseTriggerType {
    TriggerByClient = 0,
    TriggerByOrch = 1,
};

/// The orchestrator's requests and their parameter records.
namespace ipc {

/// Receives the reply of a request that succeeded.
using OrchIpcCbFunc = OrchReplyFunc;

/// Receives the reply of a request that failed.
using OrchIpcErrCbFunc = OrchReplyFunc;

/// What is called when a request finishes: exactly one of the two, once. There is no cancelling of
/// a request; callbacks of which the answer may no longer be wanted are wrapped in
/// Attempt::step() (app/Attempt.h).
struct OrchCallbacks
{
    OrchIpcCbFunc m_cb;
    OrchIpcErrCbFunc m_errCb;
};

/// Why a session ends or begins again; the value travels as "mobileActionLogType".
enum DisconnectTypeReason {
    DisConnNormalReason = 1,
    DisConnOrchNotifyReason = 2,
    DisConnAbnormalReason = 3,
    DisConnModeChangedReason = 4,
};

struct LoginParams
{
    QString customerId;
    QString username;
    QString encryptedUsername; ///< sent instead of username when not empty
    QString password;
    QString encryptedPassword; ///< sent instead of password when not empty
    QString token;             ///< a remembered session token; then no password is sent
    QString requestIdForPoll;
    QString privacyVersion;
    QString deviceId;
    QString otpMiddleToken;
    QString verifyNum;      ///< the authenticator code
    int rsaType = PKCS1v15; ///< RSAPaddingType
    bool asynAuth = false;  ///< an approval was obtained; send requestIdForPoll
    bool isOtpLogin = false;
    bool agreePolicy = false;
    bool autoLogin = false;
};

struct AsyncAuthPollParams
{
    QString customerId;
    QString pollUrl; ///< from the login reply
};

struct SignoutParams
{
    QString token;
    QString customerId;
    DisconnectTypeReason reason = DisConnNormalReason; ///< Normal or OrchNotify
};

struct Connect2OrchParams
{
    QString customerId;
    DisconnectTypeReason reason = DisConnNormalReason; ///< Normal, OrchNotify or ModeChanged
};

struct ResetPasswordParams
{
    QString customerId;
    QString oldPassword;
    QString newPassword;
    QString oldEncPassword; ///< sent only together with newEncPassword
    QString newEncPassword;
    RSAPaddingType rsaType = PKCS1v15;
};

struct ForgetPasswordParams
{
    QString customerId;
    QString verifyNum; ///< the code received
    QString phoneNumber;
    QString encryptedPassword;
    QString encryptedUsername;
    QString password;
    QString username;
    QString verifyType;
    QString midToken;
    int resetTimes = 0;
    int rsaType = PKCS1v15;
};

struct VerifySmsParams
{
    QString customerId;
    QString username;
    QString encryptedUsername;
    QString phoneNumber;
    QString email;
    QString sendType;
    QString midToken; ///< of the forgotten-password flow, sent in the body
    int rsaType = PKCS1v15;
    QString middleToken; ///< of the login flow, sent as a header
};

struct QuerySmsParams
{
    QString customerId;
    QString id;   ///< from the sending reply
    QString type; ///< "sms" or "email"
};

struct ResetPasswdTypeParams
{
    QString customerId;
    QString username;
    QString encryptedUsername;
    int rsaType = PKCS1v15;
};

struct SmsLoginParams
{
    QString customerId;
    QString username;
    QString password;         ///< as typed
    QString token;            ///< a remembered session token; then no password is sent
    QString verifyNum;        ///< the code received
    QString requestIdForPoll; ///< of an approval that was given; empty: none is sent
    QString deviceId;
    bool autoLogin = false;
};

struct RecoverOtpParams
{
    QString customerId;
    QString otpMiddleToken; ///< of the login that waits for its authenticator code
    QString recoverCode;
};

struct BindDeviceParams
{
    QString customerId;
    QString username;
    QString deviceId;
    QString token; ///< secret: from the refused login
};

struct PasswdRulesParams
{
    QString customerId;
    QString clientType; ///< "linux"
};

} // namespace ipc
