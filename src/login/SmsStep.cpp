#include "login/SmsStep.h"

#include "app/LogMarker.h"
#include "login/DlgBindResult.h"
#include "login/DlgDeviceBind.h"
#include "login/DlgPhoneAuth.h"
#include "login/LoginContext.h"
#include "orch/HostIdentity.h"
#include "widgets/DialogFrame.h"

#include <QPointer>

SmsStep::SmsStep(LoginContext& context, QWidget* window)
    : QObject(window), m_context(context), m_window(window)
{
}

void SmsStep::askForCode(const QString& phoneNumber, const QString& middleToken,
                         const QString& username, const QString& password)
{
    const QPointer<DlgPhoneAuth> dialog = new DlgPhoneAuth(
        phoneNumber, username, password, m_context.m_CustomerID, middleToken, m_window);
    connect(dialog, &DlgPhoneAuth::told, this, &SmsStep::told);
    connect(dialog, &DlgPhoneAuth::submitted, this, &SmsStep::submitted);
    connect(dialog, &DlgPhoneAuth::refused, this, &SmsStep::refused);
    const bool authorized = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return; // gone together with the window
    dialog->deleteLater();
    if (authorized) {
        logDisplayInfo(tr("Authorization successded"));
        if (dialog->m_ResetPassword)
            emit passwordChangeForced(dialog->m_DesCn, dialog->m_DesEn);
        else
            emit accepted();
    } else if (dialog->m_DeviceBind) {
        const QString user = dialog->m_DeviceBindUser;
        const QString token = dialog->m_DeviceBindToken;
        delete dialog; // with its secrets, before the next one opens
        bindDevice(user, token);
    } else {
        end();
    }
}

void SmsStep::bindDevice(const QString& user, const QString& token)
{
    const QPointer<DlgDeviceBind> dialog =
        new DlgDeviceBind(user, Util::getDeviceId(), token, m_window);
    const bool answered = dialog->exec() == QDialog::Accepted;
    if (!dialog)
        return;
    const bool applied = answered && dialog->m_ApplyResult;
    const QString error = answered ? dialog->m_ErrInfo : QString();
    delete dialog; // an answer that comes after it was left finds nobody
    const QPointer<SmsStep> alive(this);
    if (applied)
        runAndDelete(new DlgBindResult(m_window, DlgBindResult::APPLY_SUCCESS));
    else if (!error.isEmpty())
        emit told(WidgetTopPrompt::SHOW_ERROR, error);
    if (alive)
        end();
}

void SmsStep::end()
{
    m_window->activateWindow(); // the fields take the keyboard again
    emit over();
}
