#pragma once

#include "app/Attempt.h"
#include "orch/CodeDelivery.h"
#include "orch/OrchReply.h"

#include <QObject>
#include <QString>

class QTimer;

namespace TQ {

enum ResetMethod { ResetByEmail = 0, ResetByPhone = 1 };

/// The seconds until another code may be sent. A value; the clock that ticks is its user's.
class Countdown
{
public:
    static constexpr int kSeconds = 60;

    void start() { *this = {kSeconds, true}; }
    void stop() { *this = {}; }
    /// A second has passed; it stops after the one in which 0 was shown.
    void tick();
    bool isRunning() const { return m_running; }
    int seconds() const { return m_seconds; }

    Countdown() = default;

private:
    Countdown(int seconds, bool running) : m_seconds(seconds), m_running(running) {}

    int m_seconds = kSeconds;
    bool m_running = false;
};

/// One way of sending a code to the user, with all that belongs to it: where the code goes, the
/// request for it, the wait for its delivery, and the wait until another may be sent.
///
///     send(): key --> code request --> delivery status --> delivered
///                                        ^     | under way: asked again after 3 s
///                                        \-----/
///
/// Every way but delivered() ends with a signal and canSend(). GUI thread.
class ResetChannel : public QObject
{
    Q_OBJECT

public:
    ResetChannel(ResetMethod method, QObject* parent);

    /// Takes the channel into use, as if nothing had been sent yet.
    void begin(const QString& address, const QString& midToken);
    /// Forgets the address and the token; what is under way is dropped.
    void end();

    void send(const QString& customerId, const QString& username);

    bool canSend() const { return !m_sending && !m_countdown.isRunning(); }
    const Countdown& countdown() const { return m_countdown; }
    void stopCountdown();

    const QString& address() const { return m_address; }
    const QString& midToken() const { return m_midToken; } ///< secret
    /// How the requests name the channel.
    QString verifyType() const;

    int resetTimes = 1; ///< number of the attempt to use a code

signals:
    /// canSend() or the countdown has changed.
    void changed();
    void delivered();
    /// There will be no code, for this reason.
    void undelivered(const QString& error);
    /// Too many codes were asked for.
    void tooMany();
    /// A request has failed and is to be rendered; keyRefused: that for the key.
    void failed(const OrchReply& reply);
    void keyRefused(const OrchReply& reply);

private:
    void orderCode(const QString& customerId, const QString& username,
                   const QString& encryptedUsername, int rsaType);
    void onOrdered(const OrchReply& reply);
    void onOrderFailed(const OrchReply& reply);
    void queryStatus();
    void onDelivered();
    void onStatus(int code);
    void endSending();
    void tick();

    const ResetMethod m_method;
    QTimer* m_timer;      ///< a second of the countdown
    QTimer* m_queryTimer; ///< between two status queries
    Attempt m_attempt;
    Countdown m_countdown;
    QString m_address;
    QString m_midToken; ///< secret
    QString m_customerId;
    QString m_codeId; ///< of the code that was sent
    int m_queries = 0;
    bool m_sending = false; ///< from the button to the delivery
};

} // namespace TQ
