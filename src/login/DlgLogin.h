#pragma once

#include "app/Guarded.h"
#include "login/LoginReply.h"
#include "orch/OrchTypes.h"

#include <QDialog>
#include <QPoint>
#include <QStack>

#include <functional>
#include <memory>

class DlgLoginUi;
class DlgUpgrade;
class OrchErrRes;
class QLineEdit;
class QNetworkReply;
class QTimer;
class WidgetTopPrompt;
struct LoginFailure;
struct UpgradeReply;

/// The login window: everything from a customer ID to a session token. It is run modally and ends
/// accepted once a token has been saved, rejected when the user gives up or refuses the privacy
/// agreement. GUI thread only.
///
/// The chain of requests, each step started by the answer to the one before:
///
///     Continue, or a saved account at start
///        |
///     privacy version (primary) --no answer, no version--> privacy version (backup)
///        |            \--newer--> privacy dialog                  | (not waited for)
///        v                          | agreed: from the start      v
///     lookup (primary) --failed--> lookup (backup) --failed--> message, Continue again
///        |
///     authentication configuration          (a failure is ignored; 502: maintenance check)
///        |
///     upgrade check --failed--> message, Continue again
///        |
///     maintenance query --failed--> message (404, time-out: go on)
///        |
///     login page ----------- by hand: wait for Login
///        | saved account with Auto Login, or Login pressed
///     maintenance query (Login only)
///        |
///     public key --> login request --> LoginFollowUp
///                       ^                 | Approval: poll until approved
///                       \-----------------/
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
    enum LOGIN_STEP { PROCESS_AUTH = 0 };

    explicit DlgLogin(QWidget* parent);
    ~DlgLogin() override;

    /// Renders a failed request in the top prompt.
    void reportHttpErr(const QByteArray& body, QNetworkReply* reply);

public slots:
    // Pages
    void on_backBtn_clicked();
    void on_close_clicked();

    // Customer step
    void on_btnContinue_clicked();
    void showPrivacy();
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
    /// Submits a six-digit authenticator code (RFC 6238) for the login under way.
    void onVerifyBtnClicked(const QString& verifyNum);

    void showConnectionSlowWarning();

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    /// Wraps a callback of the login under way: it does nothing once the window is gone or the
    /// user has begun anew.
    template <class Function>
    auto step(Function function)
    {
        return guarded(
            this, [this, attempt = m_attempt, call = std::move(function)](auto&&... arguments) {
                if (attempt == m_attempt)
                    call(std::forward<decltype(arguments)>(arguments)...);
            });
    }

    // Construction, in order (DlgLogin.cpp)
    void buildWindow();
    void restoreCheckBoxes();
    void dropInvalidToken();
    void restoreFields();
    void createTimer();
    void parseAppArguments();
    void startByItself();
    void connectInputs();

    // Pages and fields (DlgLoginPages.cpp)
    void changeCurPage(const LOGIN_PAGE& page);
    void showPage(LOGIN_PAGE page);
    void showCustomerId();
    void clearTokenAndPass();
    void forgetCredentials();
    void _resetAllBtnStyle();
    void restoreContinue();
    void beginAttempt();
    void offerForgetPassword(bool supported);
    void showError(const QString& text);

    // Customer step (DlgLoginCustomer.cpp)
    void getPrivacyVerFromMain();
    void getPrivacyVerFromBackup();
    QString getPrivacyOemVer(const QByteArray& body) const;
    void onPrimaryPrivacyVersion(const QByteArray& body);
    void onBackupPrivacyVersion(const QByteArray& body);
    void keepPrivacyVersion(const QString& version);
    void showPrivacyLater();
    void verifyCustomerId();
    void verifyCustomerIdUsingBackUrl();
    void onCustomerVerified(const QByteArray& body);
    QString parseResultAndSaveUrl(const QByteArray& body);
    void loadErrorResource(const QString& authUrl);
    void _authConfig(const QString& next);
    void invokeNext(const QString& next);
    void signoutNotifyOrch(ipc::DisconnectTypeReason reason);

    // Upgrade check and maintenance notices (DlgLoginNotices.cpp)
    void _handleUpgrade(const QByteArray& body);
    bool offerUpgrade(const UpgradeReply& reply);
    void forceUpgrade();
    void openNoticeLater(const LoginFailure& outcome);
    void _showUpgradeDialog(const QString& text);
    void _queryOrchUpgrade(const std::function<void()>& next);
    void onMaintenanceNotice(const QByteArray& body, const std::function<void()>& next);
    void onMaintenanceQueryFailed(const QByteArray& body, QNetworkReply* reply,
                                  const std::function<void()>& next);
    void _queryOrchUpgradeWhen502();

    // Login request and its outcome (DlgLoginAuth.cpp)
    void obtainPubKey();
    void handleEncryptPassword(const QByteArray& body);
    void verifyUser();
    ipc::LoginParams loginParams();
    void sendLogin(const ipc::LoginParams& params);
    void _requestLoginSuccHandler(const QByteArray& body);
    void _requestLoginFailedHandler(const QByteArray& body, QNetworkReply* reply);
    void readLoginReply(const LoginReply& reply);
    void acceptLogin(const LoginReply& reply);
    void keepRecoverCodes(const LoginReply& reply);
    void userInfoStorage(const QString& token);
    void pollApproval();
    void _requestAuthPollSuccHandler(const QByteArray& body);
    void _requestAuthPollFailedHandler(const QByteArray& body, QNetworkReply* reply);
    void endLoginAttempt(const QString& error);
    void restoreLoginPage();
    void startLoginAgain();

    /// The window's property that is true while the next login request follows an approval.
    static constexpr char kAsynAuth[] = "DlgAsynAuth";

    std::unique_ptr<DlgLoginUi> ui;
    WidgetTopPrompt* promptWidge = nullptr;
    QStack<LOGIN_PAGE> m_pageStack; ///< pages to return to
    LOGIN_PAGE m_curPage = DLG_CUSTOMER_PAGE;
    QString m_CustomerID;          ///< as confirmed by the lookup server
    QString m_PrivacyVersion;      ///< as a lookup server named it last
    bool m_AgreePolicyNow = false; ///< the user agreed in this run
    QTimer* m_ConnectSlowWarningTimer = nullptr;
    OrchErrRes* m_OrchErrRes;
    bool m_EmptyPass = false;         ///< the password field was emptied since the mask filled it
    bool m_loginBreak = false;        ///< Continue was pressed: the chain ends at the login page
    bool m_reLogin = false;           ///< started with "-logout"
    bool m_checkUpgrade = false;      ///< the upgrade check still has to run before the login
    bool m_showUpgradeDialog = false; ///< the upgrade step decided to prompt
    bool m_verifyingCustomer = false; ///< until the public key has been obtained
    bool m_loginInFlight = false;     ///< a login request waits for its answer
    int m_attempt = 0;                ///< counts logins; answers to an earlier one are dropped
    QString m_passwordAtStart;        ///< secret: what the chain that starts by itself may send
    bool m_byHand = false;            ///< the user has pressed Login
    LOGIN_STEP m_Step = PROCESS_AUTH;
    DlgUpgrade* m_DlgUpgrade = nullptr;
    QString m_lastCheckVersion; ///< the version that the first counting check offered
    QString m_releaseNote;      ///< of the version offered last
    QString m_newVersion;
    QString m_upgradeUrl; ///< where its installer lies

    // Login request state
    QString m_encryptedUserName;
    QString m_encryptedPassword;
    QString m_verifyNum;      ///< secret: the authenticator code being submitted
    QString m_otpMiddleToken; ///< secret
    QString m_otpKey;         ///< secret
    QString m_RequestIdForPoll;
    QString m_AuthResultCheckUrl;
    int m_AuthResultCheckInterval = 0; ///< seconds
    int m_AuthResultCheckTimes = 0;    ///< polls left
    bool m_supportAEPSha = false;      ///< the orchestrator accepts OAEP
    QTimer* m_approvalTimer = nullptr; ///< between two approval polls

    QPoint m_dragOffset; ///< the pointer's place in the window while it is dragged
};
