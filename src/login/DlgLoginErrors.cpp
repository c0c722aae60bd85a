// How the login window renders a failed request.

#include "app/LogMarker.h"
#include "login/DlgBindResult.h"
#include "login/DlgLogin.h"
#include "orch/HttpErrorText.h"
#include "widgets/DialogFrame.h"

#include <QPointer>
#include <QTimer>

void DlgLogin::reportHttpErr(const QByteArray& body, QNetworkReply* reply)
{
    const HttpFailure failure = HttpFailure::of(body, reply);
    logDisplayDebug(failureLogText(failure, QStringLiteral("Error Info: ")));
    const LoginFailure outcome = loginFailure(failure, m_verifyingCustomer, OrchTexts::shared());
    if (outcome.forgetCredentials)
        forgetCredentials();
    openNoticeLater(outcome);
    if (outcome.action == LoginFailure::Action::ShowText)
        showError(outcome.text);
}

// A dialog is not opened from within the callback of a request.
void DlgLogin::openNoticeLater(const LoginFailure& outcome)
{
    QTimer::singleShot(0, this, [this, outcome] {
        using Notice = LoginFailure::Notice;
        const QPointer<DlgLogin> alive(this);
        if (outcome.notice == Notice::BindingInProgress)
            runAndDelete(new DlgBindResult(this, DlgBindResult::APPLY_PROCESS));
        else if (outcome.notice == Notice::DeviceDisabled)
            runAndDelete(new DlgBindResult(this, DlgBindResult::DEVICE_DISABLED));
        if (alive && outcome.action == LoginFailure::Action::OpenUpgrade)
            _showUpgradeDialog(outcome.text);
    });
}
