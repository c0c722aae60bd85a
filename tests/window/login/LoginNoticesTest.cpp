#include "window/login/LoginScene.h"

#include <QJsonArray>
#include <QLabel>
#include <QTextEdit>

using sim::Fault;

namespace {

constexpr char kLogin[] = "/api/mobile/v2/auth";
constexpr char kNotice[] = "/api/mobile/v2/upgradeNotice";
constexpr qint64 kHour = 3600000;

QJsonObject maintenance(const char* id, const char* state, qint64 startsIn, qint64 endsIn)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    return {{"code", 0},
            {"type", "upgrade"},
            {"id", id},
            {"state", state},
            {"startTime", double(now + startsIn)},
            {"endTime", double(now + endsIn)},
            {"noticeTime", 5}};
}

QJsonObject newer(const char* minVersion = "")
{
    return {{"code", 0}, {"version", "6.2.0"},  {"minVersion", minVersion}, {"ignore", false},
            {"url", ""}, {"releaseNote", "zh"}, {"releaseNoteEn", "en"}};
}

} // namespace

/// What holds a login up: maintenance, newer and outdated clients, refusals with a dialog.
class LoginNoticesTest : public QObject
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

    void anAnnouncedMaintenanceStopsALoginOnce()
    {
        m_scene->toLoginPage();
        announce(maintenance("m1", "wait", kHour, 2 * kHour));
        ModalGuard notice("OrchUpgradeDialog", [](QDialog* dialog) {
            QVERIFY(part<QTextEdit>(dialog, "m_contentEdit")
                        ->toPlainText()
                        .startsWith(QStringLiteral("Dear customer, we will be")));
            dialog->accept();
        });
        m_scene->logInByHand();
        QTRY_VERIFY(notice.seen());
        QTRY_VERIFY(m_scene->button("btnLogin")->isEnabled());
        QVERIFY(!m_scene->timer("m_ConnectSlowWarningTimer")->isActive());
        QCOMPARE(m_scene->service.count(kLogin), 0);
        QTRY_VERIFY(WindowScene::setting(ConfigUtil::ORCH_UPGRADE_TASK_ID)
                        .toStringList()
                        .contains(QStringLiteral("m1")));

        m_scene->button("btnLogin")->click();
        QTRY_VERIFY(m_scene->accepted());
        QCOMPARE(qApp->property("OrchUpgradeNoticeTime").toInt(), 5);
        qApp->setProperty("OrchUpgradeNoticeTime", QVariant());
    }

    void afterA502TheMaintenanceIsLookedFor_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("query"); // what the notice query answers with
        QTest::addColumn<QString>("message");
        const QByteArray none = R"({"code":0})";
        const QString key = QStringLiteral("/s/mobile/pubkey/obtain");
        QTest::newRow("key, no maintenance") << key << none << "6046 ";
        QTest::newRow("login, no maintenance") << QString(kLogin) << none << "6046 ";
        QTest::newRow("login, running") << QString(kLogin) << QByteArray("run") << "";
        QTest::newRow("login, query unknown") << QString(kLogin) << QByteArray("404") << "6038 ";
        QTest::newRow("login, query 502 too") << QString(kLogin) << QByteArray("502") << "6038 ";
    }

    void afterA502TheMaintenanceIsLookedFor()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, query);
        QFETCH(QString, message);
        m_scene->toLoginPage();
        Fault failure = Fault::withStatus(502);
        failure.delayMs = 300; // time to see the query before it
        m_scene->service.setFault(path, failure);
        std::unique_ptr<ModalGuard> running;
        int queries = 2; // one before the login, one after its failure
        if (query == "run") {
            announce(maintenance("m2", "run", -kHour, kHour));
            running = std::make_unique<ModalGuard>("OrchUpgradeDialog",
                                                   [](QDialog* dialog) { dialog->accept(); });
        } else if (query.startsWith('{')) {
            m_scene->service.setFault(kNotice, Fault::withBody(query));
        } else if (query == "404") {
            m_scene->service.setFault(kNotice, Fault::withStatus(404));
        } else {
            // The first query lets the login go on, the second fails.
            Fault late = Fault::withStatus(404);
            late.times = 1;
            m_scene->service.setFault(kNotice, late);
        }
        const int before = m_scene->service.count(kNotice);
        m_scene->logInByHand();
        if (query == "502") {
            QTRY_COMPARE(m_scene->service.count(kNotice), before + 1);
            m_scene->service.setFault(kNotice, Fault::withStatus(502));
        }
        QTRY_COMPARE(m_scene->service.count(kNotice), before + queries);
        if (running)
            QTRY_VERIFY(running->seen());
        else
            QTRY_VERIFY2(m_scene->prompt().startsWith(message), qPrintable(m_scene->prompt()));
        QTRY_VERIFY(m_scene->button("btnLogin")->isEnabled());
        QVERIFY(!m_scene->timer("m_ConnectSlowWarningTimer")->isActive());
    }

    void anOfferedUpgradeLetsTheStepGoOn_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("later");
        QTest::addColumn<QString>("skipped");
        QTest::newRow("later") << "btnLater"
                               << "6.2.0"
                               << "";
        QTest::newRow("skip") << "btnSkip"
                              << ""
                              << "6.2.0";
    }

    void anOfferedUpgradeLetsTheStepGoOn()
    {
        QFETCH(QString, button);
        upgrade(newer());
        m_scene->agreed();
        m_scene->open();
        ModalGuard offer("DlgUpgrade", [button](QDialog* dialog) {
            QCOMPARE(part<QLabel>(dialog, "labelTitle")->text(),
                     QStringLiteral("Discover A New Version V6.2.0"));
            QCOMPARE(part<QLabel>(dialog, "labelContent")->text(), QStringLiteral("en"));
            QTest::mouseClick(dialog->findChild<QPushButton*>(button), Qt::LeftButton);
        });
        m_scene->continueWith(m_scene->customer);
        QTRY_VERIFY(offer.seen());
        QTRY_COMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
        QTEST(WindowScene::setting(ConfigUtil::UPGRADE_LATER_VERSION).toString(), "later");
        QTEST(WindowScene::setting(ConfigUtil::SKIP_VERSION).toString(), "skipped");
    }

    void aForcedUpgradeStopsTheStep()
    {
        upgrade(newer("6.2.0"));
        m_scene->agreed();
        m_scene->open();
        ModalGuard forced("DlgForceUpgrade", [](QDialog* dialog) {
            QCOMPARE(part<QLabel>(dialog, "m_newVersionLabel")->text(), QStringLiteral("6.2.0"));
            dialog->reject();
        });
        m_scene->continueWith(m_scene->customer);
        QTRY_VERIFY(forced.seen());
        QTRY_VERIFY(m_scene->button("btnContinue")->isEnabled());
        QCOMPARE(m_scene->page(), int(DlgLogin::DLG_CUSTOMER_PAGE));
        QCOMPARE(m_scene->service.count(kNotice), 0);
    }

    void aRefusedUpgradeCheckIsReported()
    {
        m_scene->agreed();
        m_scene->service.setFault(
            QStringLiteral("/s/mobile/v1/upgrade"),
            Fault::withBody(R"({"errorInfo":{"code":61,"message":"No upgrades","parameters":{)"
                            R"("message_cn":"x"}}})"));
        m_scene->open();
        m_scene->continueWith(m_scene->customer);
        QTRY_COMPARE(m_scene->prompt(), QStringLiteral("61 No upgrades"));
        QVERIFY(m_scene->button("btnContinue")->isEnabled());
    }

    void refusalsWithADialog_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QByteArray>("dialog");
        QTest::addColumn<QString>("message"); // once it is closed
        QTest::newRow("binding in process") << 1127 << QByteArray("DlgBindResult") << "";
        QTest::newRow("device disabled") << 1128 << QByteArray("DlgBindResult") << "";
        QTest::newRow("client too old")
            << 1200 << QByteArray("CommonTipsDialog")
            << "Your client is outdated, please update it to the latest version.";
    }

    void refusalsWithADialog()
    {
        QFETCH(int, code);
        QFETCH(QByteArray, dialog);
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.errorResourceVersion = QStringLiteral("test");
            scenario.errorResource = QJsonObject{
                {"a", QJsonObject{{"error_Code", 1200},
                                  {"error_Desc", QJsonObject{{"en", "Too old"}, {"cn", "x"}}},
                                  {"clientVersionLow", true}}}};
        });
        m_scene->toLoginPage();
        QTRY_COMPARE(WindowScene::setting(ConfigUtil::ORCH_ERROR_VERSION).toString(),
                     QStringLiteral("test"));
        m_scene->service.setFault(kLogin, Fault::withBody("{\"code\":" + QByteArray::number(code) +
                                                          ",\"message\":\"refused\"}"));
        ModalGuard shown(dialog, [](QDialog* open) { open->accept(); });
        m_scene->logInByHand();
        QTRY_VERIFY(shown.seen());
        QTRY_VERIFY(m_scene->button("btnLogin")->isEnabled());
        QTRY_VERIFY(!QApplication::activeModalWidget() ||
                    QApplication::activeModalWidget() == m_scene->window.get());
        QTEST(m_scene->prompt(), "message");
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QString>("kept"); // t token and mask, p password field, r recovery codes
        const auto refusal = [](int code, const char* parameters = "") {
            return "{\"code\":" + QByteArray::number(code) + ",\"message\":\"refused\"" +
                   parameters + "}";
        };
        QTest::newRow("expired") << refusal(401) << "6027 "
                                 << "";
        QTest::newRow("new recovery codes")
            << refusal(401, R"(,"parameters":{"otpRecoverCode":["123456"]})") << "6027 "
            << "r";
        QTest::newRow("authenticator over") << refusal(1108) << "1108 "
                                            << "";
        QTest::newRow("any other") << refusal(77) << "77 refused"
                                   << "tp";
        QTest::newRow("binding demanded, no dialog yet")
            << refusal(401, R"(,"type":"mobileBindDevice")") << "6014 "
            << "tp";
    }

    void refusals()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        m_scene->logIn(); // leaves a token and a mask
        ConfigUtil::writeValue(ConfigUtil::AUTO_LOGIN, 0);
        m_scene->open();
        QTRY_VERIFY(m_scene->button("btnLogin")->isEnabled());
        m_scene->service.setFault(kLogin, Fault::withBody(body));
        m_scene->button("btnLogin")->click();
        QTRY_VERIFY2(m_scene->prompt().startsWith(message), qPrintable(m_scene->prompt()));
        QCOMPARE(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE));
        QString kept;
        if (!WindowScene::setting(ConfigUtil::TOKEN).toString().isEmpty() &&
            !WindowScene::setting(ConfigUtil::PASSWORD).toString().isEmpty())
            kept += 't';
        if (!m_scene->field("password")->text().isEmpty())
            kept += 'p';
        if (!WindowScene::setting(ConfigUtil::OTP_RECOVER_CODE).toStringList().isEmpty())
            kept += 'r';
        QTEST(kept, "kept");
        QVERIFY(!m_scene->log().contains(QStringLiteral("123456")));
    }

    void followUpsWithoutAPageEndTheAttempt_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("message code")
            << QByteArray(R"({"code":0,"middleToken":"mid9secret","phoneNumber":"1"})");
        QTest::newRow("authenticator")
            << QByteArray(R"({"code":0,"otpMiddleToken":"otp9secret","otpKey":"key9secret"})");
        QTest::newRow("password change")
            << QByteArray(R"({"code":0,"X-TQ-AUTH-HEADER":"tok9secret","needResetPassword":true})");
    }

    void followUpsWithoutAPageEndTheAttempt()
    {
        QFETCH(QByteArray, body);
        m_scene->toLoginPage();
        m_scene->service.setFault(kLogin, Fault::withBody(body));
        m_scene->logInByHand();
        QTRY_VERIFY2(m_scene->prompt().startsWith(QStringLiteral("6014 ")),
                     qPrintable(m_scene->prompt()));
        QVERIFY(m_scene->button("btnLogin")->isEnabled());
        QVERIFY(!m_scene->log().contains(QStringLiteral("9secret")));
    }

private:
    void announce(const QJsonObject& notice)
    {
        m_scene->service.edit([&](sim::Scenario& scenario) { scenario.noticeReply = notice; });
    }

    void upgrade(const QJsonObject& reply)
    {
        m_scene->service.edit([&](sim::Scenario& scenario) { scenario.upgradeReply = reply; });
    }

    std::unique_ptr<LoginScene> m_scene;
};

QTEST_MAIN(LoginNoticesTest)
#include "LoginNoticesTest.moc"
