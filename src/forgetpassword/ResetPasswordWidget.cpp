#include "forgetpassword/ResetPasswordWidget.h"

#include "forgetpassword/NewPassword.h"
#include "forgetpassword/SendCodeButton.h"
#include "forgetpassword/WarningIcon.h"
#include "orch/ErrorCatalogue.h"
#include "orch/JsonUtil.h"
#include "orch/KeyRequest.h"
#include "orch/OrchIpc.h"
#include "orch/TextUtil.h"
#include "widgets/EntryField.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int kCodeLength = 6;

} // namespace

namespace TQ {

ResetPasswordWidget::ResetPasswordWidget(QWidget* parent)
    : PasswordPage("resetPasswordPage", parent),
      m_phoneEmailEdit(makeField("m_phoneEmailEdit", tr("Phone number"), "phone")),
      m_authCodeEdit(makeField("m_authCodeEdit", tr("Authentication Code"), "code")),
      m_passwordEdit(makePasswordField("m_passwordEdit", tr("New Password"))),
      m_passwordRepeatEdit(makePasswordField("m_passwordRepeatEdit", tr("Repeat New Password"))),
      m_sendBtn(named(new SendCodeButton(this), "m_sendBtn")),
      m_switchResetBtn(makeButton(this, "m_switchResetBtn", "link", QString())),
      m_confirmBtn(makeButton(this, "m_confirmBtn", "primary", tr("Confirm"))),
      m_channels{new ResetChannel(ResetByEmail, this), new ResetChannel(ResetByPhone, this)}
{
    m_phoneEmailEdit->setReadOnly(true);
    m_authCodeEdit->setPlaceholderText(tr("Enter Code"));
    m_authCodeEdit->setMaxLength(kCodeLength);
    m_authCodeEdit->setInputMethodHints(Qt::ImhDigitsOnly);
    m_switchResetBtn->setAutoDefault(true);
    buildForm();
    for (ResetMethod method : {ResetByEmail, ResetByPhone})
        wireChannel(m_channels[method], method);
    connect(m_authCodeEdit, &EntryField::textEdited, this, &ResetPasswordWidget::onTextEdited);
    connect(m_switchResetBtn, &QPushButton::clicked, this,
            &ResetPasswordWidget::onSwitchResetBtnPressed);
    connect(m_sendBtn, &QPushButton::clicked, this, &ResetPasswordWidget::onSendBtnPressed);
    connect(m_confirmBtn, &QPushButton::clicked, this, &ResetPasswordWidget::onConfirmBtnPressed);
}

void ResetPasswordWidget::buildForm()
{
    auto* warning = new WarningIcon("m_pwWarningLabel", "m_expTipsWidget", m_passwordEdit, this);
    auto* repeatWarning = new WarningIcon("m_pwRepeatWarningLabel", "m_samePwdTipsWidget",
                                          m_passwordRepeatEdit, this);
    m_newPassword = new NewPassword({m_passwordEdit, warning, m_passwordRepeatEdit, repeatWarning,
                                     tr("Please enter the password."), false},
                                    this);
    wireNewPassword();

    addTitle(makeLabel(this, "", "title", tr("Reset Password")))->addWidget(m_switchResetBtn);
    addField(m_phoneEmailEdit);
    addField(m_authCodeEdit, m_sendBtn);
    addField(m_passwordEdit, warning);
    addField(m_passwordRepeatEdit, repeatWarning);
    addSubmit(m_confirmBtn);
    setTabOrder(m_switchResetBtn, m_phoneEmailEdit);
    setTabOrder(m_phoneEmailEdit, m_sendBtn);
    setTabOrder(m_sendBtn, m_authCodeEdit);
    setTabOrder(m_authCodeEdit, m_passwordEdit);
    setTabOrder(m_passwordEdit, m_passwordRepeatEdit);
    setTabOrder(m_passwordRepeatEdit, m_confirmBtn);
}

void ResetPasswordWidget::wireChannel(ResetChannel* channel, ResetMethod method)
{
    connect(channel, &ResetChannel::changed, this, &ResetPasswordWidget::showSendState);
    connect(channel, &ResetChannel::delivered, this, [this, method] {
        emit told(WidgetTopPrompt::SHOW_SUCCESS,
                  method == ResetByPhone ? tr("Verification successful! Please be aware that, the "
                                              "authentication code has been sent to your phone.")
                                         : tr("Verification successful! Please be aware that, the "
                                              "authentication code has been sent to your email."));
    });
    connect(channel, &ResetChannel::undelivered, this,
            [this](const QString& error) { emit told(WidgetTopPrompt::SHOW_ERROR, error); });
    connect(channel, &ResetChannel::tooMany, this, [this] {
        showTip(tr("You're sending too many authentication codes. Please try again later."));
    });
    connect(channel, &ResetChannel::failed, this, &ResetPasswordWidget::fail);
    connect(channel, &ResetChannel::keyRefused, this, &ResetPasswordWidget::refuse);
}

void ResetPasswordWidget::wireNewPassword()
{
    connect(m_newPassword, &NewPassword::checked, this, &ResetPasswordWidget::onTextEdited);
    connect(m_newPassword, &NewPassword::rulesUnknown, this, [this] {
        emit backBtnClicked();
        warn(errorText(ErrorText::ForgotPasswordOutdated));
    });
    connect(m_newPassword, &NewPassword::rulesFailed, this, &ResetPasswordWidget::fail);
}

// Visits

void ResetPasswordWidget::setAccount(const ResetAccount& account)
{
    m_account.customerId = account.customerId;
    m_account.username = account.username;
    m_channels[ResetByPhone]->begin(account.phoneNumber, account.phoneMidToken);
    m_channels[ResetByEmail]->begin(account.email, account.emailMidToken);
    const SUPPORT_RESET_TYPE type = account.supportResetType();
    m_switchResetBtn->setVisible(type == RESET_BOTH);
    chooseMethod(type == RESET_EMAIL ? ResetByEmail : ResetByPhone);
}

void ResetPasswordWidget::enter()
{
    m_submitting = false;
    m_authCodeEdit->clear();
    m_newPassword->clear();
    onTextEdited();
    m_newPassword->fetchRules(m_account.customerId, m_visit);
}

void ResetPasswordWidget::leave()
{
    m_account = ResetAccount();
    for (ResetChannel* channel : m_channels)
        channel->end();
    m_phoneEmailEdit->clear();
    m_authCodeEdit->clear();
    m_newPassword->clear();
}

// Code

void ResetPasswordWidget::chooseMethod(ResetMethod method)
{
    m_resetMethod = method;
    const bool phone = method == ResetByPhone;
    m_phoneEmailEdit->setText(Util::oneLine(current()->address()));
    m_phoneEmailEdit->setPicture(stateIcon(QLatin1String(phone ? "phone" : "mail")));
    m_phoneEmailEdit->setAccessibleName(phone ? tr("Phone number") : tr("Email address"));
    m_switchResetBtn->setText(phone ? tr("Use Email") : tr("Use Phone Number"));
    showSendState();
}

void ResetPasswordWidget::onSwitchResetBtnPressed()
{
    chooseMethod(m_resetMethod == ResetByPhone ? ResetByEmail : ResetByPhone);
}

void ResetPasswordWidget::onSendBtnPressed()
{
    emit submitted();
    current()->send(m_account.customerId, m_account.username);
}

void ResetPasswordWidget::showSendState()
{
    if (current()->countdown().isRunning())
        m_sendBtn->showCountdown(current()->countdown().seconds());
    else
        m_sendBtn->showIdle(current()->canSend());
}

// New password

void ResetPasswordWidget::onTextEdited()
{
    m_confirmBtn->setEnabled(!m_submitting && !m_authCodeEdit->text().isEmpty() &&
                             m_newPassword->isAcceptable());
}

void ResetPasswordWidget::onConfirmBtnPressed()
{
    emit submitted();
    const QString fault = m_newPassword->fault();
    if (!fault.isEmpty())
        return warn(fault);
    const QString code = Util::removeUnvisibleUnicode(m_authCodeEdit->text());
    if (!isVerificationCode(code))
        return warn(tr("Incorrect authentication code."));
    m_authCodeEdit->setText(code);
    m_submitting = true;
    onTextEdited();

    ipc::ForgetPasswordParams params;
    params.customerId = m_account.customerId;
    params.username = m_account.username;
    params.password = m_newPassword->text();
    params.verifyNum = code;
    params.verifyType = current()->verifyType();
    params.midToken = current()->midToken();
    params.resetTimes = current()->resetTimes;
    const auto received = [this, params, channel = current()](const CredentialKey& key) {
        ipc::ForgetPasswordParams complete = params;
        complete.encryptedUsername = key.encrypted(params.username);
        complete.encryptedPassword = key.encrypted(params.password);
        complete.rsaType = key.rsaType();
        sendForgetPassword(complete, channel);
    };
    const auto refused = [this](const OrchReply& reply) {
        endSubmission();
        fail(reply);
    };
    ipc::requestKey(m_account.customerId, m_visit, received, refused);
}

void ResetPasswordWidget::sendForgetPassword(const ipc::ForgetPasswordParams& params,
                                             ResetChannel* channel)
{
    const auto received = [this](const OrchReply& reply) {
        onReset(JsonUtil::getBool(reply.json(), QStringLiteral("success"), false));
    };
    const auto failed = [this, channel](const OrchReply& reply) {
        if (reply.code() != 0)
            ++channel->resetTimes;
        endSubmission();
        refuse(reply);
    };
    ipc::OrchIpc::instance()->resetPasswordWhenForgot(params, m_visit.step(received),
                                                      m_visit.step(failed));
}

void ResetPasswordWidget::endSubmission()
{
    m_submitting = false;
    onTextEdited();
}

void ResetPasswordWidget::onReset(bool success)
{
    m_submitting = false;
    if (success) {
        m_authCodeEdit->clear();
        m_newPassword->clear();
        if (!showTip(tr("Your password has been successfully reset. Please login again.")))
            return;
    }
    for (ResetChannel* channel : m_channels)
        channel->stopCountdown();
    onTextEdited();
    emit resetPassword(success);
}

// Of an account that has changed meanwhile nothing on this page holds any more.
void ResetPasswordWidget::refuse(const OrchReply& reply)
{
    if (isAccountChanged(reply.code()))
        emit backBtnClicked();
    fail(reply);
}

} // namespace TQ
