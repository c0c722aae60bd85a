// The login window and what may follow a login's answer: a code by SMS, a device to be associated,
// an authenticator, a password to be changed.

#include "login/AuthenticatorStep.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "login/LoginRequest.h"
#include "login/OtpAuthPage.h"
#include "login/OtpVerifyPage.h"
#include "login/SmsStep.h"
#include "orch/ErrorCatalogue.h"
#include "widgets/WidgetTopPrompt.h"

#include <QTimer>

void DlgLogin::wireSms()
{
    auto* const step = new SmsStep(m_context, this);
    for (const auto wanted : {&LoginRequest::smsNeeded, &LoginRequest::bindingDemanded})
        connect(m_request, wanted, m_ConnectSlowWarningTimer, &QTimer::stop);
    // A dialog is not opened from within the callback of a request.
    connect(m_request, &LoginRequest::smsNeeded, step, &SmsStep::askForCode, Qt::QueuedConnection);
    connect(m_request, &LoginRequest::bindingDemanded, step, &SmsStep::bindDevice,
            Qt::QueuedConnection);
    connect(step, &SmsStep::accepted, this, &DlgLogin::loginAccepted);
    connect(step, &SmsStep::passwordChangeForced, m_request, &LoginRequest::passwordChangeForced);
    connect(step, &SmsStep::over, this, &DlgLogin::restoreLoginPage);
    connect(step, &SmsStep::refused, this, &DlgLogin::reportHttpErr);
    connect(step, &SmsStep::submitted, promptWidge, &WidgetTopPrompt::hidePrompt);
    connect(step, &SmsStep::told, this,
            [this](WidgetTopPrompt::PROMPT_TYPE type, const QString& text) {
                promptWidge->showPrompt(type, text, true);
            });
}

void DlgLogin::wireAuthenticator()
{
    ui->setPage(DLG_OTP_AUTH_PAGE, m_authenticator->authPage());
    ui->setPage(DLG_OTP_VERIFY_PAGE, m_authenticator->verifyPage());

    connect(m_request, &LoginRequest::authenticatorNeeded, m_ConnectSlowWarningTimer,
            &QTimer::stop);
    connect(m_request, &LoginRequest::authenticatorNeeded, m_authenticator,
            &AuthenticatorStep::handleOtpLogin);
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
    connect(m_authenticator, &AuthenticatorStep::copied, this, [this](const QString& text) {
        promptWidge->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, text, true);
    });
}

void DlgLogin::wirePasswordPages()
{
    connect(m_request, &LoginRequest::passwordChangeForced, this, [this] {
        ui->password->clear();
        endLoginAttempt(errorText(ErrorText::LoginReplyUnusable));
    });
}
