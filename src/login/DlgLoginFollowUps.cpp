// The login window and what may follow a login's answer: a code by SMS, a device to be associated,
// an authenticator, a password to be changed.

#include "forgetpassword/ForceResetPasswordWidget.h"
#include "forgetpassword/ForgetPasswordWidget.h"
#include "forgetpassword/ResetPasswordWidget.h"
#include "login/AuthenticatorStep.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "login/LoginRequest.h"
#include "login/OtpAuthPage.h"
#include "login/OtpVerifyPage.h"
#include "login/SmsStep.h"
#include "maintenance/MaintenanceWatch.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

void DlgLogin::wireFollowUps()
{
    auto* const step = new SmsStep(m_context, this);
    connect(m_request, &LoginRequest::smsNeeded, m_ConnectSlowWarningTimer, &QTimer::stop);
    connect(m_request, &LoginRequest::bindingDemanded, m_ConnectSlowWarningTimer, &QTimer::stop);
    // A dialog is not opened from within the callback of a request.
    connect(m_request, &LoginRequest::smsNeeded, step, &SmsStep::askForCode, Qt::QueuedConnection);
    connect(m_request, &LoginRequest::bindingDemanded, step, &SmsStep::bindDevice,
            Qt::QueuedConnection);
    connect(step, &SmsStep::accepted, this, &DlgLogin::loginAccepted);
    connect(step, &SmsStep::passwordChangeForced, m_request, &LoginRequest::passwordChangeForced);
    connect(step, &SmsStep::over, this, &DlgLogin::restoreLoginPage);
    connect(step, &SmsStep::refused, this, &DlgLogin::reportHttpErr);
    connect(step, &SmsStep::submitted, promptWidge, &WidgetTopPrompt::hidePrompt);
    connect(step, &SmsStep::told, this, &DlgLogin::tell);

    connect(m_request, &LoginRequest::authenticatorNeeded, this,
            [this](bool otpLogin, const QString& otpKey, const QString& otpMiddleToken) {
                m_ConnectSlowWarningTimer->stop();
                buildFurtherPages();
                m_authenticator->handleOtpLogin(otpLogin, otpKey, otpMiddleToken);
            });
    connect(m_request, &LoginRequest::passwordChangeForced, this, &DlgLogin::forceResetPassword);
}

void DlgLogin::buildFurtherPages()
{
    if (m_authenticator)
        return;
    m_authenticator = new AuthenticatorStep(m_context, this);
    m_forgetPasswordWidget = new ForgetPasswordWidget(this);
    m_resetPasswordWidget = new TQ::ResetPasswordWidget(this);
    m_forceResetPasswordWidget = new TQ::ForceResetPasswordWidget(this);
    setupOtpPageUI();
    addPasswordPages();
}

// Authenticator

void DlgLogin::setupOtpPageUI()
{
    ui->setPage(DLG_OTP_AUTH_PAGE, m_authenticator->authPage());
    ui->setPage(DLG_OTP_VERIFY_PAGE, m_authenticator->verifyPage());

    connect(m_request, &LoginRequest::authenticatorOver, m_authenticator,
            &AuthenticatorStep::forget);
    const auto show = [this](LOGIN_PAGE page) {
        promptWidge->hidePrompt();
        changeCurPage(page);
    };
    connect(m_authenticator, &AuthenticatorStep::bindingPageWanted, this,
            [show] { show(DLG_OTP_AUTH_PAGE); });
    connect(m_authenticator, &AuthenticatorStep::codePageWanted, this,
            [show] { show(DLG_OTP_VERIFY_PAGE); });
    connect(m_authenticator, &AuthenticatorStep::backWanted, this, &DlgLogin::on_backBtn_clicked);
    connect(m_authenticator, &AuthenticatorStep::codeEntered, m_request,
            &LoginRequest::onVerifyBtnClicked);
    connect(m_authenticator, &AuthenticatorStep::otpMiddleTokenChanged, m_request,
            &LoginRequest::setOtpMiddleToken);
    connect(m_authenticator, &AuthenticatorStep::error, this, &DlgLogin::showError);
    connect(m_authenticator, &AuthenticatorStep::copied, this,
            [this](const QString& text) { tell(WidgetTopPrompt::SHOW_SUCCESS, text); });
}

// Password pages

void DlgLogin::addPasswordPages()
{
    addPasswordPage(DLG_FORGETPASSWORD_PAGE, m_forgetPasswordWidget);
    addPasswordPage(DLG_RESETPASSWORD_PAGE, m_resetPasswordWidget);
    addPasswordPage(DLG_FORCERESETPASSWORD_PAGE, m_forceResetPasswordWidget);
    connect(m_forgetPasswordWidget, &ForgetPasswordWidget::showResetPasswordWidget, this,
            &DlgLogin::onShowForgetPasswordWidget);
    connect(m_resetPasswordWidget, &TQ::ResetPasswordWidget::resetPassword, this,
            &DlgLogin::onResetPassword);
    connect(m_forceResetPasswordWidget, &TQ::ForceResetPasswordWidget::resetPasswordResult, this,
            &DlgLogin::onForceResetPasswordResult);
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
    connect(page, &PasswordPage::told, this, &DlgLogin::tell);
}

void DlgLogin::on_btnForgetPasswd_clicked()
{
    m_context.byHand = false;
    m_context.verifyingCustomer = false; // from now on the orchestrator is asked
    beginAttempt();
    m_request->forgetApproval();
    promptWidge->hidePrompt();
    buildFurtherPages();
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
    buildFurtherPages();
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
