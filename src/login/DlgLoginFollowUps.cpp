// The login window and what may follow a login's answer: a code by SMS, a device to be associated,
// an authenticator, a password to be changed.

#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "login/LoginRequest.h"
#include "orch/ErrorCatalogue.h"

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

void DlgLogin::wirePasswordPages()
{
    connect(m_request, &LoginRequest::passwordChangeForced, this, [this] {
        ui->password->clear();
        endLoginAttempt(errorText(ErrorText::LoginReplyUnusable));
    });
}
