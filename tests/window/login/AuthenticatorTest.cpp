#include "window/login/LoginScene.h"

#include <QApplication>
#include <QClipboard>

/// The authenticator's step of a login: binding one, its code, and a lost one.
class AuthenticatorTest : public LoginScene
{
    Q_OBJECT

private slots:
    void oneIsBound()
    {
        toLoginPage();
        logInWith("otto@acme.example", "Otp-bind-55");
        QTRY_COMPARE(page(), DlgLogin::DLG_OTP_AUTH_PAGE);
        QVERIFY(!label("qrLabel")->pixmap(Qt::ReturnByValue).isNull());
        QCOMPARE(copiedBy("copyUsernameBtn"), "otto@acme.example");
        const QString key = copiedBy("copyKeyBtn");
        ModalGuard instructions("OtpInstructionDlg");
        button("instructionBtn")->click();
        button("nextBtn")->click();
        QVERIFY(!button("m_lostPhoneBtn")->isVisible());
        enter(service().totp("otto@acme.example"));
        QTRY_VERIFY(accepted());
        const QStringList codes = setting(ConfigUtil::OTP_RECOVER_CODE).toStringList();
        QVERIFY(!codes.isEmpty() && !logged(codes[0]) && !logged(key));
    }

    void aRefusedCodeIsEnteredAnew()
    {
        toCodePage();
        enter("12345");
        QCOMPARE(prompt(), "");
        button("m_verifyBtn")->click();
        QVERIFY(prompt().startsWith("6031 "));
        QCOMPARE(label("m_numLabels4")->accessibleName(), "Digit 5 of 6");
        QCOMPARE(label("m_numLabels4")->accessibleDescription(), "5");
        const QString code = service().totp(olga);
        QTest::mouseClick(label("m_numLabels0"), Qt::LeftButton);
        enter(code.left(5) + (code.endsWith('0') ? '1' : '0'));
        QVERIFY(!button("m_verifyBtn")->isEnabled() && !button("m_lostPhoneBtn")->isEnabled());
        QTRY_VERIFY(button("m_verifyBtn")->isEnabled());
        QVERIFY(!prompt().isEmpty());
        answer(kLogin, json("{'otpMiddleToken':'o','otpLogin':true}")); // and once more
        enter(code);
        QTRY_COMPARE(asked(kLogin), 3);
        QTRY_VERIFY(button("m_verifyBtn")->isEnabled());
        release(kLogin);
        QApplication::clipboard()->setText(code.left(3) + ' ' + code.mid(3));
        QTest::keySequence(cells(), QKeySequence::Paste);
        enter("");
        QTRY_VERIFY(accepted());
        QVERIFY(setting(ConfigUtil::OTPLOGIN).toBool() && !logged(code));
    }

    void aLostOneIsReplaced()
    {
        toCodePage();
        ModalGuard lost("OtpResetOtpTipDlg", [](QDialog* dialog) {
            auto* code = part<QLineEdit>(dialog, "m_recoveryLineEdit");
            code->setText("too short");
            part<QPushButton>(dialog, "btnReset")->click();
            QTRY_VERIFY(part<WidgetTopPrompt>(dialog, "promptWidge")->isVisible());
            code->setText("ABCD1234EFGH5678");
            QTest::keyClick(code, Qt::Key_Return);
        });
        button("m_lostPhoneBtn")->click();
        QCOMPARE(page(), DlgLogin::DLG_OTP_AUTH_PAGE);
        QVERIFY(copiedBy("copyKeyBtn") != "JBSWY3DPEHPK3PXP");
        button("nextBtn")->click();
        enter(service().totp(olga));
        QTRY_VERIFY(accepted());
        QVERIFY(!logged("too short") && !logged("ABCD1234EFGH5678"));
    }

    void nothingIsKeptOnBack()
    {
        toCodePage();
        hold(kLogin);
        enter(service().totp(olga));
        QTRY_COMPARE(asked(kLogin), 2);
        QTest::keyClick(cells(), Qt::Key_Escape);
        release(kLogin);
        settle();
        QVERIFY(!accepted() && qApp->property("otpMiddleToken").isNull());
        QCOMPARE(saved(ConfigUtil::TOKEN) + field("password")->text(), "");
        logInWith(olga, "Otp-code-66");
        QTRY_COMPARE(page(), DlgLogin::DLG_OTP_VERIFY_PAGE);
        QVERIFY(!sent(kLogin).contains("supportOtpCode"));
    }

private:
    const QString olga = "olga@acme.example";

    void toCodePage()
    {
        toLoginPage();
        logInWith(olga, "Otp-code-66");
        QTRY_COMPARE(page(), DlgLogin::DLG_OTP_VERIFY_PAGE);
    }

    QWidget* cells() const { return child<QWidget>("m_verifyNumber"); }
    void enter(const QString& code) const { QTest::keyClicks(cells(), code + '\r'); }

    QString copiedBy(const char* name) const
    {
        button(name)->click();
        return QApplication::clipboard()->text();
    }
};

QTEST_MAIN(AuthenticatorTest)
#include "AuthenticatorTest.moc"
