#include "window/login/LoginScene.h"

#include <QFileInfo>

using sim::Fault;

namespace {

const QByteArray kTruncated = R"({"code":0,"key":"MIIB)";
const QByteArray kMistyped =
    R"({"code":"0","key":7,"orchDomain":[],"customerId":"x","X-TQ-AUTH-HEADER":{},"type":1,)"
    R"("version":false,"enableForgetPassword":"yes","veltaro_privacy_version":12})";

QByteArray nested()
{
    return "{\"code\":" + QByteArray(100000, '[') + QByteArray(100000, ']') + "}";
}

QByteArray huge()
{
    return "{\"code\":0,\"pad\":\"" + QByteArray(50 << 20, 'x') + "\"}";
}

} // namespace

/// Every answer of the way to a session, spoilt in every way: the window says what it has to say
/// or goes on, lets the user try again, and keeps what was saved.
class LoginRepliesTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<LoginScene>(); }

    void cleanup()
    {
        m_scene->window.reset();
        m_scene.reset();
    }

    void spoiltReplies_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("outcome"); // "in", or the start of the message
        const QVector<QPair<const char*, const char*>> steps{
            {"/static/version/privacyversion.json", "in"},
            {"/api/mobile/v1/orchinfo", "Protocol \"\" is unknown"},
            {"/api/mobile/auth/config", "in"},
            {"/s/mobile/v1/upgrade", "in"},
            {"/s/mobile/error/resource/url", "in"},
            {"/api/mobile/v2/upgradeNotice", "in"},
            {"/s/mobile/pubkey/obtain", "in"},
            {"/api/mobile/v2/auth", "6014 "},
        };
        for (const auto& step : steps) {
            const auto row = [&step](const char* kind, const QByteArray& body) {
                QTest::addRow("%s, %s", step.first, kind)
                    << QString(step.first) << body << QString(step.second);
            };
            row("truncated", kTruncated);
            row("mistyped", kMistyped);
            row("nested", nested());
            row("huge", huge());
        }
        QTest::newRow("login refused with 50 MB of words")
            << "/api/mobile/v2/auth"
            << QByteArray("{\"code\":77,\"message\":\"\\n\\nno" + QByteArray(50 << 20, 'x') + "\"}")
            << "77   nox";
    }

    void spoiltReplies()
    {
        QFETCH(QString, path);
        QFETCH(QByteArray, body);
        QFETCH(QString, outcome);
        m_scene->agreed();
        m_scene->service.setFault(path, Fault::withBody(body));
        m_scene->open();
        m_scene->continueWith(m_scene->customer);
        const bool lookup = path.endsWith(QLatin1String("orchinfo"));
        if (!lookup) {
            QTRY_COMPARE_WITH_TIMEOUT(m_scene->page(), int(DlgLogin::DLG_LOGIN_PAGE), 20000);
            m_scene->logInByHand();
        }
        if (outcome == QLatin1String("in")) {
            QTRY_VERIFY_WITH_TIMEOUT(m_scene->accepted(), 20000);
        } else {
            QTRY_VERIFY_WITH_TIMEOUT(m_scene->prompt().startsWith(outcome), 20000);
            QVERIFY(m_scene->button(lookup ? "btnContinue" : "btnLogin")->isEnabled());
        }
        QCOMPARE(WindowScene::setting(ConfigUtil::CUSTOMERIDSTR).toString(), m_scene->customer);
        QVERIFY(!m_scene->log().contains(m_scene->password));
        QVERIFY(QFileInfo(m_scene->file(QStringLiteral("ui.log"))).size() < (1 << 20));
    }

    void aHugeErrorResourceIsLeftAlone()
    {
        m_scene->service.setFault(QStringLiteral("/files/error-texts.json"),
                                  Fault::withBody(huge()));
        m_scene->toLoginPage();
        QTRY_COMPARE(m_scene->service.count("/files/error-texts.json"), 1);
        m_scene->logInByHand();
        QTRY_VERIFY_WITH_TIMEOUT(m_scene->accepted(), 20000);
        QCOMPARE(WindowScene::setting(ConfigUtil::ORCH_ERROR_RES).toString(), QString());
    }

    // While an answer comes byte by byte the window takes input.
    void aTricklingReplyLeavesTheWindowUsable()
    {
        m_scene->toLoginPage();
        m_scene->service.setFault(QStringLiteral("/api/mobile/v2/auth"),
                                  Fault::trickled(20, R"({"code": 0, "slow": true})"));
        m_scene->logInByHand();
        QTRY_COMPARE(m_scene->service.count("/api/mobile/v2/auth"), 1);
        QTest::keyClicks(m_scene->field("username"), QStringLiteral(".still here"));
        QVERIFY(m_scene->field("username")->text().endsWith(QStringLiteral(".still here")));
        QCOMPARE(m_scene->prompt(), QString());
        QTRY_VERIFY(m_scene->prompt().startsWith(QStringLiteral("6014 ")));
    }

private:
    std::unique_ptr<LoginScene> m_scene;
};

QTEST_MAIN(LoginRepliesTest)
#include "LoginRepliesTest.moc"
