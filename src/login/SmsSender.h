#pragma once

#include "app/Attempt.h"
#include "orch/OrchReply.h"

#include <QObject>
#include <QString>

class QTimer;

/// Has the code of a login sent by SMS, follows its delivery, and counts the seconds until another
/// may be sent.
///
///     requestSMS() --> querySMSResult() --> delivered
///                        ^     | under way: asked again after 3 s
///                        \-----/
///
/// A failure allows the next code at once. GUI thread.
class SmsSender : public QObject
{
    Q_OBJECT

public:
    /// What a code is sent for; `middleToken` is a secret.
    struct Login
    {
        QString customerId;
        QString username;
        QString phoneNumber;
        QString middleToken;
    };

    SmsSender(const Login& login, QObject* parent);

    void requestSMS();

    /// Nothing is sent, asked or counted any more; the token is forgotten.
    void stop();

signals:
    /// Seconds until another code may be sent; -1: now.
    void counted(int seconds);
    void delivered();
    /// There will be no code, for this reason.
    void undelivered(const QString& error);
    /// The request itself has failed and is to be rendered.
    void refused(const OrchReply& reply);

private:
    void onTick();
    void querySMSResult();
    void querySmsAgain();
    void onStatus(int code);
    void allowAnother();

    Login m_login;
    Attempt m_attempt;
    QTimer* m_SendBtnTimer; ///< a second of the countdown
    QTimer* m_queryTimer;   ///< between two status queries
    int m_Count = 0;        ///< seconds left
    QString m_SmsId;        ///< of the code that was sent
    int m_QueryTimes = 0;   ///< status queries for it
};
