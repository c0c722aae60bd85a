#include "forgetpassword/ForgetPasswordWidget.h"

#include "app/LogMarker.h"
#include "orch/ErrorCatalogue.h"
#include "orch/KeyRequest.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/TextUtil.h"
#include "widgets/EntryField.h"
#include "widgets/WidgetParts.h"

#include <QLabel>
#include <QPushButton>

namespace {

constexpr int kLongestCustomerId = 10;
constexpr int kLongestUsername = 64;
constexpr int kShownCustomerId = 12;

} // namespace

ForgetPasswordWidget::ForgetPasswordWidget(QWidget* parent)
    : PasswordPage("forgetPasswordPage", parent),
      m_customerEdit(makeField("m_customerEdit", tr("Customer ID"), "customer")),
      m_usernameEdit(makeField("m_usernameEdit", tr("Username"), "user")),
      m_submit(makeButton(this, "m_submit", "primary", tr("Submit")))
{
    m_customerEdit->setReadOnly(true);
    addTitle(makeLabel(this, "", "title", tr("Forgot Password")));
    addText(makeLabel(this, "", "secondary"),
            tr("Enter your username to set a new password with a code that is sent to your phone "
               "or mailbox."));
    addField(m_customerEdit);
    addField(m_usernameEdit);
    addSubmit(m_submit);
    connect(m_usernameEdit, &EntryField::textEdited, this, &ForgetPasswordWidget::onEdited);
    connect(m_submit, &QPushButton::clicked, this, &ForgetPasswordWidget::onSubmitPressed);
    restoreSubmit();
}

void ForgetPasswordWidget::setCustomerId(const QString& customerId)
{
    m_CustomerID = customerId;
}

void ForgetPasswordWidget::setCustomerIdStr(const QString& customerId)
{
    m_customerEdit->setText(Util::GetStringWithLength(customerId, kShownCustomerId));
}

void ForgetPasswordWidget::enter()
{
    leave();
}

void ForgetPasswordWidget::leave()
{
    m_account = ResetAccount();
    m_usernameEdit->clear();
    restoreSubmit();
}

// What is still asked for another name is of no use.
void ForgetPasswordWidget::onEdited()
{
    m_visit.begin();
    restoreSubmit();
}

void ForgetPasswordWidget::restoreSubmit()
{
    m_submit->setEnabled(!m_usernameEdit->text().isEmpty());
}

void ForgetPasswordWidget::onSubmitPressed()
{
    emit submitted();
    if (m_CustomerID.size() > kLongestCustomerId || m_CustomerID.startsWith(QLatin1Char('0')))
        return warn(errorText(ErrorText::InvalidCustomerId));
    const QString username = Util::removeUnvisibleUnicode(m_usernameEdit->text());
    m_usernameEdit->setText(username);
    restoreSubmit();
    if (username.isEmpty())
        return;
    if (username.size() > kLongestUsername)
        return warn(errorText(ErrorText::UsernameTooLong));
    m_submit->setEnabled(false);
    m_account = ResetAccount();
    m_account.customerId = m_CustomerID;
    m_account.username = username;
    const auto received = [this](const CredentialKey& key) { askMethods(key); };
    const auto failed = [this](const OrchReply& reply) {
        restoreSubmit();
        fail(reply);
    };
    ipc::requestKey(m_CustomerID, m_visit, received, failed);
}

void ForgetPasswordWidget::askMethods(const CredentialKey& key)
{
    ipc::ResetPasswdTypeParams params;
    params.customerId = m_account.customerId;
    params.username = m_account.username;
    params.encryptedUsername = key.encrypted(m_account.username);
    params.rsaType = key.rsaType();
    ipc::OrchIpc::instance()->getTypeOfResetPassword(
        params, m_visit.step([this](const OrchReply& reply) { takeMethods(reply); }),
        m_visit.step([this](const OrchReply& reply) { refuse(reply); }));
}

void ForgetPasswordWidget::takeMethods(const OrchReply& reply)
{
    restoreSubmit();
    switch (m_account.take(reply.json())) {
    case ResetOffer::ShowPage:
        return emit showResetPasswordWidget();
    case ResetOffer::NoAddress:
        return warn(tr("Unable to reset password due to unconfigured phone number or email. Please "
                       "contact the administrator to configure."));
    case ResetOffer::NoPhone:
        return warn(tr("Unable to reset password due to unconfigured phone number. Please contact "
                       "the administrator to configure."));
    case ResetOffer::NoMailbox:
        return warn(tr("Unable to reset password due to unconfigured mailbox. Please contact the "
                       "administrator to configure."));
    case ResetOffer::Unsupported:
        return warn(errorText(ErrorText::ForgotPasswordDisabled));
    case ResetOffer::Unusable:
        logDisplayWarning(errorText(ErrorText::ForgotPasswordOrchReply) + maskSecrets(reply.body));
        return warn(errorText(ErrorText::ForgotPasswordReplyUnusable));
    }
}

void ForgetPasswordWidget::refuse(const OrchReply& reply)
{
    restoreSubmit();
    if (reply.error == QNetworkReply::ContentNotFoundError)
        warn(errorText(ErrorText::ForgotPasswordOutdated));
    else
        fail(reply);
}
