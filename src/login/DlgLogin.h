#pragma once

#include "login/LoginContext.h"
#include "maintenance/MaintenanceNotice.h"
#include "orch/OrchTypes.h"
#include "widgets/WidgetTopPrompt.h"

#include <QDialog>
#include <QPoint>
#include <QStack>

#include <memory>

class AuthenticatorStep;
class CustomerStep;
class DlgLoginUi;
class ForgetPasswordWidget;
class LoginRequest;
class MaintenanceWatch;
class OrchReply;
class QTimer;
class UpgradeWatch;
struct LoginFailure;
namespace TQ {
class ForceResetPasswordWidget;
class PasswordPage;
class ResetPasswordWidget;
} // namespace TQ

/// The login window: everything from a customer ID to a session token. It is run modally and ends
/// accepted once a token has been saved, rejected when the user gives up or refuses the privacy
/// agreement. GUI thread only.
///
/// The window holds the pages, the fields and the prompt; the steps are objects of their own:
///
///     Continue, or a saved account at start
///        |
///     CustomerStep       privacy version, lookup, configuration
///        |
///     UpgradeWatch       a newer client is offered, an outdated one ends here
///        |
///     MaintenanceWatch   a maintenance ahead stops the login once
///        |
///     login page ----------- by hand: wait for Login
///        | saved account with Auto Login, or Login pressed (through MaintenanceWatch again)
///     LoginRequest       public key, login, approval
///        |
///     AuthenticatorStep  the account asks for the code of an authenticator
class DlgLogin : public QDialog
{
    Q_OBJECT

public:
    /// The pages; each value is the page's index in the stacked widget.
    enum LOGIN_PAGE {
        DLG_CUSTOMER_PAGE = 0,
        DLG_LOGIN_PAGE = 1,
        DLG_OTP_AUTH_PAGE = 2,
        DLG_OTP_VERIFY_PAGE = 3,
        DLG_FORGETPASSWORD_PAGE = 4,
        DLG_RESETPASSWORD_PAGE = 5,
        DLG_FORCERESETPASSWORD_PAGE = 6
    };

    explicit DlgLogin(QWidget* parent);
    ~DlgLogin() override;

    /// Shows a page; the one that is left can be come back to.
    void changeCurPage(const LOGIN_PAGE& page);

    /// Renders a failed request in the top prompt.
    void reportHttpErr(const OrchReply& reply);

public slots:
    // Pages
    void on_backBtn_clicked();
    void on_close_clicked();

    // Customer step
    void on_btnContinue_clicked();
    void showPrivacy();
    void rejectWithDialogs();
    void checkUpgrade();

    // Login page
    void on_btnLogin_clicked();
    void onBtnLoginEnableChanged();
    void on_customerId_textEdited(const QString& text);
    void on_username_textEdited(const QString& text);
    void on_password_textEdited(const QString& text);
    void on_remePwCheckBox_stateChanged(int state);
    void on_autoLoginCheckBox_stateChanged(int state);
    void _authUserLogin();
    void authUser();

    /// The password has been reset: back to the login page, with nothing saved. Does nothing when
    /// it has not.
    void onResetPassword(bool isSucc);

    // Password pages
    void on_btnForgetPasswd_clicked();
    void onShowForgetPasswordWidget();
    void forceResetPassword(const QString& reasonCn, const QString& reasonEn);
    void onForceResetPasswordResult(bool isOk);

    void showConnectionSlowWarning();
    void onShowOrchUpgradeDialog(const OrchUpgradeReply& notice, NoticeType type);

protected:
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    // Construction, in order (DlgLogin.cpp)
    void buildWindow();
    void restoreCheckBoxes();
    void dropInvalidToken();
    void restoreFields();
    void wireSteps();
    void wireNotices();
    void wireFollowUps();
    // What may follow a login's answer (DlgLoginFollowUps.cpp)
    void buildFurtherPages();
    void setupOtpPageUI();
    void addPasswordPages();
    void addPasswordPage(LOGIN_PAGE number, TQ::PasswordPage* page);
    void parseAppArguments();
    void startByItself();
    void connectInputs();

    // Pages and fields (DlgLoginPages.cpp)
    LoginFields fields() const;
    void showPage(LOGIN_PAGE page);
    void showCustomerId(const QString& customerId);
    void clearTokenAndPass();
    void forgetCredentials();
    void _resetAllBtnStyle();
    void restoreContinue();
    void restoreLoginPage();
    void offerForgetPassword(bool supported);
    void showError(const QString& text);
    void tell(WidgetTopPrompt::PROMPT_TYPE type, const QString& text);

    // The way of a login through its steps (DlgLoginSteps.cpp)
    void beginAttempt();
    void showPrivacyLater();
    bool _handleUpgrade(const OrchReply& reply);
    bool offerUpgrade(const OrchReply& reply);
    void _showUpgradeDialog(const QString& text);
    void openNoticeLater(const LoginFailure& outcome);
    void loginAccepted();
    void endLoginAttempt(const QString& error);
    void signoutNotifyOrch(ipc::DisconnectTypeReason reason);

    std::unique_ptr<DlgLoginUi> ui;
    WidgetTopPrompt* promptWidge;
    QStack<LOGIN_PAGE> m_pageStack; ///< pages to return to
    LOGIN_PAGE m_curPage = DLG_CUSTOMER_PAGE;
    LoginContext m_context;
    CustomerStep* m_customer;
    LoginRequest* m_request;
    UpgradeWatch* m_upgrade;
    MaintenanceWatch* m_maintenance;
    QTimer* m_ConnectSlowWarningTimer;
    // The further pages, null until one of them is needed: most logins never see them.
    AuthenticatorStep* m_authenticator = nullptr;
    ForgetPasswordWidget* m_forgetPasswordWidget = nullptr;
    TQ::ResetPasswordWidget* m_resetPasswordWidget = nullptr;
    TQ::ForceResetPasswordWidget* m_forceResetPasswordWidget = nullptr;
    bool m_EmptyPass = false;         ///< the password field was emptied since the mask filled it
    bool m_loginBreak = false;        ///< Continue was pressed: the chain ends at the login page
    bool m_reLogin = false;           ///< started with "-logout"
    bool m_checkUpgrade = false;      ///< the upgrade check still has to run before the login
    bool m_showUpgradeDialog = false; ///< the upgrade step decided to prompt
    QPoint m_dragOffset;              ///< the pointer's place in the window while it is dragged
};
