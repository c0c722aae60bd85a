#pragma once

#include <QObject>
#include <QString>

class OtpAuthPage;
class OtpVerifyPage;
class QWidget;
struct LoginContext;

/// The authenticator's step of a login, between the password and the session token: binding an
/// authenticator, asking for its code, and binding another one when it is lost.
///
///     handleOtpLogin() --> binding page --> code page --> codeEntered()
///              \-------------------------------^  |
///                            ^--- recovery code --/
///
/// It builds both pages and keeps what they show. GUI thread.
class AuthenticatorStep : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it, and the pages until they get a place; dialogs stand on it.
    AuthenticatorStep(const LoginContext& context, QWidget* window);
    ~AuthenticatorStep() override;

    OtpAuthPage* authPage() const { return m_otpAuthPage; }
    OtpVerifyPage* verifyPage() const { return m_otpVerifyPage; }

    /// A login wants a code. Without `otpLogin` an authenticator must be bound first, to `otpKey`.
    /// Both texts are secrets.
    void handleOtpLogin(bool otpLogin, const QString& otpKey, const QString& otpMiddleToken);

    /// The code was not taken: another one can be entered.
    void restore();

    /// The step is over: nothing of it is kept.
    void forget();

signals:
    void bindingPageWanted();
    void codePageWanted();
    void backWanted();
    /// Six digits, a secret, are to be submitted.
    void codeEntered(const QString& code);
    /// The login goes on with this intermediate token, a secret.
    void otpMiddleTokenChanged(const QString& otpMiddleToken);
    void copied(const QString& text);
    void error(const QString& text);

private:
    void setupOtpPageUI();
    void setupOtpQrCode();
    void onRegenQRCode(const QString& otpKey);
    void on_copyUsernameBtn_clicked();
    void on_copyKeyBtn_clicked();
    void on_instructionBtn_clicked();
    void on_nextBtn_clicked();
    void recover();

    const LoginContext& m_context;
    QWidget* m_window;
    OtpAuthPage* m_otpAuthPage;
    OtpVerifyPage* m_otpVerifyPage;
    QString m_otpKey; ///< secret: what an authenticator is bound to
};
