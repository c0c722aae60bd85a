#include "login/DlgPhoneAuth.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/NamedTimer.h"
#include "login/LoginReply.h"
#include "login/SmsReply.h"
#include "login/SmsSender.h"
#include "orch/AccountRequests.h"
#include "orch/ClientInfo.h"
#include "orch/ErrorCatalogue.h"
#include "orch/HostIdentity.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchRequest.h"
#include "orch/OrchRequests.h"
#include "widgets/EntryField.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QtDebug>
#include <QVBoxLayout>

namespace {

constexpr int kFormWidth = 312;
constexpr int kFieldHeight = 36;
constexpr int kLongestCode = 64;
constexpr int kLongestPollSeconds = 86400;
constexpr int kMaskLength = 11; ///< whatever the password's length

} // namespace

DlgPhoneAuth::DlgPhoneAuth(const QString& phoneNumber, const QString& username,
                           const QString& password, const QString& customerId,
                           const QString& middleToken, QWidget* parent)
    : OtpBaseDlg(parent), m_NetMgr(makeAccessManager(this)),
      m_sender(
          new SmsSender({customerId, username, shownPhoneNumber(phoneNumber), middleToken}, this)),
      m_lineEditCode(named(new EntryField(contentWidget()), "lineEditCode")),
      m_btnSend(makeDialogButton(contentWidget(), "btnSend", "secondary", tr("Send"))),
      m_btnOk(makeDialogButton(contentWidget(), "btnOk", "primary", tr("OK"))),
      m_approvalTimer(makeTimer(this, "m_approvalTimer", 0, &DlgPhoneAuth::AsynAuthPoll)),
      m_CustomerId(customerId), m_Username(username), m_Password(password)
{
    setObjectName(QStringLiteral("DlgPhoneAuth"));
    m_approvalTimer->setSingleShot(true);
    buildForm(shownPhoneNumber(phoneNumber));
    wireSender();
    connect(m_btnSend, &QPushButton::clicked, this, &DlgPhoneAuth::on_btnSend_clicked);
    connect(m_btnOk, &QPushButton::clicked, this, &DlgPhoneAuth::on_btnOk_clicked);
}

DlgPhoneAuth::~DlgPhoneAuth() = default;

void DlgPhoneAuth::buildForm(const QString& phoneNumber)
{
    setAccessibleName(tr("Verification"));
    m_lineEditCode->setPlaceholderText(tr("Verification Code"));
    m_lineEditCode->setAccessibleName(m_lineEditCode->placeholderText());
    m_lineEditCode->setMaxLength(kLongestCode);
    m_lineEditCode->setInputMethodHints(Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
    m_lineEditCode->setFixedHeight(kFieldHeight);
    m_lineEditCode->setPicture(stateIcon(QStringLiteral("code")));
    setRole(m_lineEditCode, "field");
    m_btnSend->setFixedHeight(kFieldHeight);
    m_btnSend->setAutoDefault(false);
    // As wide as with the longest countdown: the field beside it does not move.
    m_btnSend->setFixedWidth(qMax(m_btnSend->sizeHint().width(), 72));
    m_btnOk->setFixedHeight(kFieldHeight);
    m_btnOk->setDefault(true);

    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(m_lineEditCode, 1);
    row->addWidget(m_btnSend);
    auto* column = new QVBoxLayout(contentWidget());
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(16);
    column->addWidget(makeLabel(contentWidget(), "title", "title", tr("Verification")));
    column->addWidget(makeLabel(contentWidget(), "labelPhoneNum", "secondary", phoneNumber));
    column->addLayout(row);
    column->addWidget(m_btnOk);
    contentWidget()->setFixedWidth(kFormWidth);
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    setTabOrder(m_lineEditCode, m_btnSend);
    setTabOrder(m_btnSend, m_btnOk);
    setTabOrder(m_btnOk, m_closeBtn);
    m_lineEditCode->setFocus();
}

void DlgPhoneAuth::wireSender()
{
    connect(m_sender, &SmsSender::counted, this, &DlgPhoneAuth::showCountdown);
    connect(m_sender, &SmsSender::delivered, this,
            [this] { emit told(WidgetTopPrompt::SHOW_SUCCESS, tr("SMS sent successfully")); });
    connect(m_sender, &SmsSender::undelivered, this, &DlgPhoneAuth::error);
    connect(m_sender, &SmsSender::refused, this, &DlgPhoneAuth::refuse);
}

void DlgPhoneAuth::showEvent(QShowEvent* event)
{
    OtpBaseDlg::showEvent(event);
    if (!m_sent)
        on_btnSend_clicked();
    m_sent = true;
}

// Nothing that comes later counts, and nothing secret stays.
void DlgPhoneAuth::done(int result)
{
    m_alive.begin();
    m_sender->stop();
    m_approvalTimer->stop();
    m_Password.clear();
    m_RequestIdForPoll.clear();
    m_lineEditCode->clear();
    OtpBaseDlg::done(result);
}

// Code

void DlgPhoneAuth::on_btnSend_clicked()
{
    emit submitted();
    m_lineEditCode->setFocus();
    m_sender->requestSMS();
}

void DlgPhoneAuth::showCountdown(int seconds)
{
    const bool counting = seconds >= 0;
    m_btnSend->setEnabled(!counting);
    m_btnSend->setText(counting ? tr("%1s").arg(seconds) : tr("Send"));
}

void DlgPhoneAuth::on_btnOk_clicked()
{
    emit submitted();
    if (m_lineEditCode->text().isEmpty())
        return error(tr("Please input verification code"));
    m_userAuthUrl = ConfigUtil::savedText(ConfigUtil::AUTHURL);
    if (m_userAuthUrl.isEmpty())
        return error(tr("The length of URL is 0, Please contact the network administrator"));
    setUnderWay(true);
    verifyUser(false);
}

// An approved login is sent again with the same code: meanwhile the field keeps it.
void DlgPhoneAuth::setUnderWay(bool underWay)
{
    m_btnOk->setEnabled(!underWay);
    m_lineEditCode->setReadOnly(underWay);
    m_lineEditCode->setFocus();
}

// What has ended the login that this code belongs to has taken its credentials away.
void DlgPhoneAuth::refuse(const OrchReply& reply)
{
    const bool hadToken = !ConfigUtil::savedText(ConfigUtil::TOKEN).isEmpty();
    emit refused(reply);
    if (hadToken && ConfigUtil::savedText(ConfigUtil::TOKEN).isEmpty())
        reject();
}

// Verification

void DlgPhoneAuth::verifyUser(bool withRequestId)
{
    ipc::SmsLoginParams params;
    params.customerId = m_CustomerId;
    params.username = m_Username;
    params.password = m_Password;
    params.token = ConfigUtil::savedText(ConfigUtil::TOKEN);
    params.verifyNum = m_lineEditCode->text();
    params.deviceId = Util::getDeviceId();
    params.autoLogin = ConfigUtil::getvalue(ConfigUtil::AUTO_LOGIN, -1).toInt() == Qt::Checked;
    if (withRequestId)
        params.requestIdForPoll = m_RequestIdForPoll;
    m_RequestIdForPoll.clear();
    const ClientFacts facts = gatherClientFacts();
    const OrchRequest request =
        orchrequest::smsLogin(m_userAuthUrl, facts.serial, params, clientInfo(facts));
    qDebug().noquote() << "dlgphoneauth.cpp:" << maskSecrets(withoutPassword(request.body));
    send(request, VERIFY_USER);
}

void DlgPhoneAuth::send(const OrchRequest& request, PHONE_LOGIN_STEP step)
{
    sendOrchRequest(*m_NetMgr, request,
                    m_alive.step([this, step](const OrchReply& reply) { netReply(step, reply); }));
}

void DlgPhoneAuth::netReply(PHONE_LOGIN_STEP step, const OrchReply& reply)
{
    if (step == ASYN_AUTH_POLL)
        asyncAuthHandler(reply);
    else
        verifyUserHandler(reply);
}

void DlgPhoneAuth::verifyUserHandler(const OrchReply& reply)
{
    if (reply.answered())
        return takeReply(LoginReply::fromJson(reply.json()));
    setUnderWay(false);
    m_DeviceBind = isDeviceBing(reply, m_DeviceBindUser, m_DeviceBindToken);
    if (m_DeviceBind)
        return reject();
    refuse(reply);
}

void DlgPhoneAuth::takeReply(const LoginReply& reply)
{
    m_RequestIdForPoll = reply.requestIdForPoll;
    m_AuthResultCheckUrl = reply.authResultCheckUrl;
    m_AuthResultCheckTimes = reply.authResultCheckTimes;
    m_AuthResultCheckInterval = reply.authResultCheckInterval;
    switch (decideSms(reply)) {
    case SmsFollowUp::Accept:
        keepLogin(reply);
        return accept();
    case SmsFollowUp::Approval:
        return AsynAuthPoll();
    case SmsFollowUp::ApprovalOver:
        error(errorText(ErrorText::ApprovalTimeout));
        break;
    case SmsFollowUp::NoToken:
        error(errorText(ErrorText::NoSmsToken));
        break;
    }
    setUnderWay(false);
}

void DlgPhoneAuth::keepLogin(const LoginReply& reply)
{
    logDisplayInfo(tr("Obtained token successfully"));
    ConfigUtil::writeValue(ConfigUtil::TOKEN, reply.token);
    ConfigUtil::writeValue(ConfigUtil::CUSTOMERID, m_CustomerId);
    ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString(kMaskLength, QLatin1Char('*')));
    ConfigUtil::writeValue(ConfigUtil::USERNAME, m_Username);
    m_ResetPassword = reply.needResetPassword;
    m_DesCn = reply.needResetPasswordReasonCn;
    m_DesEn = reply.needResetPasswordReasonEn;
}

// Approval

void DlgPhoneAuth::AsynAuthPoll()
{
    m_AuthResultCheckTimes -= 1;
    qDebug("Check asyn auth result");
    send(orchrequest::asyncAuthPoll(Util::getSerial(), {m_CustomerId, m_AuthResultCheckUrl}),
         ASYN_AUTH_POLL);
}

void DlgPhoneAuth::asyncAuthHandler(const OrchReply& reply)
{
    if (!reply.answered()) {
        logDisplayCritical(tr("Asynchronous authenticatin failed"));
        setUnderWay(false);
        return refuse(reply);
    }
    qDebug().noquote() << maskSecrets(reply.body);
    const int resultCode = JsonUtil::getInt(reply.json(), QStringLiteral("resultCode"), -1);
    switch (decidePoll(resultCode, m_AuthResultCheckTimes)) {
    case PollNext::Approved:
        return verifyUser(true);
    case PollNext::TimedOut:
        setUnderWay(false);
        return error(errorText(ErrorText::ApprovalTimeout));
    case PollNext::PollAgain:
        m_approvalTimer->start(qBound(0, m_AuthResultCheckInterval, kLongestPollSeconds) * 1000);
    }
}
