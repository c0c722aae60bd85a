#include "forgetpassword/ResetChannel.h"

#include "app/NamedTimer.h"
#include "orch/JsonUtil.h"
#include "orch/KeyRequest.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchErrCode.h"
#include "orch/OrchIpc.h"

#include <QtDebug>

namespace {

constexpr int kUnknownCode = 100;

/// What differs between the two ways.
struct Names
{
    const char* timer;
    const char* queryTimer;
    const char* verifyType;
    const char* statusType;
    CodeChannel channel;
};

const Names& namesOf(TQ::ResetMethod method)
{
    static constexpr Names kPhone = {"m_phoneVerifyTimer", "m_phoneQueryTimer", "phone", "sms",
                                     CodeChannel::Sms};
    static constexpr Names kEmail = {"m_emailVerifyTimer", "m_emailQueryTimer", "mailbox", "email",
                                     CodeChannel::Email};
    return method == TQ::ResetByPhone ? kPhone : kEmail;
}

int codeOf(const OrchReply& reply)
{
    return JsonUtil::getInt(reply.json(), QStringLiteral("code"), kUnknownCode);
}

} // namespace

namespace TQ {

void Countdown::tick()
{
    if (m_seconds < 1)
        stop();
    else
        --m_seconds;
}

ResetChannel::ResetChannel(ResetMethod method, QObject* parent)
    : QObject(parent), m_method(method),
      m_timer(makeTimer(this, namesOf(method).timer, 1000, &ResetChannel::tick)),
      m_queryTimer(makeTimer(this, namesOf(method).queryTimer, CodeDelivery::kQueryAgainMs,
                             &ResetChannel::queryStatus))
{
    m_queryTimer->setSingleShot(true);
}

void ResetChannel::begin(const QString& address, const QString& midToken)
{
    end();
    m_address = address;
    m_midToken = midToken;
}

void ResetChannel::end()
{
    m_attempt.begin();
    m_queryTimer->stop();
    m_sending = false;
    resetTimes = 1;
    m_address.clear();
    m_midToken.clear();
    m_codeId.clear();
    stopCountdown();
}

QString ResetChannel::verifyType() const
{
    return QLatin1String(namesOf(m_method).verifyType);
}

// Sending

void ResetChannel::send(const QString& customerId, const QString& username)
{
    m_sending = true;
    emit changed();
    const auto received = [this, customerId, username](const CredentialKey& key) {
        orderCode(customerId, username, key.encrypted(username), key.rsaType());
    };
    const auto refused = [this](const OrchReply& reply) {
        endSending();
        emit keyRefused(reply);
    };
    ipc::requestKey(customerId, m_attempt, received, refused);
}

void ResetChannel::orderCode(const QString& customerId, const QString& username,
                             const QString& encryptedUsername, int rsaType)
{
    m_customerId = customerId;
    ipc::VerifySmsParams params;
    params.customerId = customerId;
    params.username = username;
    params.encryptedUsername = encryptedUsername;
    params.rsaType = rsaType;
    params.sendType = verifyType();
    params.midToken = m_midToken;
    ipc::OrchIpc::instance()->sendForgetPassowordSms(
        params, m_attempt.step([this](const OrchReply& reply) { onOrdered(reply); }),
        m_attempt.step([this](const OrchReply& reply) { onOrderFailed(reply); }));
}

void ResetChannel::onOrdered(const OrchReply& reply)
{
    const QJsonObject data = JsonUtil::getObject(reply.json(), QStringLiteral("data"));
    m_codeId = data.value(QLatin1String("id")).toVariant().toString();
    m_queries = 0;
    if (!m_codeId.isEmpty())
        return queryStatus();
    qWarning().noquote() << "orch reply:" << maskSecrets(reply.body);
    onStatus(kUnknownCode);
}

void ResetChannel::onOrderFailed(const OrchReply& reply)
{
    endSending();
    if (codeOf(reply) == orchcode::kTooManyCodes)
        emit tooMany();
    else
        emit failed(reply);
}

// Delivery

void ResetChannel::queryStatus()
{
    ++m_queries;
    ipc::QuerySmsParams params;
    params.customerId = m_customerId;
    params.id = m_codeId;
    params.type = QLatin1String(namesOf(m_method).statusType);
    const auto refused = [this](const OrchReply& reply) {
        if (reply.status != 502)
            return onStatus(codeOf(reply));
        endSending();
        emit failed(reply);
    };
    ipc::OrchIpc::instance()->querySmsStatus(
        params, m_attempt.step([this](const OrchReply&) { onDelivered(); }),
        m_attempt.step(refused));
}

void ResetChannel::onDelivered()
{
    resetTimes = 1;
    m_countdown.start();
    m_timer->start();
    endSending();
    emit delivered();
}

void ResetChannel::onStatus(int code)
{
    const CodeDelivery next = CodeDelivery::after(namesOf(m_method).channel, code, m_queries);
    if (next.next == CodeDelivery::Next::QueryAgain)
        return m_queryTimer->start();
    endSending();
    if (next.next == CodeDelivery::Next::TooFrequent)
        emit tooMany();
    else
        emit undelivered(next.error);
}

void ResetChannel::endSending()
{
    m_sending = false;
    emit changed();
}

// Countdown

void ResetChannel::tick()
{
    m_countdown.tick();
    if (!m_countdown.isRunning())
        m_timer->stop();
    emit changed();
}

void ResetChannel::stopCountdown()
{
    m_countdown.stop();
    m_timer->stop();
    emit changed();
}

} // namespace TQ
