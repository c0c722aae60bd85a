// The login window and what may follow a login's answer: a code by SMS, a device to be associated,
// an authenticator, a password to be changed.

#include "login/DlgLogin.h"

#include "forgetpassword/ForceResetPasswordWidget.h"
#include "forgetpassword/ForgetPasswordWidget.h"
#include "forgetpassword/ResetPasswordWidget.h"
#include "login/DlgLoginUi.h"
#include "login/LoginRequest.h"
#include "maintenance/MaintenanceWatch.h"
#include "orch/ErrorCatalogue.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

void DlgLogin::wireSms()
{
    connect(m_request, &LoginRequest::smsNeeded, this,
            [this] { endLoginAttempt(errorText(ErrorText::LoginReplyUnusable)); });
    connect(m_request, &LoginRequest::bindingDemanded, this,
            [this] { endLoginAttempt(errorText(ErrorText::LoginReplyUnusable)); });
}

void DlgLogin::wireAuthenticator()
{
    connect(m_request, &LoginRequest::authenticatorNeeded, this,
            [this] { endLoginAttempt(errorText(ErrorText::LoginReplyUnusable)); });
}

// Password pages

void DlgLogin::wirePasswordPages()
{
    addPasswordPage(DLG_FORGETPASSWORD_PAGE, m_forgetPasswordWidget);
    addPasswordPage(DLG_RESETPASSWORD_PAGE, m_resetPasswordWidget);
    addPasswordPage(DLG_FORCERESETPASSWORD_PAGE, m_forceResetPasswordWidget);
    connect(ui->btnForgetPasswd, &QPushButton::clicked, this,
            &DlgLogin::on_btnForgetPasswd_clicked);
    connect(m_forgetPasswordWidget, &ForgetPasswordWidget::showResetPasswordWidget, this,
            &DlgLogin::onShowForgetPasswordWidget);
    connect(m_resetPasswordWidget, &TQ::ResetPasswordWidget::resetPassword, this,
            &DlgLogin::onResetPassword);
    connect(m_forceResetPasswordWidget, &TQ::ForceResetPasswordWidget::resetPasswordResult, this,
            &DlgLogin::onForceResetPasswordResult);
    connect(m_request, &LoginRequest::passwordChangeForced, this, &DlgLogin::forceResetPassword);
}

void DlgLogin::addPasswordPage(LOGIN_PAGE number, TQ::PasswordPage* page)
{
    using TQ::PasswordPage;
    ui->setPage(number, page);
    connect(page, &PasswordPage::backBtnClicked, this, &DlgLogin::on_backBtn_clicked);
    connect(page, &PasswordPage::reportNetworkErr, this, &DlgLogin::reportHttpErr);
    connect(page, &PasswordPage::badGateway, m_maintenance,
            &MaintenanceWatch::_queryOrchUpgradeWhen502);
    connect(page, &PasswordPage::submitted, promptWidge, &WidgetTopPrompt::hidePrompt);
    connect(page, &PasswordPage::told, this,
            [this](WidgetTopPrompt::PROMPT_TYPE type, const QString& text) {
                promptWidge->showPrompt(type, text, true);
            });
}

void DlgLogin::on_btnForgetPasswd_clicked()
{
    m_context.byHand = false;
    m_context.verifyingCustomer = false; // from now on the orchestrator is asked
    beginAttempt();
    m_request->forgetApproval();
    promptWidge->hidePrompt();
    m_forgetPasswordWidget->setCustomerId(m_context.m_CustomerID);
    m_forgetPasswordWidget->setCustomerIdStr(ui->customerId->text());
    changeCurPage(DLG_FORGETPASSWORD_PAGE);
}

void DlgLogin::onShowForgetPasswordWidget()
{
    promptWidge->hidePrompt();
    m_resetPasswordWidget->setAccount(m_forgetPasswordWidget->account());
    changeCurPage(DLG_RESETPASSWORD_PAGE);
}

void DlgLogin::forceResetPassword(const QString& reasonCn, const QString& reasonEn)
{
    m_ConnectSlowWarningTimer->stop();
    promptWidge->hidePrompt();
    ui->password->clear();
    restoreLoginPage();
    m_forceResetPasswordWidget->setCustomerId(m_context.m_CustomerID);
    m_forceResetPasswordWidget->setResetPassReason(reasonCn, reasonEn);
    m_forceResetPasswordWidget->resetUI();
    changeCurPage(DLG_FORCERESETPASSWORD_PAGE);
}

void DlgLogin::onForceResetPasswordResult(bool isOk)
{
    m_request->forgetAuthenticator();
    onResetPassword(isOk);
}
