#pragma once

#include "orch/OrchIdentity.h"
#include "orch/OrchRequest.h"
#include "orch/OrchTypes.h"

#include <QJsonObject>
#include <QString>

/// The builders of the requests about an account: second factors, devices and passwords. Pure, like
/// those of OrchRequests.h, of which they are the second half. `authUrl` is the authentication
/// address, `lang` is "zh" or "en".
namespace orchrequest {

/// Changes a known password on behalf of the session that `identity` holds. Both passwords go
/// encrypted, or neither.
OrchRequest resetPassword(const QString& authUrl, const OrchIdentity& identity,
                          const ipc::ResetPasswordParams& params);

/// The same from the settings page, which takes the root of the address from its first "/api".
OrchRequest changePassword(const QString& authUrl, const OrchIdentity& identity,
                           const ipc::ResetPasswordParams& params);

/// Sets a new password with a code that was received.
OrchRequest resetForgottenPassword(const QString& authUrl, const QString& serial,
                                   const ipc::ForgetPasswordParams& params);

/// Has a code sent by SMS or e-mail.
OrchRequest sendCode(const QString& authUrl, const QString& serial,
                     const ipc::VerifySmsParams& params, const QString& lang);

/// Whether a code that was sent has been delivered.
OrchRequest codeStatus(const QString& authUrl, const QString& serial,
                       const ipc::QuerySmsParams& params);

/// Which ways an account offers to set a new password.
OrchRequest resetMethods(const QString& authUrl, const QString& serial,
                         const ipc::ResetPasswdTypeParams& params);

/// The rules that a new password must keep.
OrchRequest passwordRules(const QString& authUrl, const QString& serial,
                          const ipc::PasswdRulesParams& params, const QString& lang);

/// A login with the code of an SMS. `clientInfo` is the object sent as "traceExtraInfo".
OrchRequest smsLogin(const QString& authUrl, const QString& serial,
                     const ipc::SmsLoginParams& params, const QJsonObject& clientInfo);

/// A new authenticator secret for a recovery code.
OrchRequest recoverOtpKey(const QString& authUrl, const QString& serial,
                          const ipc::RecoverOtpParams& params);

/// Asks the administrator to associate this device with an account.
OrchRequest bindDevice(const QString& authUrl, const QString& serial,
                       const ipc::BindDeviceParams& params);

} // namespace orchrequest
