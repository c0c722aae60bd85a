#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

class OrchReply;

/// The orchestrator's answer to a login request, read once.
struct LoginReply
{
    QString token; ///< secret: the session token; empty when one more step is needed
    QString phoneNumber;
    QString middleToken; ///< secret
    QString requestIdForPoll;
    QString authResultCheckUrl;
    int authResultCheckInterval = 0; ///< seconds
    int authResultCheckTimes = 0;
    QString otpKey;         ///< secret
    QString otpMiddleToken; ///< secret
    bool otpLogin = false;
    bool needResetPassword = false;
    QString needResetPasswordReasonCn;
    QString needResetPasswordReasonEn;
    bool allowChangePass = true;
    QStringList otpRecoverCode; ///< secret

    static LoginReply fromJson(const QJsonObject& json);
};

/// Where a login goes on after a reply.
enum class LoginFollowUp {
    Accept,         ///< a token: the login is complete
    ForcedPassword, ///< a token, but the password must be changed first
    Sms,            ///< a code goes to the user's phone
    Approval,       ///< an administrator must approve: the result is polled for
    ApprovalOver,   ///< the same with no poll allowed: it has timed out at once
    Authenticator,  ///< an authenticator code, or binding one first
    Unusable        ///< nothing the client knows how to go on with
};

/// Decides what follows, in the fixed order of the enumeration. `otpMiddleToken` is the
/// intermediate token in force: the reply's own, or the earlier one while a code is submitted.
LoginFollowUp decideLogin(const LoginReply& reply, const QString& otpMiddleToken);

/// Whether a refused login demands that this device be associated with the account first. Then
/// `user` names the account and `token`, a secret, allows to ask for the association; each is left
/// alone when the reply does not name it.
bool isDeviceBing(const OrchReply& reply, QString& user, QString& token);

/// What a refused login changes beside its message.
struct LoginRefusal
{
    QStringList otpRecoverCode; ///< secret: new recovery codes to be kept, if any
    bool startAgain = false;    ///< the authenticator's step is over: back to the login page

    static LoginRefusal fromJson(const QJsonObject& json);
};

/// What follows an answer to an approval poll.
enum class PollNext { Approved, TimedOut, PollAgain };

/// `resultCode` is the answer's (0: approved), `timesLeft` the number of polls still allowed.
PollNext decidePoll(int resultCode, int timesLeft);
