#pragma once

#include <QJsonObject>
#include <QString>

/// Which ways to a new password an account offers. The values are fixed.
enum SUPPORT_RESET_TYPE {
    RESET_INVALID = -1,
    RESET_BOTH = 0,
    RESET_PHONE = 1,
    RESET_EMAIL = 2,
    RESET_UNSUP = 3
};

/// What the orchestrator's answer to the question for these ways leads to.
enum class ResetOffer {
    ShowPage,
    NoAddress,   ///< neither a phone number nor a mailbox is known
    NoPhone,     ///< only a phone would do, and none is known
    NoMailbox,   ///< the same for a mailbox
    Unsupported, ///< the orchestrator has not enabled the function
    Unusable     ///< nothing the client knows how to go on with
};

/// An account whose password is to be reset. Pure; any thread.
struct ResetAccount
{
    QString customerId; ///< the numeric one
    QString username;
    QString phoneNumber;
    QString email;
    QString phoneMidToken; ///< secret
    QString emailMidToken; ///< secret

    /// Takes over addresses and tokens, which replace the earlier ones.
    ResetOffer take(const QJsonObject& methods);

    /// By the addresses that are known.
    SUPPORT_RESET_TYPE supportResetType() const;
};

/// Whether a refusal says that the account has changed meanwhile: what was asked before no longer
/// holds.
bool isAccountChanged(int code);

/// Whether a text can be a code that was sent: at least six digits and nothing else.
bool isVerificationCode(const QString& text);
