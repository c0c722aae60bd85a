#include "window/login/LoginScene.h"

#include <QCheckBox>
#include <QLabel>

using sim::Fault;

/// The login window against the simulated service, from the first start to the saved token.
class LoginWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<LoginScene>(); }

    void cleanup()
    {
        m_scene->window.reset();
        const QStringList violations = m_scene->service.violations();
        m_scene.reset();
        QCOMPARE(violations.join(QLatin1Char('\n')), QString());
    }

    void firstStart()
    {
        ModalGuard privacy("DialogPrivacy", [](QDialog* dialog) { dialog->accept(); });
        m_scene->open();
        QTRY_VERIFY(privacy.seen());
        QTRY_COMPARE(setting(ConfigUtil::AGREE_PRIVACY).toInt(), 1);
        QCOMPARE(setting(ConfigUtil::PRIVACY_VERSION).toString(), QStringLiteral("newest"));

        m_scene->continueWith(m_scene->customer);
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
        QCOMPARE(setting(ConfigUtil::PRIVACY_VERSION).toString(),
                 m_scene->service.scenario().privacyVersion);
        QCOMPARE(setting(ConfigUtil::CUSTOMERID).toString(), QStringLiteral("1001"));
        QCOMPARE(setting(ConfigUtil::AUTHURL).toString(), m_scene->service.authUrl());

        part<QCheckBox>(m_scene->window.get(), "autoLoginCheckBox")->click();
        QVERIFY(part<QCheckBox>(m_scene->window.get(), "remePwCheckBox")->isChecked());
        m_scene->logInByHand();
        QTRY_COMPARE(m_scene->accepted(), true);
        QCOMPARE(setting(ConfigUtil::TOKEN).toString(),
                 m_scene->service.sessions().constFirst().token);
        QCOMPARE(setting(ConfigUtil::PASSWORD).toString(), QStringLiteral("************"));
        QCOMPARE(setting(ConfigUtil::AUTO_LOGIN).toInt(), 2);
        QVERIFY(!m_scene->log().contains(m_scene->password));
        QVERIFY(!m_scene->log().contains(setting(ConfigUtil::TOKEN).toString()));
    }

    void declinedPrivacyEndsTheWindow()
    {
        ModalGuard privacy("DialogPrivacy", [](QDialog* dialog) { dialog->reject(); });
        m_scene->open();
        QTRY_VERIFY(!m_scene->window->isVisible());
        QCOMPARE(m_scene->window->result(), int(QDialog::Rejected));
        QVERIFY(setting(ConfigUtil::AGREE_PRIVACY).isNull());
    }

    void aNewerAgreementIsAskedForAgain()
    {
        m_scene->agreed(QStringLiteral("20200101"));
        ModalGuard privacy("DialogPrivacy", [](QDialog* dialog) {
            QVERIFY(!dialog->findChild<QLabel*>("updateLabel")->text().isEmpty());
            dialog->accept();
        });
        m_scene->open();
        m_scene->continueWith(m_scene->customer);
        QTRY_VERIFY(privacy.seen());
        QTRY_VERIFY(m_scene->button("btnContinue")->isEnabled());
        m_scene->button("btnContinue")->click();
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
    }

    void paddings_data()
    {
        QTest::addColumn<QVector<int>>("types");
        QTest::newRow("OAEP") << QVector<int>{0, 1};
        QTest::newRow("PKCS#1 v1.5") << QVector<int>{0};
    }

    void paddings()
    {
        QFETCH(QVector<int>, types);
        m_scene->service.edit([&](sim::Scenario& scenario) { scenario.rsaTypes = types; });
        m_scene->toLoginPage();
        m_scene->logInByHand();
        QTRY_COMPARE(m_scene->accepted(), true);
        const QJsonObject body = m_scene->service.lastRequest("/api/mobile/v2/auth").json();
        QCOMPARE(body.value("rsaType").toInt(), types.contains(1) ? 1 : 0);
        QVERIFY(!body.contains("password") && !body.contains("accountName"));
    }

    void anAccountWithoutKeyLogsInPlainly()
    {
        m_scene->customer = QStringLiteral("2002");
        m_scene->toLoginPage();
        m_scene->logInWith(QStringLiteral("bob"), QStringLiteral("Plain-text2"));
        QTRY_COMPARE(m_scene->accepted(), true);
        QVERIFY(!m_scene->log().contains(QStringLiteral("Plain-text2")));
    }

    void approvalIsPolledFor()
    {
        m_scene->toLoginPage();
        m_scene->logInWith(QStringLiteral("carol@acme.example"), QStringLiteral("Wait-a-bit3"));
        QTRY_VERIFY(m_scene->timer("m_approvalTimer")->isActive());
        QVERIFY(!m_scene->button("btnLogin")->isEnabled());
        m_scene->timer("m_approvalTimer")->start(0);
        QTRY_COMPARE(m_scene->accepted(), true);
        QCOMPARE(m_scene->service.count("/api/mobile/v2/auth/result"), 2);
        QCOMPARE(m_scene->service.count("/api/mobile/v2/auth"), 2);
    }

    void approvalThatNeverComesTimesOut()
    {
        m_scene->service.edit([](sim::Scenario& scenario) { scenario.approvalTimes = 1; });
        m_scene->toLoginPage();
        m_scene->logInWith(QStringLiteral("carol@acme.example"), QStringLiteral("Wait-a-bit3"));
        QTRY_VERIFY(m_scene->prompt().startsWith(QStringLiteral("6039 ")));
        QVERIFY(m_scene->button("btnLogin")->isEnabled());
        QCOMPARE(m_scene->service.count("/api/mobile/v2/auth/result"), 1);
    }

    void aSavedAccountLogsInByItself()
    {
        m_scene->logIn();
        m_scene->open();
        QTRY_COMPARE(m_scene->accepted(), true);
        const QJsonObject body = m_scene->service.lastRequest("/api/mobile/v2/auth").json();
        QVERIFY(body.value("automaticLogin").toBool());
        QVERIFY(!body.contains("password") && !body.contains("encryptPassword"));
    }

    void anAnswerToAnAbandonedLoginIsDropped()
    {
        m_scene->toLoginPage();
        m_scene->service.setFault(QStringLiteral("/s/mobile/pubkey/obtain"), Fault::withDelay(200));
        m_scene->logInByHand();
        QTRY_COMPARE(m_scene->service.count("/s/mobile/pubkey/obtain"), 1);
        m_scene->button("backBtn_2")->click();
        QCOMPARE(m_scene->page(), int(DlgLogin::DLG_CUSTOMER_PAGE));
        m_scene->service.clearFaults();
        QTest::qWait(400); // the key arrives and leads nowhere
        QCOMPARE(m_scene->service.count("/api/mobile/v2/auth"), 0);
        QCOMPARE(m_scene->page(), int(DlgLogin::DLG_CUSTOMER_PAGE));
        QVERIFY(!m_scene->timer("m_ConnectSlowWarningTimer")->isActive());
    }

    void afterALogoutTheChainSendsNothingHalfTyped()
    {
        m_scene->logIn();
        ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString());
        platform().arguments = [] { return QStringList{"veltaro", "-logout", "-byuser"}; };
        m_scene->service.setFault(QStringLiteral("/s/mobile/pubkey/obtain"), Fault::withDelay(200));
        m_scene->open();
        QTRY_COMPARE(m_scene->service.count("/s/mobile/pubkey/obtain"), 1);
        QTest::keyClicks(m_scene->field("password"), QStringLiteral("Won"));
        QTest::qWait(400);
        QCOMPARE(m_scene->service.count("/api/mobile/v2/auth"), 0);
        m_scene->service.clearFaults();
        QTest::keyClicks(m_scene->field("password"), m_scene->password.mid(3));
        m_scene->button("btnLogin")->click();
        QTRY_VERIFY(m_scene->accepted());
        QCOMPARE(m_scene->service.count("/api/mobile/v2/auth"), 1);
    }

    void withoutAutoLoginTheChainStopsAtTheLoginPage()
    {
        m_scene->logIn();
        ConfigUtil::writeValue(ConfigUtil::AUTO_LOGIN, 0);
        m_scene->open();
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
        QTRY_VERIFY(m_scene->button("btnLogin")->isEnabled());
        QCOMPARE(m_scene->service.count("/api/mobile/v2/auth"), 0);
        // Another username makes the saved credentials worthless, once.
        QTest::keyClick(m_scene->field("username"), Qt::Key_X);
        QCOMPARE(m_scene->field("password")->text(), QString());
        QCOMPARE(setting(ConfigUtil::TOKEN).toString(), QString());
    }

    void anotherCustomerForgetsTheAccount()
    {
        m_scene->logIn();
        ConfigUtil::writeValue(ConfigUtil::USERNAME, QString()); // keeps the chain from starting
        m_scene->open();
        m_scene->continueWith(QStringLiteral("2002"));
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
        QCOMPARE(setting(ConfigUtil::TOKEN).toString(), QString());
        QCOMPARE(setting(ConfigUtil::PASSWORD).toString(), QString());
    }

    void withoutRememberMeTheTokenIsDropped()
    {
        m_scene->logIn();
        ConfigUtil::writeValue(ConfigUtil::REMEMBER_PASSWORD, 0);
        ConfigUtil::writeValue(ConfigUtil::AUTO_LOGIN, 0);
        m_scene->open();
        QCOMPARE(setting(ConfigUtil::TOKEN).toString(), QString());
        QCOMPARE(m_scene->field("password")->text(), QString());
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
    }

    void aDamagedTokenIsErased()
    {
        m_scene->logIn();
        ConfigUtil::writeValue(ConfigUtil::TOKEN, QStringLiteral("bad token!"));
        m_scene->open();
        QVERIFY(m_scene->prompt().startsWith(QStringLiteral("6050 ")));
        QCOMPARE(setting(ConfigUtil::USERNAME).toString(), QString());
        QVERIFY(!m_scene->log().contains(QStringLiteral("bad token!")));
    }

    void restarts_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<int>("page");
        QTest::addColumn<int>("signoutReason");
        QTest::addColumn<QString>("message");
        QTest::newRow("by the user")
            << "-logout -byuser" << int(DlgLogin::DLG_LOGIN_PAGE) << 1 << "";
        QTest::newRow("by the service") << "-logout" << int(DlgLogin::DLG_LOGIN_PAGE) << 2 << "";
        QTest::newRow("invalid session")
            << "-logout -invalidToken" << int(DlgLogin::DLG_CUSTOMER_PAGE) << 0 << "6027 ";
    }

    void restarts()
    {
        QFETCH(QString, arguments);
        QFETCH(int, signoutReason);
        QFETCH(QString, message);
        m_scene->logIn();
        ConfigUtil::writeValue(ConfigUtil::USERNAME, QString()); // keeps the chain from starting
        platform().arguments = [arguments] { return arguments.split(QLatin1Char(' ')); };
        m_scene->open();
        QTEST(m_scene->page(), "page");
        QVERIFY(message.isEmpty() || m_scene->prompt().startsWith(message));
        if (signoutReason == 0)
            return;
        QTRY_COMPARE(m_scene->service.count("/api/mobile/v2/signout"), 1);
        QCOMPARE(m_scene->service.lastRequest("/api/mobile/v2/signout")
                     .json()
                     .value("mobileActionLogType")
                     .toInt(),
                 signoutReason);
        QCOMPARE(setting(ConfigUtil::TOKEN).toString(), QString());
    }

    void failures_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("message");
        QTest::newRow("login 500") << "/api/mobile/v2/auth" << 500 << "Error transferring ";
        QTest::newRow("key 404") << "/s/mobile/pubkey/obtain" << 404 << "";
        QTest::newRow("notice query 500")
            << "/api/mobile/v2/upgradeNotice" << 500 << "Error transferring ";
    }

    void failures()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        QFETCH(QString, message);
        m_scene->toLoginPage();
        m_scene->service.setFault(path, Fault::withStatus(status));
        m_scene->logInByHand();
        QTRY_VERIFY(m_scene->window->findChild<WidgetTopPrompt*>()->isVisible());
        QVERIFY2(m_scene->prompt().startsWith(message), qPrintable(m_scene->prompt()));
        QTRY_VERIFY(m_scene->button("btnLogin")->isEnabled());
        QCOMPARE(setting(ConfigUtil::CUSTOMERID).toString(), QStringLiteral("1001"));
        QVERIFY(!m_scene->timer("m_ConnectSlowWarningTimer")->isActive());
    }

    void lookupFailures_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<int>("status");
        QTest::newRow("refused") << QByteArray(R"({"code":1007,"message":"unknown"})") << 200;
        QTest::newRow("server error") << QByteArray() << 503;
    }

    void lookupFailures()
    {
        QFETCH(QByteArray, body);
        QFETCH(int, status);
        m_scene->agreed();
        Fault fault = Fault::withBody(body);
        fault.status = status;
        m_scene->service.setFault(QStringLiteral("/api/mobile/v1/orchinfo"), fault);
        m_scene->open();
        m_scene->continueWith(m_scene->customer);
        QTRY_VERIFY(!m_scene->prompt().isEmpty());
        QCOMPARE(m_scene->service.count("/api/mobile/v1/orchinfo"), 2);
        QVERIFY(m_scene->button("btnContinue")->isEnabled());
        QCOMPARE(m_scene->button("btnContinue")->text(), QStringLiteral("Continue"));
        QCOMPARE(m_scene->page(), int(DlgLogin::DLG_CUSTOMER_PAGE));
    }

    void inputIsChecked()
    {
        m_scene->agreed();
        m_scene->open();
        m_scene->field("username")->setText(QStringLiteral("left over"));
        m_scene->button("btnContinue")->click();
        QVERIFY(m_scene->prompt().startsWith(QStringLiteral("6037 Please enter")));
        QCOMPARE(m_scene->field("username")->text(), QString());
        QCOMPARE(m_scene->service.requests().size(), 0);

        m_scene->continueWith(m_scene->customer);
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
        m_scene->logInWith(QString(65, QLatin1Char('u')), QStringLiteral("p"));
        QVERIFY(m_scene->prompt().startsWith(QStringLiteral("6016 ")));
        QCOMPARE(m_scene->service.count("/s/mobile/pubkey/obtain"), 0);
        m_scene->button("backBtn_2")->click();
        QCOMPARE(m_scene->page(), int(DlgLogin::DLG_CUSTOMER_PAGE));
    }

    void aSlowAnswerIsAnnounced()
    {
        m_scene->agreed();
        m_scene->service.setFault(QStringLiteral("primary:/static/version/privacyversion.json"),
                                  Fault::withDelay(300));
        m_scene->open();
        m_scene->continueWith(m_scene->customer);
        m_scene->timer("m_ConnectSlowWarningTimer")->start(0);
        QTRY_COMPARE(m_scene->prompt(),
                     QStringLiteral("Your network may be slow. Still connecting, please wait"));
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
    }

    void aWindowThrownAwayIsNotCalledBack()
    {
        m_scene->agreed();
        m_scene->service.setFault(QStringLiteral("/api/mobile/v1/orchinfo"), Fault::withDelay(100));
        m_scene->open();
        m_scene->continueWith(m_scene->customer);
        QTRY_COMPARE(m_scene->service.count("/api/mobile/v1/orchinfo"), 1);
        m_scene->window.reset();
        QTest::qWait(300); // the answer arrives and finds nobody
    }

private:
    static QVariant setting(const QString& key) { return WindowScene::setting(key); }

    std::unique_ptr<LoginScene> m_scene;
};

QTEST_MAIN(LoginWindowTest)
#include "LoginWindowTest.moc"
