#include "window/login/LoginScene.h"

#include <QJsonDocument>
#include <QTextEdit>

/// What holds a login up: maintenance, newer and outdated clients, refusals.
class LoginNoticesTest : public LoginScene
{
    Q_OBJECT

private slots:
    void anAnnouncedMaintenanceStopsALoginOnce()
    {
        toLoginPage();
        announce("m1", "wait", 60);
        ModalGuard notice("OrchUpgradeDialog", [](QDialog* dialog) {
            const QString text = part<QTextEdit>(dialog, "m_contentEdit")->toPlainText();
            QVERIFY(text.startsWith("Dear customer, we will be"));
            dialog->accept();
        });
        logInByHand();
        QTRY_VERIFY(notice.seen());
        QTRY_VERIFY(canLogIn());
        QVERIFY(!isSlowTimed());
        QCOMPARE(asked(kLogin), 0);
        const auto handled = [] { return setting(ConfigUtil::ORCH_UPGRADE_TASK_ID); };
        QTRY_VERIFY(handled().toStringList().contains("m1"));

        button("btnLogin")->click();
        QTRY_VERIFY(accepted());
        QCOMPARE(qApp->property("OrchUpgradeNoticeTime").toInt(), 5);
        qApp->setProperty("OrchUpgradeNoticeTime", QVariant());
    }

    void afterA502TheMaintenanceIsLookedFor_data()
    {
        // The query's answer is "run" or an HTTP status.
        const auto row = columns<QString, QString, QString>("path", "query", "message");
        row("key, no maintenance", kKey, "200", "6046 ");
        row("login, no maintenance", kLogin, "200", "6046 ");
        row("login, running", kLogin, "run", "");
        row("login, query unknown", kLogin, "404", "6038 ");
        row("login, query 502 too", kLogin, "502", "6038 ");
    }

    void afterA502TheMaintenanceIsLookedFor()
    {
        const auto [path, query, message] =
            fetched<QString, QString, QString>("path", "query", "message");
        toLoginPage();
        answer(path, 502);
        if (query == "502")
            hold(path); // until the query before it has been seen
        std::unique_ptr<ModalGuard> running;
        if (query == "run") {
            announce("m2", "run", -60);
            running = std::make_unique<ModalGuard>("OrchUpgradeDialog");
        } else {
            // The first query lets the login go on.
            answer(kNotice,
                   query == "200" ? Fault::withBody(R"({"code":0})") : Fault::withStatus(404));
        }
        const int before = asked(kNotice);
        logInByHand();
        if (query == "502") {
            QTRY_COMPARE(asked(kNotice), before + 1);
            answer(kNotice, 502);
            answer(path, 502);
        }
        QTRY_COMPARE(asked(kNotice), before + 2); // before the login, and after its failure
        QTRY_VERIFY(running ? running->seen() : !prompt().isEmpty());
        QCOMPARE(prompt().left(5), message);
        QTRY_VERIFY(canLogIn());
        QVERIFY(!isSlowTimed());
    }

    void anOfferedUpgradeLetsTheStepGoOn()
    {
        offer("");
        ModalGuard offered("DlgUpgrade", [](QDialog* dialog) {
            const QString title = "Discover A New Version V6.2.0";
            QCOMPARE(part<QLabel>(dialog, "labelTitle")->text(), title);
            QCOMPARE(part<QLabel>(dialog, "labelContent")->text(), "en");
            part<QPushButton>(dialog, "btnSkip")->click();
        });
        openAndContinue();
        awaitLoginPage();
        QCOMPARE(saved(ConfigUtil::SKIP_VERSION), "6.2.0");
    }

    void refusedChecksAndForcedUpgradesStopTheStep()
    {
        answer(kUpgrade, json("{'errorInfo':{'code':61,'message':'No upgrades',"
                              "'parameters':{'message_cn':'x'}}}"));
        openAndContinue();
        QTRY_COMPARE(prompt(), "61 No upgrades");
        QVERIFY(button("btnContinue")->isEnabled());

        service().clearFaults();
        offer("6.2.0");
        ModalGuard forced("DlgForceUpgrade", [](QDialog* dialog) {
            QCOMPARE(part<QLabel>(dialog, "m_newVersionLabel")->text(), "6.2.0");
            dialog->reject();
        });
        button("btnContinue")->click();
        QTRY_VERIFY(forced.seen());
        QTRY_VERIFY(button("btnContinue")->isEnabled());
        QCOMPARE(page(), DlgLogin::DLG_CUSTOMER_PAGE);
        QCOMPARE(asked(kNotice), 0);
    }

    void refusalsWithADialog_data()
    {
        const auto row =
            columns<QByteArray, QByteArray, QString, QString>("code", "dialog", "text", "message");
        row("binding in process", "1127", "DlgBindResult", "", "");
        row("device disabled", "1128", "DlgBindResult", "no longer permitted", "");
        row("client too old", "1200", "CommonTipsDialog", "Too old",
            "Your client is outdated, please update it to the latest version.");
    }

    void refusalsWithADialog()
    {
        const auto [code, dialog] = fetched<QByteArray, QByteArray>("code", "dialog");
        service().edit([](sim::Scenario& scenario) {
            scenario.errorResourceVersion = "test";
            scenario.errorResource =
                QJsonDocument::fromJson(json("{'a':{'error_Code':1200,'clientVersionLow':true,"
                                             "'error_Desc':{'en':'Too old','cn':'x'}}}"))
                    .object();
        });
        toLoginPage();
        QTRY_COMPARE(saved(ConfigUtil::ORCH_ERROR_VERSION), "test");
        answer(kLogin, R"({"message":"refused","code":)" + code + "}");
        QString texts;
        ModalGuard shown(dialog, [&texts](QDialog* open) {
            for (const QLabel* label : open->findChildren<QLabel*>())
                texts += label->text();
            open->accept();
        });
        logInByHand();
        QTRY_VERIFY(shown.seen());
        QVERIFY2(texts.contains(cell<QString>("text")), qPrintable(texts));
        QTRY_VERIFY(canLogIn());
        QTRY_COMPARE(QApplication::activeModalWidget(), window.get());
        QTEST(prompt(), "message");
    }

    void endsOfTheAttempt_data()
    {
        // What is left: the token t, the mask m, the username u, the typed
        // password p, the recovery codes r; b: the user may try again.
        const auto row = columns<QByteArray, QString, QString>("body", "message", "left");
        row("expired", "'code':401", "6027 ", "");
        row("recovery codes", "'code':401,'parameters':{'otpRecoverCode':['9secret']}", "6027 ",
            "r");
        row("authenticator over", "'code':1108", "1108 ", "");
        row("any other", "'code':77", "77 re", "tmpb");
    }

    void endsOfTheAttempt()
    {
        const auto [body, message] = fetched<QByteArray, QString>("body", "message");
        toLoginPage();
        answer(kLogin, json("{'message':'refused'," + body + "}"));
        logInByHand();
        scene().logIn(); // typing has made what an earlier login left worthless
        save(ConfigUtil::USERNAME, "");
        const QString old = saved(ConfigUtil::TOKEN);
        QTRY_COMPARE(prompt().left(5), message);
        QCOMPARE(page(), DlgLogin::DLG_LOGIN_PAGE);
        const QString token = saved(ConfigUtil::TOKEN);
        QString left = token == old ? "t" : token;
        left += saved(ConfigUtil::PASSWORD).isEmpty() ? "" : "m";
        left += saved(ConfigUtil::USERNAME) == scene().username ? "u" : "";
        left += field("password")->text().isEmpty() ? "" : "p";
        left += setting(ConfigUtil::OTP_RECOVER_CODE).toStringList().isEmpty() ? "" : "r";
        QTEST(left + (canLogIn() ? "b" : ""), "left");
        QVERIFY(!logged("9secret"));
    }

private:
    void announce(const char* id, const char* state, int startsIn)
    {
        service().edit([&](sim::Scenario& now) {
            now.noticeReply = {{"type", "upgrade"},
                               {"id", id},
                               {"state", state},
                               {"noticeTime", 5},
                               {"startsInMinutes", startsIn},
                               {"endsInMinutes", startsIn + 120}};
        });
    }

    void offer(const char* minVersion)
    {
        service().edit([&](sim::Scenario& now) {
            now.upgradeReply = {{"version", "6.2.0"},
                                {"minVersion", minVersion},
                                {"releaseNote", "zh"},
                                {"releaseNoteEn", "en"}};
        });
    }
};

QTEST_MAIN(LoginNoticesTest)
#include "LoginNoticesTest.moc"
