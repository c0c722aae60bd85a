#pragma once

#include <QString>

struct LoginReply;

/// Where a login goes on after the answer to its SMS code.
enum class SmsFollowUp {
    Accept,       ///< a token: the code was right
    Approval,     ///< an administrator must approve: the result is polled for
    ApprovalOver, ///< the same with no poll allowed: it has timed out at once
    NoToken       ///< nothing the client knows how to go on with
};

/// Decides what follows. Pure.
SmsFollowUp decideSms(const LoginReply& reply);

/// A phone number as the dialog has room for it: the end of a long one.
QString shownPhoneNumber(const QString& number);
