// The ways in which a session ends for good: the service's word, the user's wish, and what both see
// before the program starts anew or ends.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Platform.h"
#include "main/DlgMain.h"
#include "main/DlgMainUi.h"
#include "main/SessionRules.h"
#include "orch/HttpErrorText.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "widgets/AccountDialogs.h"
#include "widgets/DialogFrame.h"
#include "widgets/DlgQuit.h"
#include "widgets/dlgStopPrompt.h"
#include "widgets/DlgSwitchAcc.h"
#include "widgets/WidgetSetting.h"
#include "widgets/WidgetTopPrompt.h"

#include <QPointer>
#include <QTimer>

namespace {

// Time for the last requests to be sent before the program ends.
constexpr int kEndDelayMs = 100;

} // namespace

void DlgMain::_handle401(const QByteArray& document)
{
    logDisplayDebug(QStringLiteral(" orch return text ") + maskSecrets(document));
    switch (kickout(JsonUtil::object(document))) {
    case Kickout::PasswordChanged:
        return endSession(SessionEnd::PasswordChanged);
    case Kickout::ForcedLogout:
        return endSession(SessionEnd::ForcedLogout);
    case Kickout::AccountChanged:
        return endSession(SessionEnd::AccountChanged);
    case Kickout::Other:
        return logout(false, true, false, true);
    case Kickout::NoReason:
        return logout(true, true, false, true);
    }
}

void DlgMain::reportHttpErr(const QByteArray& body, QNetworkReply* reply)
{
    const HttpFailure failure = HttpFailure::of(body, reply);
    logDisplayDebug(failureLogText(failure, QStringLiteral(" Error Info: ")));
    const MainFailure outcome =
        mainFailure(failure, ui->m_SettingWidge->isDisable401(), OrchTexts::shared());
    if (outcome.end == SessionEnd::None)
        return showError(outcome.text);
    closeAllPopupDlg();
    endSession(outcome.end);
}

void DlgMain::endSession(SessionEnd end)
{
    switch (end) {
    case SessionEnd::None:
    case SessionEnd::LeftToSettings:
        return;
    case SessionEnd::KeepToken:
        return logout(false, false, false, true);
    case SessionEnd::InvalidToken:
        return logout(false, true, false, true);
    case SessionEnd::ForcedLogout:
    case SessionEnd::AccountChanged:
    case SessionEnd::PasswordChanged:
        return explainAndLogout(end);
    }
}

// The user is told why before the program starts anew. Whatever else ends the session while the
// explanation is open, it is explained once and the logout comes once.
void DlgMain::explainAndLogout(SessionEnd end)
{
    if (m_sessionOver || m_explainingEnd)
        return;
    showWindow();
    const QPointer<DlgMain> alive(this);
    explainEnd(end);
    if (alive)
        logout(false, end != SessionEnd::PasswordChanged, false, false);
}

void DlgMain::explainEnd(SessionEnd end)
{
    if (m_explainingEnd)
        return;
    const QPointer<DlgMain> alive(this);
    m_explainingEnd = true;
    setProperty(kReconnect, false);
    m_isChPwPromptShowed = end == SessionEnd::PasswordChanged;
    if (end == SessionEnd::ForcedLogout)
        showOrchKickOff(this, ConfigUtil::getvalue(ConfigUtil::USERNAME, QString()).toString());
    else if (end == SessionEnd::AccountChanged)
        showLdapChange(this);
    else
        showPasswordChanged(this);
    if (!alive)
        return;
    m_explainingEnd = false;
    m_isChPwPromptShowed = false;
}

void DlgMain::logout(bool notifyOrch, bool invalidToken, bool isByUser, bool showTipInLoginUI)
{
    if (m_sessionOver || m_explainingEnd)
        return;
    m_sessionOver = true;
    m_ClickCancelConnecting = true;
    ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString());
    disconnect(notifyOrch, invalidToken ? ipc::DisConnNormalReason : ipc::DisConnAbnormalReason);
    const QStringList arguments =
        session::logoutArguments(invalidToken, isByUser, showTipInLoginUI);
    QTimer::singleShot(kEndDelayMs, this, [this, arguments, invalidToken] {
        accept();
        if (invalidToken)
            ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
        platform().relaunch(arguments);
    });
}

void DlgMain::quitUI()
{
    if (m_sessionOver)
        return;
    m_sessionOver = true;
    m_ClickCancelConnecting = true;
    disconnect(true, ipc::DisConnNormalReason);
    QTimer::singleShot(kEndDelayMs, this, [this] {
        reject();
        platform().quit();
    });
}

void DlgMain::on_btnSwitchAccount_clicked()
{
    if (!runAndDelete(new DlgSwitchAcc(this)))
        return;
    logDisplayInfo(tr("Logout"));
    logout(true, false, true, true);
}

void DlgMain::on_btnQuitApp_clicked()
{
    const QPointer<DlgMain> alive(this);
    m_PQuitDlg = new DlgQuit(this);
    const bool accepted = runAndDelete(m_PQuitDlg);
    if (!alive)
        return;
    m_PQuitDlg = nullptr;
    if (!accepted)
        return;
    logDisplayInfo(tr("Quit"));
    quitUI();
}

void DlgMain::closeAllPopupDlg()
{
    if (m_PQuitDlg)
        m_PQuitDlg->reject();
    if (m_PStopPrompt)
        m_PStopPrompt->reject();
    promptWidge->hidePrompt();
}
