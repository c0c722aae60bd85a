#include "login/AuthenticatorStep.h"

#include "app/ConfigUtil.h"
#include "login/LoginContext.h"
#include "login/OtpAuthPage.h"
#include "login/OtpAuthUri.h"
#include "login/OtpInstructionDlg.h"
#include "login/OtpResetOtpTipDlg.h"
#include "login/OtpVerifyPage.h"
#include "orch/ErrorCatalogue.h"
#include "widgets/DialogFrame.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QPointer>
#include <QVariant>

namespace {

void forgetToken()
{
    qApp->setProperty(appproperty::kOtpMiddleToken, QVariant());
}

} // namespace

AuthenticatorStep::AuthenticatorStep(const LoginContext& context, QWidget* window)
    : QObject(window), m_context(context), m_window(window), m_otpAuthPage(new OtpAuthPage(window)),
      m_otpVerifyPage(new OtpVerifyPage(window))
{
    setupOtpPageUI();
}

// The property would outlive the window.
AuthenticatorStep::~AuthenticatorStep()
{
    forgetToken();
}

void AuthenticatorStep::setupOtpPageUI()
{
    connect(m_otpAuthPage, &OtpAuthPage::instructionsWanted, this,
            &AuthenticatorStep::on_instructionBtn_clicked);
    connect(m_otpAuthPage, &OtpAuthPage::copyUsernameWanted, this,
            &AuthenticatorStep::on_copyUsernameBtn_clicked);
    connect(m_otpAuthPage, &OtpAuthPage::copyKeyWanted, this,
            &AuthenticatorStep::on_copyKeyBtn_clicked);
    connect(m_otpAuthPage, &OtpAuthPage::nextWanted, this, &AuthenticatorStep::on_nextBtn_clicked);
    connect(m_otpAuthPage, &OtpAuthPage::backWanted, this, &AuthenticatorStep::backWanted);

    connect(m_otpVerifyPage, &OtpVerifyPage::verifyBtnClicked, this,
            &AuthenticatorStep::codeEntered);
    connect(m_otpVerifyPage, &OtpVerifyPage::codeMissing, this,
            [this] { emit error(errorText(ErrorText::AuthenticatorCodeMissing)); });
    connect(m_otpVerifyPage, &OtpVerifyPage::backBtnClicked, this, &AuthenticatorStep::backWanted);
    connect(m_otpVerifyPage, &OtpVerifyPage::lostPhoneBtnPressed, this,
            &AuthenticatorStep::recover);
}

void AuthenticatorStep::handleOtpLogin(bool otpLogin, const QString& otpKey,
                                       const QString& otpMiddleToken)
{
    qApp->setProperty(appproperty::kOtpMiddleToken, otpMiddleToken);
    m_otpKey = otpKey;
    restore(); // the page may be the one that stands: another code is wanted
    if (otpLogin)
        return emit codePageWanted();
    setupOtpQrCode();
    emit bindingPageWanted();
}

void AuthenticatorStep::onRegenQRCode(const QString& otpKey)
{
    m_otpKey = otpKey;
    setupOtpQrCode();
    emit bindingPageWanted();
}

void AuthenticatorStep::setupOtpQrCode()
{
    const LoginFields typed = m_context.fields();
    m_otpAuthPage->setCode(otpAuthUri(typed.username, typed.shownCustomer, m_otpKey));
}

void AuthenticatorStep::restore()
{
    m_otpVerifyPage->setVerifyBtnEnabled(true);
    m_otpVerifyPage->clearVerifyNumber();
}

void AuthenticatorStep::forget()
{
    m_otpKey.clear();
    m_otpAuthPage->setCode(QString());
    forgetToken();
}

void AuthenticatorStep::on_copyUsernameBtn_clicked()
{
    QGuiApplication::clipboard()->setText(m_context.fields().username);
    emit copied(tr("Copied to clipboard"));
}

void AuthenticatorStep::on_copyKeyBtn_clicked()
{
    QGuiApplication::clipboard()->setText(m_otpKey);
    emit copied(tr("Copied to clipboard"));
}

void AuthenticatorStep::on_instructionBtn_clicked()
{
    runAndDelete(new OtpInstructionDlg(m_window));
}

// An authenticator that is just being bound is not lost.
void AuthenticatorStep::on_nextBtn_clicked()
{
    m_otpVerifyPage->setLostPhoneBtnVisible(false);
    emit codePageWanted();
}

void AuthenticatorStep::recover()
{
    const QPointer<AuthenticatorStep> alive(this);
    auto* dialog = new OtpResetOtpTipDlg(m_window);
    connect(dialog, &OtpResetOtpTipDlg::regenQRCode, this, &AuthenticatorStep::onRegenQRCode);
    runAndDelete(dialog);
    if (alive)
        emit otpMiddleTokenChanged(qApp->property(appproperty::kOtpMiddleToken).toString());
}
