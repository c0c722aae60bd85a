#include "window/main/SessionScene.h"

constexpr char kChange[] = "/api/mobile/v2/resetpassword";
constexpr char kKey[] = "/s/mobile/pubkey/obtain";

/// The settings page.
class SettingsTest : public SessionScene
{
    Q_OBJECT

private slots:
    void initTestCase() { qApp->setProperty(appproperty::kAllowChangePass, true); }

    void thePasswordChanges_data()
    {
        const auto row = columns<bool>("encrypted");
        row("encrypted", true);
        row("no key", false);
    }

    void thePasswordChanges()
    {
        openConnected();
        service().edit([](sim::Scenario& now) {
            for (sim::Account& account : now.accounts)
                account.offersKey = cell<bool>("encrypted");
        });
        hold(kChange);
        submit(scene().password, "  New-secret-2 ");
        QTRY_COMPARE(asked(kChange), 1);
        QVERIFY(!button("m_saveBtn")->isEnabled());
        answer(kHeartbeat, Fault::withStatus(401, R"({"code":401})")); // the change ends the token
        poll();
        QTRY_COMPARE(connectText(), "Connect");
        QCOMPARE(scene().quits, 0);

        ModalGuard told("DlgChangePassPrompt");
        answer(kChange, R"({"code":0})");
        QTRY_COMPARE(scene().quits, 1);
        QVERIFY(told.seen());
        QCOMPARE(scene().started, QStringList("-logout"));
        QCOMPARE(sent(kChange).contains("newPassword"), !cell<bool>("encrypted"));
        for (const char* field : {"m_oldEdit", "m_newEdit", "m_confirmEdit"})
            QCOMPARE(child<QLineEdit>(field)->text(), "");
        QVERIFY(!scene().log().contains("New-secret-2"));
    }

    void whatDoesNotChangeIt_data()
    {
        const auto row =
            columns<QByteArray, int, QByteArray, QString>("path", "status", "body", "prompt");
        row("wrong old password", kChange, 0, "", "1062 The old password is wrong.");
        row("401 without a reason", kChange, 401, "{'code':401,'i18nKey':'k','message':'Over.'}",
            "401 Over.");
        row("no answer", kChange, -1, "", "Connection closed");
        row("key: 502", kKey, 502, "",
            "6046 The system is under maintenance, please try again later.");
        row("key: unusable", kKey, 200, "{'code':0,'key':'AAAA'}",
            "6009 System error (200). Please contact your network administrator.");
    }

    void whatDoesNotChangeIt()
    {
        const auto [path, status, body, text] =
            fetched<QByteArray, int, QByteArray, QString>("path", "status", "body", "prompt");
        openConnected();
        if (status < 0)
            answer(path, Fault::dropped());
        else if (status > 0)
            answer(path, Fault::withStatus(status, json(body)));
        submit("wrong", "New-secret-2");
        QTRY_COMPARE(prompt(), text);
        QVERIFY(button("m_saveBtn")->isEnabled());
        QCOMPARE(child<QLineEdit>("m_newEdit")->text(), "New-secret-2");
        QCOMPARE(isConnected(), status != 401);
        QCOMPARE(scene().quits, 0);

        answer(path, Fault());
        answer(kHeartbeat, Fault::withStatus(401, R"({"code":401})")); // lost, this time
        if (isConnected()) {
            poll();
            QTRY_COMPARE(scene().quits, 1);
        }
    }

    void theSessionIsOver()
    {
        openConnected();
        service().revokeSessions(3);
        ModalGuard told("CommonTipsDialog");
        submit(scene().password, "New-secret-2");
        QTRY_COMPARE(scene().quits, 1);
        QVERIFY(told.seen());
        QCOMPARE(asked(kDisconnect), 0);
        QCOMPARE(scene().started, QStringList("-logout"));
        QCOMPARE(saved(ConfigUtil::TOKEN), "");
    }

    void thePage()
    {
        openConnected();
        showPage();
        for (const char* name : {"m_accountWidget", "m_changePassWidget", "m_diagnoseWidget"}) {
            auto* section = child<QWidget>(name);
            auto* title = part<QPushButton>(section, "topBtn");
            const auto described = QAccessible::queryAccessibleInterface(title);
            const int folded = section->height();
            QVERIFY(described->state().collapsed);
            title->click();
            QVERIFY(described->state().expanded && !described->state().collapsed);
            QVERIFY(section->height() > folded);
        }
        child<QLineEdit>("m_oldEdit")->setText("secret");
        main()->on_toolBtnHome_clicked();
        QCOMPARE(child<QLineEdit>("m_oldEdit")->text(), "");
    }

private:
    void showPage() { main()->on_toolBtnSetting_clicked(); }

    /// Types both passwords and asks for the change.
    void submit(const QString& oldPass, const QString& newPass)
    {
        showPage();
        for (const char* field : {"m_newEdit", "m_confirmEdit"})
            child<QLineEdit>(field)->setText(newPass);
        child<QLineEdit>("m_oldEdit")->setText(oldPass);
        button("m_saveBtn")->click();
    }
};

QTEST_MAIN(SettingsTest)
#include "SettingsTest.moc"
