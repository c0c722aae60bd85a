// The login window's pages and fields: moving between pages, and keeping what is saved in step
// with what the user types.

#include "app/ConfigUtil.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "login/LoginInput.h"
#include "orch/ErrorCatalogue.h"
#include "orch/Util.h"
#include "widgets/WidgetTopPrompt.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>

void DlgLogin::changeCurPage(const LOGIN_PAGE& page)
{
    if (page == m_curPage && !m_pageStack.isEmpty())
        return; // nothing to come back to, and the user may be typing
    if (m_pageStack.isEmpty() || m_pageStack.top() != m_curPage)
        m_pageStack.push(m_curPage);
    showPage(page);
}

void DlgLogin::showPage(LOGIN_PAGE page)
{
    ui->stackedWidget->setCurrentIndex(page);
    m_curPage = page;
    if (page == DLG_CUSTOMER_PAGE)
        ui->customerId->setFocus();
    else if (page == DLG_LOGIN_PAGE)
        (ui->username->text().isEmpty() ? ui->username : ui->password)->setFocus();
}

void DlgLogin::on_backBtn_clicked()
{
    if (m_pageStack.isEmpty())
        return;
    beginAttempt();
    LOGIN_PAGE previous = DLG_LOGIN_PAGE;
    if (m_curPage == DLG_FORCERESETPASSWORD_PAGE) {
        m_pageStack.clear();
        m_pageStack.push(DLG_CUSTOMER_PAGE);
    } else {
        previous = m_pageStack.pop();
    }
    m_showUpgradeDialog = false;
    if (previous == DLG_LOGIN_PAGE) {
        m_otpMiddleToken.clear();
        m_verifyNum.clear();
        forgetCredentials();
    }
    showPage(previous);
    ui->btnForgetPasswd->setEnabled(true);
    _resetAllBtnStyle();
}

// What an earlier attempt still waits for no longer counts.
void DlgLogin::beginAttempt()
{
    ++m_attempt;
    m_loginInFlight = false;
    m_approvalTimer->stop();
    m_ConnectSlowWarningTimer->stop();
    m_RequestIdForPoll.clear();
    setProperty(kAsynAuth, false);
}

void DlgLogin::on_close_clicked()
{
    reject();
}

void DlgLogin::forgetCredentials()
{
    ui->password->clear();
    ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
    ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString());
}

void DlgLogin::restoreContinue()
{
    ui->btnContinue->setEnabled(true);
    ui->btnContinue->setText(tr("Continue"));
}

void DlgLogin::_resetAllBtnStyle()
{
    restoreContinue();
    ui->btnForgetPasswd->setEnabled(true);
    onBtnLoginEnableChanged();
}

void DlgLogin::onBtnLoginEnableChanged()
{
    ui->btnLogin->setEnabled(!ui->username->text().isEmpty() && !ui->password->text().isEmpty());
}

// The link is offered when the orchestrator supports it and the page behind it exists.
void DlgLogin::offerForgetPassword(bool supported)
{
    const bool hasPage = ui->stackedWidget->count() > DLG_FORGETPASSWORD_PAGE;
    ui->btnForgetPasswd->setVisible(supported && hasPage);
}

void DlgLogin::showCustomerId()
{
    ui->customerIdLabel->setText(Util::GetStringWithLength(ui->customerId->text().trimmed(), 12));
}

void DlgLogin::showError(const QString& text)
{
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_ERROR, text, true);
}

void DlgLogin::showConnectionSlowWarning()
{
    m_ConnectSlowWarningTimer->stop();
    promptWidge->showPrompt(WidgetTopPrompt::SHOW_WARNING,
                            tr("Your network may be slow. Still connecting, please wait"), true);
}

void DlgLogin::on_customerId_textEdited(const QString&)
{
    m_showUpgradeDialog = false; // another customer is looked up anew
    clearTokenAndPass();
}

void DlgLogin::on_username_textEdited(const QString&)
{
    clearTokenAndPass();
}

void DlgLogin::clearTokenAndPass()
{
    if (!ui->btnLogin->isEnabled() || m_EmptyPass)
        return;
    const auto saved = [](const QString& key) {
        return ConfigUtil::getvalue(key, QString()).toString();
    };
    const bool other = ui->customerId->text() != saved(ConfigUtil::CUSTOMERIDSTR) ||
                       ui->username->text() != saved(ConfigUtil::USERNAME);
    if (!other || saved(ConfigUtil::PASSWORD).isEmpty())
        return;
    ui->password->clear();
    m_EmptyPass = true;
    ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
}

void DlgLogin::on_password_textEdited(const QString& text)
{
    if (text != ConfigUtil::getvalue(ConfigUtil::PASSWORD, QString()).toString())
        ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
    if (text.isEmpty())
        m_EmptyPass = true;
}

void DlgLogin::on_remePwCheckBox_stateChanged(int state)
{
    if (state == Qt::Unchecked)
        ui->autoLoginCheckBox->setChecked(false);
}

void DlgLogin::on_autoLoginCheckBox_stateChanged(int state)
{
    if (state == Qt::Checked)
        ui->remePwCheckBox->setChecked(true);
}

void DlgLogin::on_btnLogin_clicked()
{
    m_loginBreak = false;
    m_byHand = true;
    beginAttempt();
    promptWidge->hidePrompt();
    ui->username->setText(Util::removeUnvisibleUnicode(ui->username->text()));
    ui->password->setText(ui->password->text().trimmed());

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
        _authConfig(QStringLiteral("_authUserLogin"));
    else
        _authUserLogin();
}
