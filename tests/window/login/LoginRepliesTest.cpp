#include "window/login/LoginScene.h"

#include <QFileInfo>

namespace {

constexpr char kTexts[] = "/files/error-texts.json";

} // namespace

/// Every answer of the way to a session, failed or spoilt in every way: the window says what it
/// has to say or goes on, lets the user try again, and keeps what was saved.
class LoginRepliesTest : public LoginScene
{
    Q_OBJECT

public slots:
    // What a spoilt answer makes of the next request is the service's own fault.
    void cleanup() override { endScene(); }

private slots:
    void spoiltReplies_data()
    {
        const QByteArray mistyped =
            json("{'code':'0','key':7,'orchDomain':[],'customerId':'x','X-TQ-AUTH-HEADER':{},"
                 "'type':1,'version':false,'enableForgetPassword':'yes',"
                 "'veltaro_privacy_version':12,'pad':'") +
            QByteArray(2 << 20, 'x') + "\"}";
        const QByteArray nested =
            "{\"code\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}";
        const QByteArray words =
            json("{'code':77,'message':'\\n\\nno") + QByteArray(50 << 20, 'x') + "\"}";
        // The outcome is "in", or the start of the message.
        const auto row =
            columns<QByteArray, int, QByteArray, QString>("path", "code", "body", "out");
        const auto spoil = [&](const QByteArray& path, const char* outcome) {
            row(path + " mistyped and long", path, 200, mistyped, outcome);
            row(path + " nested", path, 200, nested, outcome);
        };
        spoil(kPrivacy, "in");
        spoil(kLookup, "Protocol \"\" is unknown");
        spoil("/api/mobile/auth/config", "in");
        spoil(kUpgrade, "in");
        spoil("/s/mobile/error/resource/url", "in");
        spoil(kNotice, "in");
        spoil(kKey, "in");
        spoil(kLogin, "6014 ");
        row("long error texts", kTexts, 200, mistyped, "in");
        row("50 MB of words", kLogin, 200, words, "77   nox");
        row("login 500", kLogin, 500, "", "Error transferring ");
        row("key 404", kKey, 404, "", "Error transferring ");
        row("notice query 500", kNotice, 500, "", "Error transferring ");
        row("lookup refused", kLookup, 200, json("{'code':1007,'message':'m'}"), "1007 Inv");
        row("lookup 503", kLookup, 503, "", "Error transferring ");
    }

    void spoiltReplies()
    {
        const auto [path, code, body, out] =
            fetched<QByteArray, int, QByteArray, QString>("path", "code", "body", "out");
        const bool lookup = path == kLookup;
        const Fault fault = Fault::withStatus(code, body);
        if (lookup || code == 200)
            answer(path, fault);
        openAndContinue();
        if (!lookup) {
            awaitLoginPage();
            answer(path, fault);
            logInByHand();
        }
        if (out == "in") {
            QTRY_VERIFY_WITH_TIMEOUT(accepted(), 20000);
        } else {
            QTRY_VERIFY_WITH_TIMEOUT(!prompt().isEmpty(), 20000);
            QVERIFY2(prompt().startsWith(out), qPrintable(prompt()));
            QTRY_VERIFY(button(lookup ? "btnContinue" : "btnLogin")->isEnabled());
            QVERIFY(!isSlowTimed());
            QCOMPARE(page(), lookup ? DlgLogin::DLG_CUSTOMER_PAGE : DlgLogin::DLG_LOGIN_PAGE);
            QVERIFY(!lookup || button("btnContinue")->text() == "Continue");
        }
        const bool refused = lookup && !out.startsWith("Protocol"); // by both servers
        QCOMPARE(asked(kLookup), refused ? 2 : 1);
        QCOMPARE(saved(ConfigUtil::CUSTOMERIDSTR), refused ? "" : scene().customer);
        QCOMPARE(saved(ConfigUtil::CUSTOMERID), lookup ? "" : "1001");
        QTRY_VERIFY(asked(path) > 0);
        QVERIFY(path != kTexts || saved(ConfigUtil::ORCH_ERROR_RES).isEmpty());
        QVERIFY(!logged(scene().password));
        QVERIFY(QFileInfo(scene().file("ui.log")).size() < (1 << 20));
    }

    // While an answer comes byte by byte the window takes input.
    void aTricklingReplyLeavesTheWindowUsable()
    {
        toLoginPage();
        answer(kLogin, Fault::trickled(20, R"({"code": 0, "slow": true})"));
        logInByHand();
        QTRY_COMPARE(asked(kLogin), 1);
        QTest::keyClicks(field("username"), ".still here");
        QVERIFY(field("username")->text().endsWith(".still here"));
        QCOMPARE(prompt(), "");
        QTRY_VERIFY(prompt().startsWith("6014 "));
    }
};

QTEST_MAIN(LoginRepliesTest)
#include "LoginRepliesTest.moc"
