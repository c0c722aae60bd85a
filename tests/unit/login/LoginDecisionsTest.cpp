#include "login/LoginInput.h"
#include "login/LoginReply.h"
#include "login/LookupReply.h"
#include "login/PrivacyVersion.h"

#include <QTest>

Q_DECLARE_METATYPE(privacyversion::Next)
Q_DECLARE_METATYPE(LoginFollowUp)
Q_DECLARE_METATYPE(LoginInputFault)

/// The login window's decisions.
class LoginDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void authUrl_data()
    {
        QTest::addColumn<QString>("domain");
        QTest::addColumn<QString>("url");
        const QString path = QStringLiteral("/api/mobile/v2/auth");
        QTest::newRow("name") << "Example.COM/"
                              << "https://example.com" + path;
        QTest::newRow("address") << "10.0.0.1"
                                 << "http://10.0.0.1" + path;
        QTest::newRow("address with port") << "10.0.0.1:80"
                                           << "https://10.0.0.1:80" + path;
        QTest::newRow("scheme kept") << "HTTP://a.b"
                                     << "http://a.b" + path;
        QTest::newRow("one slash only") << "a.b//"
                                        << "https://a.b/" + path;
        QTest::newRow("empty") << ""
                               << "";
    }

    void authUrl()
    {
        QFETCH(QString, domain);
        QTEST(authUrlOf(domain), "url");
    }

    void customerId_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("id");
        QTest::newRow("number wins") << QByteArray(R"({"customerId":10086})") << "acme"
                                     << "10086";
        QTest::newRow("name without number") << QByteArray("{}") << "acme"
                                             << "77";
        QTest::newRow("digits typed") << QByteArray("{}") << " 123 "
                                      << "123";
        QTest::newRow("full-width digits")
            << QByteArray("{}") << QStringLiteral("１００１") << "77";
        QTest::newRow("number as text is none") << QByteArray(R"({"customerId":"10086"})") << "acme"
                                                << "77";
        QTest::newRow("no JSON") << QByteArray("<html>") << "5"
                                 << "5";
    }

    void customerId()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, typed);
        QTEST(customerIdOf(LookupReply::fromJson(body), typed, QStringLiteral("77")), "id");
    }

    void privacy_data()
    {
        using privacyversion::Next;
        QTest::addColumn<QString>("received");
        QTest::addColumn<QString>("saved");
        QTest::addColumn<Next>("afterPrimary");
        QTest::addColumn<Next>("afterBackup");
        QTest::addColumn<QString>("kept");
        QTest::newRow("none") << ""
                              << "20240101" << Next::AskBackup << Next::GoOn << "20240101";
        QTest::newRow("same") << "20240101"
                              << "20240101" << Next::GoOn << Next::GoOn << "20240101";
        QTest::newRow("newer") << "20240201"
                               << "20240101" << Next::Prompt << Next::Prompt << "20240101";
        QTest::newRow("older") << "20230101"
                               << "20240101" << Next::GoOn << Next::Prompt << "20240101";
        QTest::newRow("newest") << "20240101"
                                << "newest" << Next::GoOn << Next::GoOn << "20240101";
        QTest::newRow("never agreed") << "20240101"
                                      << "" << Next::Prompt << Next::Prompt << "";
    }

    void privacy()
    {
        QFETCH(QString, received);
        QFETCH(QString, saved);
        const auto primary = privacyversion::afterPrimary(received, saved);
        const auto backup = privacyversion::afterBackup(received, saved);
        QTEST(primary.next, "afterPrimary");
        QTEST(backup.next, "afterBackup");
        QTEST(primary.saved, "kept");
        QTEST(backup.saved, "kept");
    }

    void input_data()
    {
        QTest::addColumn<QString>("username");
        QTest::addColumn<QString>("password");
        QTest::addColumn<LoginInputFault>("fault");
        const QString longest(64, QLatin1Char('x'));
        const QString tooLong(65, QLatin1Char('x'));
        QTest::newRow("longest") << longest << longest << LoginInputFault::None;
        QTest::newRow("username") << tooLong << tooLong << LoginInputFault::UsernameTooLong;
        QTest::newRow("password") << longest << tooLong << LoginInputFault::PasswordTooLong;
        QTest::newRow("empty first") << tooLong << "" << LoginInputFault::Incomplete;
        QTest::newRow("no username") << ""
                                     << "p" << LoginInputFault::Incomplete;
    }

    void input()
    {
        QFETCH(QString, username);
        QFETCH(QString, password);
        QTEST(checkLoginInput(username, password), "fault");
    }

    void arguments_data()
    {
        QTest::addColumn<QStringList>("given");
        QTest::addColumn<QString>("flags");
        QTest::newRow("none") << QStringList{"veltaro"} << "";
        QTest::newRow("others without logout")
            << QStringList{"veltaro", "-byuser", "-invalidToken"} << "";
        QTest::newRow("all") << QStringList{"veltaro", "-byuser", "-invalidToken", "-logout"}
                             << "lib";
        QTest::newRow("spelling") << QStringList{"veltaro", "-Logout"} << "";
        QTest::newRow("by user") << QStringList{"veltaro", "-logout", "-byuser"} << "lb";
    }

    void arguments()
    {
        QFETCH(QStringList, given);
        const LoginArguments parsed = LoginArguments::parse(given);
        QString read;
        if (parsed.logout)
            read += QLatin1Char('l');
        if (parsed.invalidToken)
            read += QLatin1Char('i');
        if (parsed.byUser)
            read += QLatin1Char('b');
        QTEST(read, "flags");
    }

    void outcome_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<LoginFollowUp>("followUp");
        const QByteArray approval =
            R"("requestIdForPoll":"r","authResultCheckUrl":"u","authResultCheckTimes":)";
        QTest::newRow("token")
            << QByteArray(R"({"X-TQ-AUTH-HEADER":"t","middleToken":"m","phoneNumber":"1"})")
            << LoginFollowUp::Accept;
        QTest::newRow("token, change password")
            << QByteArray(R"({"X-TQ-AUTH-HEADER":"t","needResetPassword":true})")
            << LoginFollowUp::ForcedPassword;
        QTest::newRow("sms before approval")
            << "{" + approval + R"(3,"middleToken":"m","phoneNumber":"1"})" << LoginFollowUp::Sms;
        QTest::newRow("phone without token")
            << QByteArray(R"({"phoneNumber":"1"})") << LoginFollowUp::Unusable;
        QTest::newRow("approval before authenticator")
            << "{" + approval + R"(3,"otpMiddleToken":"o"})" << LoginFollowUp::Approval;
        QTest::newRow("no polls allowed") << "{" + approval + "0}" << LoginFollowUp::ApprovalOver;
        QTest::newRow("polls as text") << "{" + approval + R"("3"})" << LoginFollowUp::ApprovalOver;
        QTest::newRow("authenticator")
            << QByteArray(R"({"otpMiddleToken":"o"})") << LoginFollowUp::Authenticator;
        QTest::newRow("mistyped token")
            << QByteArray(R"({"X-TQ-AUTH-HEADER":5})") << LoginFollowUp::Unusable;
        QTest::newRow("empty") << QByteArray("{}") << LoginFollowUp::Unusable;
        QTest::newRow("no JSON") << QByteArray("\xff\0<html>", 8) << LoginFollowUp::Unusable;
        QTest::newRow("array") << QByteArray("[1]") << LoginFollowUp::Unusable;
    }

    void outcome()
    {
        QFETCH(QByteArray, body);
        const LoginReply reply = LoginReply::fromJson(body);
        QTEST(decideLogin(reply, reply.otpMiddleToken), "followUp");
    }

    void refusals_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("outcome"); // binding token, recovery codes, start again
        QTest::newRow("binding demanded")
            << QByteArray(R"({"code":401,"message":"mobileBindDevice",)"
                          R"("parameters":{"accountName":"a","deviceBindMiddleToken":"b"}})")
            << "bind a/b";
        QTest::newRow("binding without token")
            << QByteArray(R"({"code":401,"message":"x","type":"mobileBindDevice"})") << "bind /";
        QTest::newRow("another code")
            << QByteArray(R"({"code":402,"message":"mobileBindDevice"})") << "";
        QTest::newRow("no message") << QByteArray(R"({"code":401,"a":"mobileBindDevice"})") << "";
        QTest::newRow("recovery codes")
            << QByteArray(R"({"code":401,"parameters":{"otpRecoverCode":["1","2"]}})") << "1,2";
        QTest::newRow("recovery codes of another refusal")
            << QByteArray(R"({"code":400,"parameters":{"otpRecoverCode":["1"]}})") << "";
        QTest::newRow("1108") << QByteArray(R"({"code":1108})") << "again";
        QTest::newRow("1112") << QByteArray(R"({"code":1112})") << "again";
        QTest::newRow("no JSON") << QByteArray("mobileBindDevice message 401") << "";
    }

    void refusals()
    {
        QFETCH(QByteArray, body);
        const BindingDemand demand = BindingDemand::fromJson(body);
        const LoginRefusal refusal = LoginRefusal::fromJson(body);
        QString outcome = refusal.otpRecoverCode.join(QLatin1Char(','));
        if (demand.demanded)
            outcome += "bind " + demand.accountName + "/" + demand.middleToken;
        if (refusal.startAgain)
            outcome += "again";
        QTEST(outcome, "outcome");
    }

    void changingThePasswordIsAllowedUnlessForbidden()
    {
        QVERIFY(LoginReply::fromJson("{}").allowChangePass);
        QVERIFY(!LoginReply::fromJson(R"({"allowChangePass":false})").allowChangePass);
    }

    void polls()
    {
        // Three polls allowed, never approved: the third answer ends it.
        int left = 3;
        QVector<PollNext> answers;
        for (int poll = 0; poll < 3; ++poll) {
            --left;
            answers << decidePoll(-1, left);
        }
        QCOMPARE(answers,
                 (QVector<PollNext>{PollNext::PollAgain, PollNext::PollAgain, PollNext::TimedOut}));
        QCOMPARE(decidePoll(0, 0), PollNext::Approved);
    }
};

QTEST_GUILESS_MAIN(LoginDecisionsTest)
#include "LoginDecisionsTest.moc"
