// The way of a login through its steps, what can hold it up, and how its failures are rendered.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "app/Product.h"
#include "branding/LogoChecker.h"
#include "login/CustomerStep.h"
#include "login/DialogPrivacy.h"
#include "login/DlgBindResult.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "login/LoginInput.h"
#include "login/LoginRequest.h"
#include "maintenance/MaintenanceWatch.h"
#include "orch/ErrorCatalogue.h"
#include "orch/HttpErrorText.h"
#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"
#include "orch/TextUtil.h"
#include "upgrade/UpgradeWatch.h"
#include "widgets/CommonTipsDialog.h"
#include "widgets/DialogFrame.h"
#include "widgets/PromptText.h"
#include "widgets/WidgetTopPrompt.h"

#include <QApplication>
#include <QCheckBox>
#include <QJsonDocument>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

namespace {

// A dialog is not opened from within the callback of a request.
constexpr int kPrivacyDelayMs = 20;

constexpr int kLongestTip = 400; // keeps the dialog within the screen

ipc::OrchIpc* orch()
{
    return ipc::OrchIpc::instance();
}

int checkState(const QCheckBox* box)
{
    return box->isChecked() ? Qt::Checked : Qt::Unchecked;
}

} // namespace

// What an earlier attempt still waits for no longer counts.
void DlgLogin::beginAttempt()
{
    m_context.attempt.begin();
    m_request->begin();
    m_ConnectSlowWarningTimer->stop();
}

// Customer step

void DlgLogin::on_btnContinue_clicked()
{
    if (!ui->btnContinue->isEnabled())
        return; // Return was pressed while the step is running
    m_loginBreak = true;
    m_context.byHand = false;
    beginAttempt();
    m_request->forgetApproval();
    promptWidge->hidePrompt();
    ui->customerId->setText(Util::removeUnvisibleUnicode(ui->customerId->text()));
    ui->username->clear();
    ui->password->clear();
    onBtnLoginEnableChanged();
    if (ui->customerId->text().isEmpty())
        return showError(errorText(ErrorText::CustomerPageIncomplete));
    if (m_showUpgradeDialog)
        return changeCurPage(DLG_LOGIN_PAGE);
    ui->btnContinue->setEnabled(false);
    ui->btnContinue->setText(tr("Continue..."));
    LogoChecker::instance()->clearLogoInfo();
    m_ConnectSlowWarningTimer->start();
    m_customer->getPrivacyVerFromMain();
}

void DlgLogin::showPrivacyLater()
{
    QTimer::singleShot(kPrivacyDelayMs, this, &DlgLogin::showPrivacy);
}

void DlgLogin::showPrivacy()
{
    if (findChild<DialogPrivacy*>())
        return;
    const QString shown = m_customer->privacyVersion();
    const bool waiting = m_ConnectSlowWarningTimer->isActive();
    m_ConnectSlowWarningTimer->stop(); // reading takes its time
    const QPointer<DlgLogin> alive(this);
    const Attempt::Run run = m_context.attempt.run();
    auto* dialog = new DialogPrivacy(this);
    dialog->setPrivacyVersion(shown);
    const bool agreed = runAndDelete(dialog);
    if (!alive)
        return;
    if (!agreed)
        return rejectWithDialogs();
    m_customer->keepAgreement(shown);
    if (result() == QDialog::Accepted)
        return;
    if (waiting && run.isCurrent())
        m_ConnectSlowWarningTimer->start();
    const QWidget* modal = QApplication::activeModalWidget();
    const bool followUp = m_curPage > DLG_LOGIN_PAGE || (modal && modal != this);
    if (m_context.byHand || m_upgrade->isDialogOpen() || followUp)
        return; // the login goes on beside the dialog

    const bool credentials =
        !(ConfigUtil::savedText(ConfigUtil::PASSWORD).isEmpty() && ui->password->text().isEmpty());
    const bool savedAccount = credentials &&
                              !ConfigUtil::savedText(ConfigUtil::CUSTOMERID).isEmpty() &&
                              !ConfigUtil::savedText(ConfigUtil::USERNAME).isEmpty();
    if (!savedAccount) {
        if (m_customer->endedForAgreement()) {
            m_ConnectSlowWarningTimer->stop();
            _resetAllBtnStyle(); // Continue starts the step again
        }
        return;
    }
    beginAttempt(); // the step may still run beside the dialog
    onBtnLoginEnableChanged();
    logDisplayInfo(tr("Get privacy version again"));
    m_ConnectSlowWarningTimer->start();
    m_customer->getPrivacyVerFromMain();
}

// A dialog below the agreement must not end in a login.
void DlgLogin::rejectWithDialogs()
{
    const auto dialogs = findChildren<QDialog*>();
    for (QDialog* dialog : dialogs)
        dialog->reject();
    reject();
}

// Upgrade

void DlgLogin::checkUpgrade()
{
    const auto received = [this](const OrchReply& reply) { _handleUpgrade(reply); };
    const auto failed = [this](const OrchReply& reply) {
        const QJsonObject info = JsonUtil::getObject(reply.json(), QStringLiteral("errorInfo"));
        const QByteArray body = info.isEmpty() ? QByteArray() : QJsonDocument(info).toJson();
        reportHttpErr(OrchReply(body, reply.status, reply.error, reply.errorString));
        restoreContinue();
    };
    orch()->upgradeCheck(m_context.m_CustomerID, m_context.attempt.step(received),
                         m_context.attempt.step(failed));
}

// False: the login goes no further by itself.
bool DlgLogin::_handleUpgrade(const OrchReply& reply)
{
    logDisplayDebug(QStringLiteral("orch return:") + maskSecrets(reply.body));
    logDisplayDebug(QStringLiteral("current version: ") + QLatin1String(product::kVersion));
    const QPointer<DlgLogin> alive(this);
    if (!offerUpgrade(reply) || !alive)
        return false;
    m_maintenance->_queryOrchUpgrade(m_context.attempt, [this] {
        changeCurPage(DLG_LOGIN_PAGE);
        if (!m_loginBreak)
            authUser();
    });
    return true;
}

// Shows the dialog when the answer calls for one.
bool DlgLogin::offerUpgrade(const OrchReply& reply)
{
    m_showUpgradeDialog = m_upgrade->take(reply);
    if (!m_showUpgradeDialog)
        return true;
    restoreContinue();
    m_ConnectSlowWarningTimer->stop();
    const QPointer<DlgLogin> alive(this);
    const Attempt::Run run = m_context.attempt.run();
    m_upgrade->runDialog();
    if (!alive)
        return false;
    if (!m_upgrade->isForced())
        return run.isCurrent() && isVisible(); // the window can be closed under the offer
    m_showUpgradeDialog = false;
    restoreLoginPage();
    return false;
}

// The orchestrator has refused this client as too old.
void DlgLogin::_showUpgradeDialog(const QString& text)
{
    const QPointer<DlgLogin> alive(this);
    auto* tip = new CommonTipsDialog(this);
    tip->setContentText(shortenedText(text, kLongestTip));
    runAndDelete(tip);
    if (!alive)
        return;
    if (m_showUpgradeDialog)
        m_upgrade->forceUpgrade();
    else
        showError(tr("Your client is outdated, please update it to the latest version."));
}

// Login

void DlgLogin::on_btnLogin_clicked()
{
    m_loginBreak = false;
    m_context.byHand = true;
    beginAttempt();
    promptWidge->hidePrompt();
    ui->username->setText(Util::removeUnvisibleUnicode(ui->username->text()));
    ui->password->setText(ui->password->text().trimmed());
    onBtnLoginEnableChanged();

    switch (checkLoginInput(ui->username->text(), ui->password->text())) {
    case LoginInputFault::Incomplete:
        return showError(errorText(ErrorText::LoginPageIncomplete));
    case LoginInputFault::UsernameTooLong:
        return showError(errorText(ErrorText::UsernameTooLong));
    case LoginInputFault::PasswordTooLong:
        return showError(errorText(ErrorText::PasswordTooLong));
    case LoginInputFault::None:
        break;
    }
    ui->btnLogin->setEnabled(false);
    if (m_reLogin)
        m_customer->_authConfig([this] { _authUserLogin(); });
    else
        _authUserLogin();
}

void DlgLogin::_authUserLogin()
{
    if (m_checkUpgrade) {
        const auto received = [this](const OrchReply& reply) {
            if (_handleUpgrade(reply))
                m_checkUpgrade = false; // once it has let a login pass
        };
        const auto failed = [this](const OrchReply& reply) {
            if (reply.status == 502)
                return m_maintenance->_queryOrchUpgradeWhen502(m_context.attempt);
            reportHttpErr(reply);
            restoreLoginPage();
        };
        return orch()->upgradeCheck(m_context.m_CustomerID, m_context.attempt.step(received),
                                    m_context.attempt.step(failed));
    }
    m_ConnectSlowWarningTimer->start();
    ui->btnForgetPasswd->setEnabled(false);
    m_context.loadErrorResource(ConfigUtil::savedText(ConfigUtil::AUTHURL));
    m_maintenance->_queryOrchUpgrade(m_context.attempt, [this] { m_request->obtainPubKey(); });
}

void DlgLogin::authUser()
{
    if (!ui->autoLoginCheckBox->isChecked() && !m_reLogin) {
        ui->btnLogin->setEnabled(true);
        return;
    }
    m_context.loadErrorResource(ConfigUtil::savedText(ConfigUtil::AUTHURL));
    m_request->obtainPubKey();
}

void DlgLogin::loginAccepted()
{
    if (!isVisible())
        return; // declined meanwhile
    m_ConnectSlowWarningTimer->stop();
    ConfigUtil::writeValue(ConfigUtil::REMEMBER_PASSWORD, checkState(ui->remePwCheckBox));
    ConfigUtil::writeValue(ConfigUtil::AUTO_LOGIN, checkState(ui->autoLoginCheckBox));
    accept();
}

void DlgLogin::endLoginAttempt(const QString& error)
{
    m_ConnectSlowWarningTimer->stop();
    restoreLoginPage();
    showError(error);
}

// Failures

void DlgLogin::reportHttpErr(const OrchReply& reply)
{
    logDisplayDebug(failureLogText(reply, QStringLiteral("Error Info: ")));
    const LoginFailure outcome =
        loginFailure(reply, m_context.verifyingCustomer, OrchTexts::shared());
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

// End of an earlier session

void DlgLogin::signoutNotifyOrch(ipc::DisconnectTypeReason reason)
{
    ipc::SignoutParams params;
    params.token = ConfigUtil::savedText(ConfigUtil::TOKEN);
    params.customerId = ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    params.reason = reason;
    ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
    orch()->signoutNotifyOrch(
        params, [](const OrchReply&) { qDebug("signoutNotifyOrch success."); },
        [](const OrchReply& reply) {
            qDebug().noquote() << "signoutNotifyOrch failed with reply:" << maskSecrets(reply.body);
        });
}
