// The login window's pages and fields: moving between pages, and keeping what is saved in step
// with what the user types.

#include "app/ConfigUtil.h"
#include "login/AuthenticatorStep.h"
#include "login/DlgLogin.h"
#include "login/DlgLoginUi.h"
#include "login/LoginRequest.h"
#include "maintenance/OrchUpgradeDialog.h"
#include "orch/TextUtil.h"
#include "widgets/WidgetTopPrompt.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>

LoginFields DlgLogin::fields() const
{
    return {ui->customerId->text(), ui->username->text(), ui->password->text(),
            ui->customerIdLabel->text()};
}

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
    m_context.byHand = false;
    beginAttempt();
    m_request->forgetApproval();
    LOGIN_PAGE previous = DLG_LOGIN_PAGE;
    if (m_curPage == DLG_FORCERESETPASSWORD_PAGE) {
        m_pageStack.clear();
        m_pageStack.push(DLG_CUSTOMER_PAGE);
    } else {
        previous = m_pageStack.pop();
    }
    m_showUpgradeDialog = false;
    if (previous == DLG_LOGIN_PAGE) {
        m_request->forgetAuthenticator();
        forgetCredentials();
    }
    showPage(previous);
    ui->btnForgetPasswd->setEnabled(true);
    _resetAllBtnStyle();
}

void DlgLogin::on_close_clicked()
{
    reject();
}

void DlgLogin::forgetCredentials()
{
    ui->password->clear();
    onBtnLoginEnableChanged();
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
    restoreLoginPage();
}

void DlgLogin::restoreLoginPage()
{
    onBtnLoginEnableChanged();
    ui->btnForgetPasswd->setEnabled(true);
    if (m_authenticator)
        m_authenticator->restore();
}

void DlgLogin::onBtnLoginEnableChanged()
{
    ui->btnLogin->setEnabled(!ui->username->text().isEmpty() && !ui->password->text().isEmpty());
}

void DlgLogin::offerForgetPassword(bool supported)
{
    ui->btnForgetPasswd->setVisible(supported);
}

void DlgLogin::showCustomerId(const QString& customerId)
{
    ui->customerIdLabel->setText(Util::GetStringWithLength(customerId, 12));
}

void DlgLogin::tell(WidgetTopPrompt::PROMPT_TYPE type, const QString& text)
{
    promptWidge->showPrompt(type, text, true);
}

void DlgLogin::showError(const QString& text)
{
    tell(WidgetTopPrompt::SHOW_ERROR, text);
}

void DlgLogin::showConnectionSlowWarning()
{
    m_ConnectSlowWarningTimer->stop();
    tell(WidgetTopPrompt::SHOW_WARNING,
         tr("Your network may be slow. Still connecting, please wait"));
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
    if (m_request->isApprovalOfAnother(fields())) {
        beginAttempt();
        m_request->forgetApproval();
        restoreLoginPage();
    }
    if (!ui->btnLogin->isEnabled() || m_EmptyPass)
        return;
    const bool other = ui->customerId->text() != ConfigUtil::savedText(ConfigUtil::CUSTOMERIDSTR) ||
                       ui->username->text() != ConfigUtil::savedText(ConfigUtil::USERNAME);
    if (!other || ConfigUtil::savedText(ConfigUtil::PASSWORD).isEmpty())
        return;
    ui->password->clear();
    m_EmptyPass = true;
    ConfigUtil::writeValue(ConfigUtil::TOKEN, QString());
}

void DlgLogin::on_password_textEdited(const QString& text)
{
    if (text != ConfigUtil::savedText(ConfigUtil::PASSWORD))
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

void DlgLogin::onResetPassword(bool isSucc)
{
    if (!isSucc)
        return;
    m_pageStack.clear();
    m_pageStack.push(DLG_CUSTOMER_PAGE);
    forgetCredentials();
    showPage(DLG_LOGIN_PAGE);
}

void DlgLogin::onShowOrchUpgradeDialog(const OrchUpgradeReply& notice, NoticeType type)
{
    showOrchUpgradeDialog(this, notice, type);
}
