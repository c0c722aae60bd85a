#include "login/SmsSender.h"

#include "app/NamedTimer.h"
#include "orch/CodeDelivery.h"
#include "orch/JsonUtil.h"
#include "orch/OrchIpc.h"

namespace {

constexpr int kCountdownSeconds = 60;
constexpr int kUnknownCode = 100;

} // namespace

SmsSender::SmsSender(const Login& login, QObject* parent)
    : QObject(parent), m_login(login),
      m_SendBtnTimer(makeTimer(this, "m_SendBtnTimer", 1000, &SmsSender::onTick)),
      m_queryTimer(
          makeTimer(this, "m_queryTimer", CodeDelivery::kQueryAgainMs, &SmsSender::querySmsAgain))
{
    m_queryTimer->setSingleShot(true);
}

void SmsSender::stop()
{
    m_attempt.begin();
    m_SendBtnTimer->stop();
    m_queryTimer->stop();
    m_login.middleToken.clear();
}

void SmsSender::requestSMS()
{
    m_attempt.begin();
    m_queryTimer->stop();
    m_Count = kCountdownSeconds;
    m_SendBtnTimer->start();
    emit counted(m_Count);

    ipc::VerifySmsParams params;
    params.customerId = m_login.customerId;
    params.username = m_login.username;
    params.phoneNumber = m_login.phoneNumber;
    params.middleToken = m_login.middleToken;
    const auto sent = [this](const OrchReply& reply) {
        const QJsonObject data = JsonUtil::getObject(reply.json(), QStringLiteral("data"));
        if (data.contains(QLatin1String("id")))
            m_SmsId = data.value(QLatin1String("id")).toVariant().toString();
        m_QueryTimes = 0;
        querySMSResult();
    };
    const auto failed = [this](const OrchReply& reply) {
        allowAnother();
        emit refused(reply);
    };
    ipc::OrchIpc::instance()->sendForgetPassowordSms(params, m_attempt.step(sent),
                                                     m_attempt.step(failed));
}

void SmsSender::onTick()
{
    if (m_Count < 1)
        return allowAnother();
    --m_Count;
    emit counted(m_Count);
}

void SmsSender::querySMSResult()
{
    ++m_QueryTimes;
    ipc::QuerySmsParams params;
    params.customerId = m_login.customerId;
    params.id = m_SmsId;
    params.type = QStringLiteral("sms");
    const auto failed = [this](const OrchReply& reply) {
        onStatus(JsonUtil::getInt(reply.json(), QStringLiteral("code"), kUnknownCode));
    };
    ipc::OrchIpc::instance()->querySmsStatus(
        params, m_attempt.step([this](const OrchReply&) { emit delivered(); }),
        m_attempt.step(failed));
}

void SmsSender::querySmsAgain()
{
    querySMSResult();
}

void SmsSender::onStatus(int code)
{
    const CodeDelivery delivery = CodeDelivery::after(CodeChannel::Sms, code, m_QueryTimes);
    if (delivery.next == CodeDelivery::Next::QueryAgain)
        return m_queryTimer->start();
    m_QueryTimes = 0;
    allowAnother();
    emit undelivered(delivery.error);
}

void SmsSender::allowAnother()
{
    m_SendBtnTimer->stop();
    emit counted(-1);
}
