#include "orch/HostIdentity.h"
#include "window/login/LoginScene.h"

#include <QClipboard>
#include <QGuiApplication>

constexpr char kSend[] = "/api/mobile/v2/verification/send";
constexpr char kStatus[] = "/api/mobile/smsStatus";
constexpr char kResult[] = "/api/mobile/v2/auth/result";
constexpr char kBind[] = "/api/mobile/v2/binddevice";
constexpr char kRefusal[] = R"({"code":88,"message":"Not you"})";

/// A login that wants the code of an SMS, or this device associated with the account.
class SmsTest : public LoginScene
{
    Q_OBJECT

private slots:
    void aWrongCodeThenTheRightOne()
    {
        QString code;
        logInBySms([&](QDialog* dialog) {
            QTRY_COMPARE(prompt(), kSent);
            submit(dialog, "");
            QCOMPARE(prompt(), "Please input verification code");
            submit(dialog, "12");
            QTRY_COMPARE(prompt(), "1003 The verification code is wrong.");
            code = service().sentCode(kSara);
            submit(dialog, code);
        });
        QTRY_VERIFY(accepted());
        QCOMPARE(saved(ConfigUtil::USERNAME) + saved(ConfigUtil::PASSWORD), kSara + "***********");
        QCOMPARE(setting(ConfigUtil::REMEMBER_PASSWORD).toInt(), 0);
        QCOMPARE(logged("dlgphoneauth.cpp: {"), 2);
        const QString middleToken = service().lastRequest(kSend).header("middletoken");
        for (const QString& secret : {kPassword, code, middleToken, saved(ConfigUtil::TOKEN)})
            QVERIFY2(!secret.isEmpty() && !logged(secret), qPrintable(secret));
    }

    void aCodeMayBeSentAgainAfterAMinute()
    {
        logInBySms([this](QDialog* dialog) {
            auto* send = part<QPushButton>(dialog, "btnSend");
            for (const char* shown : {"59s", "0s", "Send"}) {
                while (send->text() != shown && !send->isEnabled())
                    fireTimer(dialog, "m_SendBtnTimer");
                QCOMPARE(send->text(), shown);
            }
            answer(kSend, kRefusal);
            send->click();
            QTRY_COMPARE(prompt(), "88 Not you");
            QVERIFY(send->isEnabled());
            QTest::keyClick(dialog, Qt::Key_Escape);
        });
        QTRY_VERIFY(canLogIn());
    }

    void aCodeOnItsWayIsAskedForFiveTimes()
    {
        answer(kStatus, R"({"code":427})");
        logInBySms([this](QDialog* dialog) {
            for (int query = 1; query < 5; ++query) {
                QTRY_VERIFY(part<QTimer>(dialog, "m_queryTimer")->isActive());
                QCOMPARE(prompt(), "");
                fireTimer(dialog, "m_queryTimer");
            }
            QTRY_COMPARE(prompt().left(5), "6045 ");
            QCOMPARE(asked(kStatus), 5);
            hold(kStatus);
            part<QPushButton>(dialog, "btnSend")->click();
            QTRY_COMPARE(asked(kStatus), 6);
            window.reset(); // and the dialog with it
        });
        release(kStatus);
    }

    void anApprovalIsPolledForBehindTheCode()
    {
        change([](sim::Account& account) { account.approvalPolls = 2; });
        answer(kResult, Fault::withStatus(500, kRefusal));
        logInBySms([this](QDialog* dialog) {
            QTRY_COMPARE(prompt(), kSent);
            submitSent(dialog);
            QTRY_COMPARE(prompt(), "88 Not you");
            release(kResult);
            submitSent(dialog);
            QTRY_VERIFY(part<QTimer>(dialog, "m_approvalTimer")->isActive());
            QTest::keyClicks(part<QLineEdit>(dialog, "lineEditCode"), "9\r");
            fireTimer(dialog, "m_approvalTimer");
        });
        QTRY_VERIFY(accepted());
        QCOMPARE(asked(kLogin), 4);
    }

    void aChangeOfThePasswordMayFollow()
    {
        change([](sim::Account& account) { account.mustChangePassword = true; });
        change([](sim::Account& account) { account.changeReasonEn = "Too old."; });
        logInBySms([this](QDialog* dialog) { submitSent(dialog); });
        QTRY_COMPARE(page(), DlgLogin::DLG_FORCERESETPASSWORD_PAGE);
        QCOMPARE(label("m_ContextLabel")->text(), "Too old.");
        QCOMPARE(field("password")->text(), "");
    }

    void theDeviceMayHaveToBeAssociated_data()
    {
        const auto row = columns<int, QString>("status", "message");
        row("taken", 0, "");
        row("refused", 400, "88 Not you");
    }

    void theDeviceMayHaveToBeAssociated()
    {
        const int status = cell<int>("status");
        using Rule = sim::Account::DeviceRule;
        change([](sim::Account& account) { account.deviceRule = Rule::AskWithToken; });
        if (status != 0)
            answer(kBind, Fault::withStatus(status, kRefusal));
        ModalGuard asks("DlgDeviceBind", [this](QDialog* dialog) {
            QCOMPARE(part<QLabel>(dialog, "labelUser")->accessibleName(), "Username: " + kSara);
            part<QPushButton>(dialog, "btnYes")->click();
        });
        const auto told = status == 0 ? std::make_unique<ModalGuard>("DlgBindResult") : nullptr;
        logInBySms([this](QDialog* dialog) {
            QTRY_COMPARE(prompt(), kSent);
            submitSent(dialog);
        });
        QTRY_VERIFY(canLogIn());
        QTEST(prompt(), "message");
        QVERIFY(!logged(service().lastRequest(kBind).header("x-tq-auth-device-bind")));
    }

    void withoutAWayToAskTheUserTellsTheAdministrator()
    {
        toLoginPage();
        ModalGuard tells("DlgDeviceBind", [](QDialog* dialog) { QTest::keyClicks(dialog, "\r"); });
        logInWith("dora@acme.example", "Device-copy-88");
        QTRY_VERIFY(tells.seen() && canLogIn());
        QCOMPARE(QGuiApplication::clipboard()->text(), "dora@acme.example\n" + Util::getDeviceId());
    }

    void aRefusedLoginTakesTheDialogAlong()
    {
        logInBySms([this](QDialog* dialog) {
            QTRY_COMPARE(prompt(), kSent);
            save(ConfigUtil::TOKEN, service().issueToken(kSara, Util::getSerial()));
            answer(kLogin, Fault::withStatus(401, R"({"code":401,"message":"gone"})"));
            submitSent(dialog);
        });
        QCOMPARE(field("password")->text() + saved(ConfigUtil::TOKEN), "");
    }

    void anAgreementDeclinedOverTheDialogEndsIt()
    {
        const QString backup = QString("backup:") + kPrivacy;
        answer(QString("primary:") + kPrivacy, 500);
        hold(backup);
        logInBySms([&](QDialog*) {
            service().edit([](sim::Scenario& now) { now.privacyVersion = "20991231"; });
            ModalGuard privacy("DialogPrivacy", [](QDialog* dialog) { dialog->reject(); });
            release(backup);
            QTRY_VERIFY(privacy.seen());
        });
        QTRY_VERIFY(!window->isVisible());
        QVERIFY(!accepted());
    }

    void whatComesAfterTheDialogTouchesNothing()
    {
        hold(kStatus);
        logInBySms([this](QDialog* dialog) {
            hold(kLogin);
            submitSent(dialog);
            QTRY_COMPARE(asked(kLogin), 2);
            part<QPushButton>(dialog, "btnClose")->click();
        });
        release(kStatus);
        release(kLogin);
        settle();
        QVERIFY(canLogIn());
        QCOMPARE(saved(ConfigUtil::TOKEN) + prompt(), "");
    }

private:
    const QString kSara = "sara@acme.example";
    const QString kPassword = "Sms-code-44";
    const QString kSent = "SMS sent successfully";

    void change(const std::function<void(sim::Account&)>& how) const
    {
        service().edit([&](sim::Scenario& scenario) {
            for (sim::Account& account : scenario.accounts)
                how(account);
        });
    }

    void logInBySms(const std::function<void(QDialog*)>& act)
    {
        toLoginPage();
        ModalGuard asks("DlgPhoneAuth", act);
        logInWith(kSara, kPassword);
        QTRY_VERIFY(asks.seen());
    }

    static void submit(QDialog* dialog, const QString& code)
    {
        auto* field = part<QLineEdit>(dialog, "lineEditCode");
        QTRY_VERIFY(!field->isReadOnly());
        field->clear();
        QTest::keyClicks(field, code + '\r');
    }

    void submitSent(QDialog* dialog) const
    {
        QTRY_VERIFY(!service().sentCode(kSara).isEmpty());
        submit(dialog, service().sentCode(kSara));
    }
};

QTEST_MAIN(SmsTest)
#include "SmsTest.moc"
