#include "window/login/LoginScene.h"

#include <QAccessible>
#include <QCheckBox>

namespace {

constexpr char kApproval[] = "/api/mobile/v2/auth/result";
constexpr char kSignout[] = "/api/mobile/v2/signout";

} // namespace

/// The login window against the simulated service, from the first start to the saved token.
class LoginWindowTest : public LoginScene
{
    Q_OBJECT

private slots:
    void firstStart()
    {
        ModalGuard refused("DialogPrivacy", [](QDialog* dialog) { dialog->reject(); });
        open();
        QTRY_VERIFY(!window->isVisible());
        QCOMPARE(window->result(), int(QDialog::Rejected));
        QVERIFY(setting(ConfigUtil::AGREE_PRIVACY).isNull());

        ModalGuard privacy("DialogPrivacy");
        open();
        QTRY_COMPARE(setting(ConfigUtil::AGREE_PRIVACY).toInt(), 1);
        QCOMPARE(saved(ConfigUtil::PRIVACY_VERSION), "newest");

        continueWith(scene().customer);
        awaitLoginPage();
        QCOMPARE(saved(ConfigUtil::PRIVACY_VERSION), service().scenario().privacyVersion);
        QCOMPARE(saved(ConfigUtil::CUSTOMERID), "1001");
        QCOMPARE(saved(ConfigUtil::AUTHURL), service().authUrl());

        child<QCheckBox>("autoLoginCheckBox")->click();
        QVERIFY(child<QCheckBox>("remePwCheckBox")->isChecked());
        logInByHand();
        QTRY_VERIFY(accepted());
        QCOMPARE(saved(ConfigUtil::TOKEN), service().sessions().constFirst().token);
        QCOMPARE(saved(ConfigUtil::PASSWORD), "************");
        QCOMPARE(setting(ConfigUtil::AUTO_LOGIN).toInt(), 2);
        QVERIFY(!logged(scene().password));
        QVERIFY(!logged(saved(ConfigUtil::TOKEN)));
    }

    void aNewerAgreementIsAskedForAgain()
    {
        agreed("20200101");
        ModalGuard privacy("DialogPrivacy", [](QDialog* dialog) {
            QVERIFY(!dialog->findChild<QLabel*>("updateLabel")->text().isEmpty());
            dialog->accept();
        });
        open();
        continueWith(scene().customer);
        QTRY_VERIFY(privacy.seen());
        QTRY_VERIFY(button("btnContinue")->isEnabled());
        button("btnContinue")->click();
        awaitLoginPage();
    }

    void aSlowBackupServersAgreementIsAskedFor()
    {
        const QString primary = QLatin1String("primary:") + kPrivacy;
        const QString backup = QLatin1String("backup:") + kPrivacy;
        scene().logIn();
        save(ConfigUtil::AUTO_LOGIN, 0);
        agreed("20200101");
        answer(primary, 500);
        hold(backup);
        ModalGuard privacy("DialogPrivacy", [&](QDialog* dialog) {
            hold(primary);
            dialog->accept();
        });
        open();
        awaitLoginPage();
        button("backBtn_2")->click();
        release(backup); // the answer still counts
        field("password")->setText("*");
        QTRY_VERIFY(privacy.seen());
        QTRY_VERIFY(isSlowTimed());
    }

    void anApprovalIsPolledForAndOutlivesAFailedKey()
    {
        toLoginPage();
        logInWith("carol@acme.example", "Wait-a-bit3");
        QTRY_VERIFY(timer("m_approvalTimer")->isActive());
        QVERIFY(!canLogIn());
        answer(kKey, 404);
        timer("m_approvalTimer")->start(0);
        QTRY_VERIFY(canLogIn());
        service().clearFaults();
        button("btnLogin")->click();
        QTRY_VERIFY(accepted());
        QCOMPARE(asked(kApproval), 2);
        QCOMPARE(asked(kLogin), 2);
    }

    void approvalThatNeverComesTimesOut()
    {
        service().edit([](sim::Scenario& scenario) { scenario.approvalTimes = 1; });
        toLoginPage();
        logInWith("carol@acme.example", "Wait-a-bit3");
        QTRY_VERIFY(prompt().startsWith("6039 "));
        QVERIFY(canLogIn());
        QCOMPARE(asked(kApproval), 1);
    }

    void aSavedAccountLogsInByItself()
    {
        scene().logIn();
        open();
        QTRY_VERIFY(accepted());
        const QJsonObject body = sent(kLogin);
        QVERIFY(body.value("automaticLogin").toBool());
        QVERIFY(!body.contains("password") && !body.contains("encryptPassword"));
    }

    void anAnswerToAnAbandonedLoginIsDropped()
    {
        toLoginPage();
        hold(kLogin);
        logInByHand();
        QTRY_COMPARE(asked(kLogin), 1);
        button("backBtn_2")->click();
        QCOMPARE(page(), DlgLogin::DLG_CUSTOMER_PAGE);
        QVERIFY(!isSlowTimed());
        hold(kLookup);
        continueWith(scene().customer);
        QTRY_COMPARE(asked(kLookup), 2);
        release(kLogin); // the token arrives during the next customer step
        QTRY_COMPARE(underWay(), 1);
        release(kLookup);
        awaitLoginPage();
        QVERIFY(!accepted());
        QCOMPARE(saved(ConfigUtil::TOKEN), "");
    }

    void afterALogoutTheChainSendsNothingHalfTyped()
    {
        restartWith("-logout -byuser");
        hold(kKey);
        openAgain(ConfigUtil::PASSWORD, "");
        QTRY_COMPARE(asked(kKey), 1);
        QTest::keyClicks(field("password"), "Won");
        release(kKey);
        settle();
        QCOMPARE(asked(kLogin), 0);
        QTest::keyClicks(field("password"), scene().password.mid(3));
        button("btnLogin")->click();
        QTRY_VERIFY(accepted());
        QCOMPARE(asked(kLogin), 1);
    }

    void withoutAutoLoginTheChainStopsAtTheLoginPage_data()
    {
        const auto row = columns<bool>("assisted");
        row("typed", false);
        row("by assistive technology", true);
    }

    void withoutAutoLoginTheChainStopsAtTheLoginPage()
    {
        QFETCH(bool, assisted);
        openAgain(ConfigUtil::AUTO_LOGIN, 0);
        awaitLoginPage();
        QTRY_VERIFY(canLogIn());
        QCOMPARE(asked(kLogin), 0);
        // Another username makes the saved credentials worthless, once.
        const auto enter = [&](const char* name) {
            auto* access = QAccessible::queryAccessibleInterface(field(name));
            QCOMPARE(access->childCount(), 0); // the picture is none of its business
            if (assisted)
                access->editableTextInterface()->insertText(0, "x");
            else
                QTest::keyClick(field(name), Qt::Key_X);
        };
        enter("username");
        QCOMPARE(field("password")->text(), "");
        QCOMPARE(saved(ConfigUtil::TOKEN), "");
        enter("password");
        QVERIFY(canLogIn());
    }

    void anotherCustomerForgetsTheAccount()
    {
        openAgain(ConfigUtil::USERNAME, ""); // keeps the chain from starting
        continueWith("2002");
        awaitLoginPage();
        QCOMPARE(saved(ConfigUtil::TOKEN) + saved(ConfigUtil::PASSWORD), "");
    }

    void withoutRememberMeTheTokenIsDropped()
    {
        openAgain(ConfigUtil::REMEMBER_PASSWORD, 0);
        QCOMPARE(saved(ConfigUtil::TOKEN) + field("password")->text(), "");
        awaitLoginPage();
    }

    void aDamagedTokenIsErased()
    {
        openAgain(ConfigUtil::TOKEN, "bad token!");
        QVERIFY(prompt().startsWith("6050 "));
        QCOMPARE(saved(ConfigUtil::USERNAME), "");
        QVERIFY(!logged("bad token!"));
    }

    void restarts_data()
    {
        const auto row =
            columns<QString, int, int, QString>("arguments", "page", "reason", "message");
        row("by the user", "-logout -byuser", DlgLogin::DLG_LOGIN_PAGE, 1, "");
        row("by the service", "-logout", DlgLogin::DLG_LOGIN_PAGE, 2, "");
        row("invalid session", "-logout -invalidToken", DlgLogin::DLG_CUSTOMER_PAGE, 0, "6027 ");
    }

    void restarts()
    {
        const auto [arguments, reason, message] =
            fetched<QString, int, QString>("arguments", "reason", "message");
        restartWith(arguments);
        openAgain(ConfigUtil::USERNAME, ""); // keeps the chain from starting
        QTEST(page(), "page");
        QVERIFY(message.isEmpty() || prompt().startsWith(message));
        if (reason == 0)
            return;
        QTRY_COMPARE(asked(kSignout), 1);
        QCOMPARE(sent(kSignout).value("mobileActionLogType").toInt(), reason);
        QCOMPARE(saved(ConfigUtil::TOKEN), "");

        answer(kLogin, 500);
        logInByHand();
        QTRY_VERIFY(canLogIn());
        service().clearFaults();
        button("btnLogin")->click();
        QTRY_VERIFY(accepted());
        QCOMPARE(asked(kUpgrade), 1); // by the first login alone
    }

    void inputIsChecked()
    {
        agreed();
        open();
        field("username")->setText("left over");
        button("btnContinue")->click();
        QVERIFY(prompt().startsWith("6037 Please enter"));
        QCOMPARE(field("username")->text(), "");
        QCOMPARE(service().requests().size(), 0);

        continueWith(scene().customer);
        awaitLoginPage();
        logInWith(QString(65, 'u'), "p");
        QVERIFY(prompt().startsWith("6016 "));
        QCOMPARE(asked(kKey), 0);
        button("backBtn_2")->click();
        QCOMPARE(page(), DlgLogin::DLG_CUSTOMER_PAGE);
    }

    void aSlowAnswerIsAnnounced()
    {
        const QString primary = QLatin1String("primary:") + kPrivacy;
        hold(primary);
        openAndContinue();
        timer("m_ConnectSlowWarningTimer")->start(0);
        QTRY_COMPARE(prompt(), "Your network may be slow. Still connecting, please wait");
        release(primary);
        awaitLoginPage();
    }

    void aWindowThrownAwayIsNotCalledBack()
    {
        hold(kLookup);
        openAndContinue();
        QTRY_COMPARE(asked(kLookup), 1);
        window.reset();
        release(kLookup); // the answer finds nobody
        toLoginPage();
    }

private:
    static void restartWith(const QString& arguments)
    {
        platform().arguments = [arguments] { return ("veltaro " + arguments).split(' '); };
    }
};

QTEST_MAIN(LoginWindowTest)
#include "LoginWindowTest.moc"
