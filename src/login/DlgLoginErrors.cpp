// How the login window renders a failed request.

#include "app/LogMarker.h"
#include "login/DlgLogin.h"
#include "orch/HttpErrorText.h"

void DlgLogin::reportHttpErr(const QByteArray& body, QNetworkReply* reply)
{
    const HttpFailure failure = HttpFailure::of(body, reply);
    logDisplayDebug(failureLogText(failure, QStringLiteral("Error Info: ")));
    const LoginFailure outcome = loginFailure(failure, m_verifyingCustomer, OrchTexts::shared());
    if (outcome.forgetCredentials)
        forgetCredentials();
    if (outcome.action != LoginFailure::Action::Nothing)
        showError(outcome.text);
}
