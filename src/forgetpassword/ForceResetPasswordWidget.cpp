#include "forgetpassword/ForceResetPasswordWidget.h"

#include "app/Platform.h"
#include "forgetpassword/NewPassword.h"
#include "forgetpassword/WarningIcon.h"
#include "orch/JsonUtil.h"
#include "orch/KeyRequest.h"
#include "orch/OrchIpc.h"
#include "orch/TextUtil.h"
#include "widgets/EntryField.h"
#include "widgets/WidgetParts.h"

#include <QLabel>
#include <QPushButton>

namespace TQ {

ForceResetPasswordWidget::ForceResetPasswordWidget(QWidget* parent)
    : PasswordPage("forceResetPasswordPage", parent),
      m_ContextLabel(makeLabel(this, "m_ContextLabel", "secondary")),
      m_oldPasswordEdit(makePasswordField("m_oldPasswordEdit", tr("Enter Old Password"))),
      m_newPasswordEdit(makePasswordField("m_newPasswordEdit", tr("Enter New Password"))),
      m_repeatPasswordEdit(
          makePasswordField("m_repeatPasswordEdit", tr("Enter New Password Again"))),
      m_pwOldWarningLabel(
          new WarningIcon("m_pwOldWarningLabel", "m_oldPwdTipsWidget", m_oldPasswordEdit, this)),
      m_confirmBtn(makeButton(this, "m_confirmBtn", "primary", tr("Confirm")))
{
    buildForm();
    connect(m_oldPasswordEdit, &EntryField::textEdited, this,
            &ForceResetPasswordWidget::onTextEdited);
    connect(m_confirmBtn, &QPushButton::clicked, this,
            &ForceResetPasswordWidget::onConfirmBtnPressed);
    setResetPassReason(QString(), QString());
}

void ForceResetPasswordWidget::buildForm()
{
    auto* warning = new WarningIcon("m_pwWarningLabel", "m_expTipsWidget", m_newPasswordEdit, this);
    auto* repeatWarning = new WarningIcon("m_pwWarningRepeatLabel", "m_samePwdTipsWidget",
                                          m_repeatPasswordEdit, this);
    m_newPassword = new NewPassword({m_newPasswordEdit, warning, m_repeatPasswordEdit,
                                     repeatWarning, tr("Please enter the new password."), true},
                                    this);
    connect(m_newPassword, &NewPassword::checked, this, &ForceResetPasswordWidget::onTextEdited);
    connect(m_newPassword, &NewPassword::rulesUnknown, this, [this](const OrchReply& reply) {
        emit backBtnClicked();
        emit reportNetworkErr(reply);
    });
    connect(m_newPassword, &NewPassword::rulesFailed, this, &ForceResetPasswordWidget::fail);

    addTitle(makeLabel(this, "m_titleLabel", "title", tr("Change Password")));
    addText(m_ContextLabel, QString());
    addField(m_oldPasswordEdit, m_pwOldWarningLabel);
    addField(m_newPasswordEdit, warning);
    addField(m_repeatPasswordEdit, repeatWarning);
    addSubmit(m_confirmBtn);
}

void ForceResetPasswordWidget::setCustomerId(const QString& customerId)
{
    m_customerId = customerId;
}

void ForceResetPasswordWidget::setResetPassReason(const QString& reasonCn, const QString& reasonEn)
{
    const QString reason = Util::oneLine(platform().isChinese() ? reasonCn : reasonEn);
    setFormText(m_ContextLabel, reason.isEmpty()
                                    ? tr("For the security of your account, please change your "
                                         "initial password.")
                                    : reason);
}

void ForceResetPasswordWidget::resetUI()
{
    m_oldPasswordEdit->clear();
    m_newPassword->clear();
    m_isOldPwFilled = false;
    onTextEdited();
}

void ForceResetPasswordWidget::enter()
{
    m_submitting = false;
    resetUI();
    m_newPassword->fetchRules(m_customerId, m_visit);
}

void ForceResetPasswordWidget::leave()
{
    resetUI();
}

void ForceResetPasswordWidget::onTextEdited()
{
    checkOldPassword();
    m_confirmBtn->setEnabled(!m_submitting && !m_oldPasswordEdit->text().trimmed().isEmpty() &&
                             m_newPassword->isAcceptable());
}

void ForceResetPasswordWidget::checkOldPassword()
{
    const bool empty = m_oldPasswordEdit->text().trimmed().isEmpty();
    if (empty && m_isOldPwFilled)
        m_pwOldWarningLabel->warn(tr("Please enter the old password"));
    else
        m_pwOldWarningLabel->clear();
    m_isOldPwFilled = m_isOldPwFilled || !empty;
}

void ForceResetPasswordWidget::onConfirmBtnPressed()
{
    emit submitted();
    m_confirmBtn->setEnabled(false); // until the next edit
    const QString fault = m_newPassword->fault();
    if (!fault.isEmpty())
        return warn(fault);
    m_submitting = true;
    ipc::ResetPasswordParams params;
    params.customerId = m_customerId;
    params.oldPassword = m_oldPasswordEdit->text().trimmed();
    params.newPassword = m_newPassword->text();
    const auto received = [this, params](const CredentialKey& key) {
        ipc::ResetPasswordParams complete = params;
        complete.oldEncPassword = key.encrypted(params.oldPassword);
        complete.newEncPassword = key.encrypted(params.newPassword);
        complete.rsaType = key.rsaType();
        changePassword(complete);
    };
    ipc::requestKey(m_customerId, m_visit, received,
                    [this](const OrchReply& reply) { onRefused(reply); });
}

void ForceResetPasswordWidget::changePassword(const ipc::ResetPasswordParams& params)
{
    ipc::OrchIpc::instance()->resetPassword(
        params, m_visit.step([this](const OrchReply& reply) { onChanged(reply); }),
        m_visit.step([this](const OrchReply& reply) { onRefused(reply); }));
}

void ForceResetPasswordWidget::onRefused(const OrchReply& reply)
{
    m_submitting = false;
    fail(reply);
}

void ForceResetPasswordWidget::onChanged(const OrchReply& reply)
{
    m_submitting = false;
    if (!JsonUtil::getBool(reply.json(), QStringLiteral("success"), false))
        return;
    resetUI();
    if (showTip(tr("Your password has been changed successfully. Please use your new password to "
                   "log in.")))
        emit resetPasswordResult(true);
}

} // namespace TQ
