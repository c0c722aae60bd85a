#include "app/SecretNames.h"

#include <QSet>

namespace {

QByteArray plain(const QByteArray& name)
{
    return name.toLower().replace('_', QByteArray());
}

QSet<QByteArray> plainNames()
{
    static constexpr const char* kNames[] = {
        // tokens and what stands for one
        "X-TQ-AUTH-HEADER",
        "X-TQ-AUTH-DEVICE-BIND",
        "token",
        "middleToken",
        "otpMiddleToken",
        "phoneMiddleToken",
        "emailMiddleToken",
        "deviceBindMiddleToken",
        "forgetPasswordMiddleToken",
        "requestIdForPoll",
        "authResultCheckUrl",
        "uploadUrl",
        // passwords
        "password",
        "oldPassword",
        "newPassword",
        "encryptPassword",
        "oldEncryptPassword",
        "newEncryptPassword",
        // codes
        "otpKey",
        "otpRecoverCode",
        "recoverCode",
        "supportOtpCode",
        "verification",
        // persons
        "accountName",
        "encryptAccountName",
        "username",
        "oldUsername",
        "phone",
        "phoneNumber",
        "mailbox",
        "email",
    };
    QSet<QByteArray> names;
    for (const char* name : kNames)
        names.insert(plain(name));
    return names;
}

} // namespace

bool isSecretName(const QByteArray& name)
{
    static const QSet<QByteArray> names = plainNames();
    return names.contains(plain(name));
}
