#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QVector>

namespace sim {

/// Somebody who can log in.
struct Account
{
    QString customer;   ///< customer ID as it is typed; may be a name
    int customerId = 0; ///< the number behind it
    QString username;
    QString password;
    bool offersKey = true; ///< false: the customer's orchestrator publishes no public key
    int approvalPolls = 0; ///< above 0: a login waits for approval, granted at this poll
    bool allowChangePass = true;

    QString phone;   ///< registered for codes; empty: none
    QString mailbox; ///< the same for e-mail
    enum class Factor { None, Sms, Authenticator };
    Factor factor = Factor::None;
    QString otpSecret; ///< Base32, of the authenticator that is bound
    bool otpBound = false;
    QStringList recoveryCodes; ///< each good for one recovery
    /// Whether any device may log in, or only one that the administrator has associated; with a
    /// token the client may ask for that.
    enum class DeviceRule { Any, AskWithToken, AskWithoutToken };
    DeviceRule deviceRule = DeviceRule::Any;
    bool mustChangePassword = false;
    QString changeReasonCn;
    QString changeReasonEn;

    /// How this account logs in, for people.
    QString remark() const;
};

/// What goes wrong on one path. Anything but a delay replaces the reply; the request is checked
/// and recorded all the same.
struct Fault
{
    int status = 0;    ///< HTTP status, 0 leaves it at 200
    int delayMs = 0;   ///< wait before anything is answered; a lasting one ends when it is changed
    int trickleMs = 0; ///< wait after every single byte of the body
    bool drop = false; ///< close the connection without a byte
    bool replaceBody = false;
    QByteArray body;      ///< sent when replaceBody is set
    QString redirect;     ///< answer with a redirection to this address
    qint64 hugeBytes = 0; ///< this many bytes of filler as body
    int times = -1;       ///< for how many requests; -1 for all

    static Fault withStatus(int status, const QByteArray& body = {});
    static Fault withBody(const QByteArray& body);
    static Fault withDelay(int ms);
    /// The reply, byte by byte.
    static Fault trickled(int ms, const QByteArray& body);
    static Fault dropped();
    static Fault fromJson(const QJsonObject& json);
    QJsonObject toJson() const;

    /// Whether the ordinary reply is not sent.
    bool replaces() const;
};

/// What the simulated service knows and how it answers: plain data. Reply members that are JSON
/// objects are sent as they stand, completed with the addresses that depend on the ports.
struct Scenario
{
    QVector<Account> accounts;
    QString privacyVersion;
    QVector<int> rsaTypes;    ///< paddings on offer: 0 PKCS#1 v1.5, 1 OAEP
    int approvalInterval = 1; ///< seconds between approval polls
    int approvalTimes = 5;    ///< polls that the client may make
    QJsonObject authConfigReply;
    QJsonObject upgradeReply;
    QJsonObject noticeReply;
    QJsonObject connectReply;
    QJsonObject heartbeatReply;
    /// By client name, what the picture is like: {"width", "height"} with "cut" for half a file; {}
    /// for one without an address.
    QJsonObject logos;
    QJsonObject resetModeReply; ///< replaces what follows from the account
    QJsonObject passwordRules;  ///< "firstPwdRule" is also kept to
    QString errorResourceVersion;
    QJsonObject errorResource; ///< the document of error texts
    QByteArray filterDocument;

    /// By path, optionally with the server in front ("primary:", "backup:", "orchestrator:").
    QMap<QString, Fault> faults;

    /// Everything well: three customers, nothing new, no maintenance.
    Scenario();

    /// Merges members of `json` into the reply objects of the same names and replaces plain
    /// members. The names of members that do not exist or have the wrong type are returned.
    QStringList apply(const QJsonObject& json);

    QJsonObject toJson() const;
};

/// A filter document with this many distinct entries in each list, plus `duplicates` repetitions
/// of the first entries of the exclusive list.
QByteArray makeFilterDocument(int inclusive, int exclusive, int duplicates = 0);

} // namespace sim
