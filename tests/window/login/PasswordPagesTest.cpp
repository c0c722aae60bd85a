#include "window/login/LoginScene.h"

constexpr char kMode[] = "/api/mobile/v2/forgotpassword/mode";
constexpr char kRules[] = "/api/mobile/v2/Cryptographic/rule";
constexpr char kSend[] = "/api/mobile/v2/verification/send";
constexpr char kStatus[] = "/api/mobile/smsStatus";
constexpr char kReset[] = "/api/mobile/v2/forgotpassword";

const QString kNew = "Fresh-start-9";

Q_DECLARE_METATYPE(Fault)

/// The pages on which a password is reset or changed, against the simulated service.
class PasswordPagesTest : public LoginScene
{
    Q_OBJECT

private slots:
    void aForgottenPasswordIsResetEitherWay()
    {
        toResetPage();
        on("m_sendBtn")->click();
        QTRY_COMPARE(on("m_sendBtn")->text(), "Send Code(60s)");
        on("m_switchResetBtn")->click();
        fire("m_phoneVerifyTimer");
        QCOMPARE(on("m_sendBtn")->text(), "Send Code");
        hold(kSend);
        on("m_sendBtn")->click();
        on("m_switchResetBtn")->click();
        release(kSend); // the mailbox's, while the phone is chosen
        QTRY_VERIFY(timer("m_emailVerifyTimer")->isActive());
        for (int left = 59; left >= 0; --left) {
            QCOMPARE(on("m_sendBtn")->text(), QString("Send Code(%1s)").arg(left));
            fire("m_phoneVerifyTimer");
        }
        on("m_switchResetBtn")->click();
        const QString code = service().sentCode(scene().username);
        fill(code);
        ModalGuard told("CommonTipsDialog");
        QTest::keyClick(entry("m_authCodeEdit"), Qt::Key_Return);
        logInAnew();
        QCOMPARE(sent(kReset).value("verifiCodeType").toString(), "mailbox");
        QVERIFY(!logged(code));
    }

    void refusals_data()
    {
        // Without a message there is a dialog. The page is the one that is left to the user.
        const auto row = columns<QString, QByteArray, Fault, int, QString, int>(
            "path", "button", "fault", "queries", "message", "page");
        row("outdated", kMode, "m_submit", Fault::withStatus(404), 0, "6034 ", 4);
        row("bad gateway", kMode, "m_submit", Fault::withStatus(502), 0, "6046 ", 4);
        row("unusable", kMode, "m_submit", Fault::withBody("<html>"), 0, "6033 ", 4);
        row("no rules", kRules, "m_submit", Fault::withStatus(404), 0, "6034 ", 4);
        row("account changed", kKey, "m_sendBtn", refused(1043), 0, "1043 m", 4);
        row("too late", kReset, "m_confirmBtn", refused(1060), 0, "1060 m", 4);
        row("blocked", kStatus, "m_sendBtn", refused(423), 1, "6024 ", 5);
        row("pending", kStatus, "m_sendBtn", refused(427), 5, "6045 ", 5);
        row("too many sent", kStatus, "m_sendBtn", refused(422), 1, "", 5);
        row("too many asked for", kSend, "m_sendBtn", refused(1021), 0, "", 5);
    }

    void refusals()
    {
        const auto [button, queries, message] =
            fetched<QByteArray, int, QString>("button", "queries", "message");
        std::unique_ptr<ModalGuard> dialog(message.isEmpty() ? new ModalGuard("CommonTipsDialog")
                                                             : nullptr);
        button == "m_submit" ? toIdentifyPage() : toResetPage("123456");
        answer(cell<QString>("path"), cell<Fault>("fault"));
        on(button)->click();
        if (queries > 1) {
            QTRY_VERIFY(timer("m_phoneQueryTimer")->isActive());
            timer("m_phoneQueryTimer")->start(0); // from now on it waits no more
        }
        QTRY_VERIFY(dialog ? dialog->seen() : prompt().startsWith(message));
        QCOMPARE(asked(kStatus), queries);
        QTEST(page(), "page");
        QVERIFY(page() == 5 || field("m_passwordEdit")->text().isEmpty());
    }

    void aBrokenRuleIsExplained()
    {
        answer(kRules, json("{'firstPwdRule':[{'pwdRegularStr':'('},"
                            "{'pwdRegularStr':'.{8,}','clientName':'8 or more'}]}"));
        toResetPage();
        auto* tips = part<QWidget>(shown(), "m_expTipsWidget");
        entry("m_passwordEdit")->setFocus();
        QTest::keyClicks(entry("m_passwordEdit"), "abc");
        QVERIFY(tips->isVisible());
        QCOMPARE(entry("m_passwordEdit")->accessibleDescription(), "8 or more");
        fill("12a456");
        QVERIFY(!tips->isVisible());
        QVERIFY(!on("m_confirmBtn")->isEnabled()); // the repetition lacks the first letters
        QCOMPARE(logged("rule of the service cannot be applied"), 1);
        entry("m_passwordRepeatEdit")->setText("abc" + kNew);
        on("m_confirmBtn")->click();
        QCOMPARE(prompt(), "Incorrect authentication code.");
    }

    void leavingErasesWhatWasTypedAndDropsTheAnswer()
    {
        toResetPage("123456");
        hold(kReset);
        on("m_confirmBtn")->click();
        QTRY_COMPARE(asked(kReset), 1);
        QTest::keyClick(entry("m_passwordEdit"), Qt::Key_Escape);
        QCOMPARE(field("m_passwordEdit")->text() + field("m_authCodeEdit")->text(), "");
        answer(kReset, refused(1043)); // would lead back another page
        settle();
        QCOMPARE(page(), DlgLogin::DLG_FORGETPASSWORD_PAGE);
    }

    void aPasswordMustBeChanged_data()
    {
        const auto row = columns<QString>("reason");
        row("English", "Your password was set by the administrator.");
        row("Chinese", "您的密码由管理员设置。");
    }

    void aPasswordMustBeChanged()
    {
        platform().isChinese = [english = cell<QString>("reason")[0] == 'Y'] { return !english; };
        scene().username = "fred@acme.example";
        toLoginPage();
        logInWith(scene().username, "First-pass-1");
        QTRY_COMPARE(page(), DlgLogin::DLG_FORCERESETPASSWORD_PAGE);
        QTEST(label("m_ContextLabel")->text(), "reason");
        const auto change = [this](const QString& old) {
            entry("m_oldPasswordEdit")->clear();
            entry("m_newPasswordEdit")->setText(kNew);
            entry("m_repeatPasswordEdit")->setText(kNew);
            QTest::keyClicks(entry("m_oldPasswordEdit"), old);
            QTest::keyClick(entry("m_oldPasswordEdit"), Qt::Key_Return);
        };
        change("Wrong-pass-1");
        QTRY_VERIFY(!prompt().isEmpty());
        answer("/api/mobile/v2/resetpassword", R"({"code":0,"success":false})");
        change("First-pass-1");
        settle();
        QVERIFY(!on("m_confirmBtn")->isEnabled());
        service().clearFaults();
        ModalGuard told("CommonTipsDialog");
        change("First-pass-1");
        logInAnew();
    }

private:
    static Fault refused(int code)
    {
        return Fault::withBody(json("{'code':" + QByteArray::number(code) +
                                    ",'message':'m','parameters':{'message_cn':'m'}}"));
    }

    // On the page that is shown
    QWidget* shown() const { return child<QStackedWidget>("stackedWidget")->currentWidget(); }
    QPushButton* on(const char* name) const { return part<QPushButton>(shown(), name); }
    QLineEdit* entry(const char* name) const { return part<QLineEdit>(shown(), name); }

    void toIdentifyPage()
    {
        toLoginPage();
        button("btnForgetPasswd")->click();
        QTest::keyClicks(entry("m_usernameEdit"), scene().username);
    }
    void toResetPage(const QString& code = {})
    {
        toIdentifyPage();
        QTest::keyClick(entry("m_usernameEdit"), Qt::Key_Return);
        QTRY_COMPARE(page(), DlgLogin::DLG_RESETPASSWORD_PAGE);
        settle();
        if (!code.isEmpty())
            fill(code);
    }
    void fill(const QString& code)
    {
        QTest::keyClicks(entry("m_authCodeEdit"), code);
        for (const char* name : {"m_passwordEdit", "m_passwordRepeatEdit"})
            QTest::keyClicks(entry(name), kNew);
    }
    /// With the new password; nothing is left of the old one.
    void logInAnew()
    {
        awaitLoginPage();
        QCOMPARE(saved(ConfigUtil::TOKEN) + saved(ConfigUtil::PASSWORD), "");
        logInWith(scene().username, kNew);
        QTRY_VERIFY(accepted());
        QVERIFY(!logged(kNew));
    }
};

QTEST_MAIN(PasswordPagesTest)
#include "PasswordPagesTest.moc"
