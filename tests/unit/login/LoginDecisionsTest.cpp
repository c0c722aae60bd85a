#include "login/LoginInput.h"
#include "login/LoginReply.h"
#include "login/LookupReply.h"
#include "login/PrivacyText.h"
#include "login/PrivacyVersion.h"
#include "login/SmsReply.h"
#include "maintenance/MaintenanceNotice.h"
#include "orch/JsonUtil.h"
#include "orch/OrchReply.h"
#include "support/Rows.h"

#include <QDateTime>

Q_DECLARE_METATYPE(privacyversion::Next)
Q_DECLARE_METATYPE(LoginFollowUp)

/// The decisions of a login, and when maintenance holds one up or is announced.
class LoginDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void authUrl()
    {
        const auto check = [](const char* domain, const QString& root) {
            QCOMPARE(authUrlOf(domain), root + "/api/mobile/v2/auth");
        };
        check("Example.COM/", "https://example.com");
        check("10.0.0.1", "http://10.0.0.1");
        check("10.0.0.1:80", "https://10.0.0.1:80");
        check("HTTP://a.b", "http://a.b");
        check("a.b//", "https://a.b/"); // one slash only
        QCOMPARE(authUrlOf(""), QString());
    }

    void customerId()
    {
        const auto id = [](const char* body, const QString& typed) {
            const auto reply = LookupReply::fromJson(JsonUtil::object(json(body)));
            return customerIdOf(reply, typed, "77");
        };
        QCOMPARE(id("{'customerId':10086}", "acme"), QString("10086"));
        QCOMPARE(id("{}", "acme"), QString("77"));
        QCOMPARE(id("{}", " 123 "), QString("123"));
        QCOMPARE(id("{}", "１００１"), QString("77")); // full-width digits
        QCOMPARE(id("{'customerId':'10086'}", "acme"), QString("77"));
        QCOMPARE(id("<html>", "5"), QString("5"));
    }

    void privacy_data()
    {
        using privacyversion::Next;
        const auto row = columns<QString, QString, Next, Next, QString>(
            "received", "saved", "afterPrimary", "afterBackup", "kept");
        row("none", "", "20240101", Next::AskBackup, Next::GoOn, "20240101");
        row("same", "20240101", "20240101", Next::GoOn, Next::GoOn, "20240101");
        row("newer", "20240201", "20240101", Next::Prompt, Next::Prompt, "20240101");
        row("older", "20230101", "20240101", Next::GoOn, Next::Prompt, "20240101");
        row("newest", "20240101", "newest", Next::GoOn, Next::GoOn, "20240101");
        row("never agreed", "20240101", "", Next::Prompt, Next::Prompt, "");
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

    void privacyUpdateLine()
    {
        const auto check = [](const char* version, const char* english, const char* chinese) {
            QCOMPARE(privacyUpdateText(version, false), QString(english));
            QCOMPARE(privacyUpdateText(version, true), QString(chinese));
        };
        check("20240314", "Updated on March 14, 2024", "更新与2024年03月14日");
        check("20240304", "Updated on March 04, 2024", "更新与2024年03月04日");
        check("20230101", "Updated on January 01, 2023", "更新与2023年01月01日");
        check("20251231", "Updated on December 31, 2025", "更新与2025年12月31日");
        check("20241314", "", "更新与2024年13月14日");
        check("20240014", "", "更新与2024年00月14日");
        check("2024ab14", "", "更新与2024年ab月14日");
        check("%1%20614", "Updated on June 14, %1%2", "更新与%1%2年06月14日");
        for (const char* undated : {"newest", "2024031", "202403145", ""})
            check(undated, "", "");
    }

    void input()
    {
        const QString longest(64, 'x');
        const QString tooLong(65, 'x');
        QCOMPARE(checkLoginInput(longest, longest), LoginInputFault::None);
        QCOMPARE(checkLoginInput(tooLong, tooLong), LoginInputFault::UsernameTooLong);
        QCOMPARE(checkLoginInput(longest, tooLong), LoginInputFault::PasswordTooLong);
        QCOMPARE(checkLoginInput(tooLong, ""), LoginInputFault::Incomplete);
        QCOMPARE(checkLoginInput("", "p"), LoginInputFault::Incomplete);
    }

    void arguments()
    {
        const auto flags = [](const QString& given) {
            const auto parsed = LoginArguments::parse(given.split(' '));
            return QString(parsed.logout ? "l" : "") + (parsed.invalidToken ? "i" : "") +
                   (parsed.byUser ? "b" : "");
        };
        QCOMPARE(flags("veltaro"), QString());
        QCOMPARE(flags("veltaro -byuser -invalidToken"), QString()); // only with a logout
        QCOMPARE(flags("veltaro -byuser -invalidToken -logout"), QString("lib"));
        QCOMPARE(flags("veltaro -Logout"), QString());
        QCOMPARE(flags("veltaro -logout -byuser"), QString("lb"));
    }

    void outcome_data()
    {
        using Next = LoginFollowUp;
        const auto row = columns<QByteArray, LoginFollowUp>("body", "followUp");
        const QByteArray approval =
            "{'requestIdForPoll':'r','authResultCheckUrl':'u','authResultCheckTimes':";
        row("token", "{'X-TQ-AUTH-HEADER':'t','middleToken':'m','phoneNumber':'1'}", Next::Accept);
        row("token, change password", "{'X-TQ-AUTH-HEADER':'t','needResetPassword':true}",
            Next::ForcedPassword);
        row("sms before approval", approval + "3,'middleToken':'m','phoneNumber':'1'}", Next::Sms);
        row("phone without token", "{'phoneNumber':'1'}", Next::Unusable);
        row("approval before authenticator", approval + "3,'otpMiddleToken':'o'}", Next::Approval);
        row("no polls allowed", approval + "0}", Next::ApprovalOver);
        row("polls as text", approval + "'3'}", Next::ApprovalOver);
        row("authenticator", "{'otpMiddleToken':'o','otpLogin':true}", Next::Authenticator);
        row("new authenticator", "{'otpMiddleToken':'o','otpKey':'K'}", Next::Authenticator);
        row("no authenticator", "{'otpMiddleToken':'o'}", Next::Unusable);
        row("mistyped token", "{'X-TQ-AUTH-HEADER':5}", Next::Unusable);
        row("empty", "{}", Next::Unusable);
        row("no JSON", QByteArray("\xff\0<html>", 8), Next::Unusable);
        row("array", "[1]", Next::Unusable);
    }

    void outcome()
    {
        const auto reply = LoginReply::fromJson(JsonUtil::object(json(cell<QByteArray>("body"))));
        QTEST(decideLogin(reply, reply.otpMiddleToken), "followUp");
    }

    void smsOutcome()
    {
        const auto check = [](const QByteArray& body, SmsFollowUp next) {
            QCOMPARE(decideSms(LoginReply::fromJson(JsonUtil::object(json(body)))), next);
        };
        const QByteArray approval = "{'requestIdForPoll':'r','authResultCheckUrl':'u'";
        check("{'X-TQ-AUTH-HEADER':'t','requestIdForPoll':'r'}", SmsFollowUp::Accept);
        check(approval + ",'authResultCheckTimes':1}", SmsFollowUp::Approval);
        check(approval + "}", SmsFollowUp::ApprovalOver);
        check("{'requestIdForPoll':'r','authResultCheckTimes':1}", SmsFollowUp::NoToken);
        QCOMPARE(shownPhoneNumber("12345678901234567890"), QString("678901234567890"));
    }

    void refusals_data()
    {
        // "outcome": recovery codes, a demanded binding, start again
        const auto row = columns<QByteArray, QString>("body", "outcome");
        row("binding demanded",
            "{'code':401,'message':'mobileBindDevice',"
            "'parameters':{'accountName':'a','deviceBindMiddleToken':'b'}}",
            "bind a/b");
        row("binding without token", "{'code':401,'message':'x','type':'mobileBindDevice'}",
            "bind /");
        row("another code", "{'code':402,'message':'mobileBindDevice'}", "");
        row("no message", "{'code':401,'a':'mobileBindDevice'}", "");
        row("recovery codes", "{'code':401,'parameters':{'otpRecoverCode':['1','2']}}", "1,2");
        row("recovery codes of another refusal",
            "{'code':400,'parameters':{'otpRecoverCode':['1']}}", "");
        row("1108", "{'code':1108}", "again");
        row("1112", "{'code':1112}", "again");
        row("no JSON", "mobileBindDevice message 401", "");
    }

    void refusals()
    {
        const OrchReply reply(json(cell<QByteArray>("body")));
        const LoginRefusal refusal = LoginRefusal::fromJson(reply.json());
        QString outcome = refusal.otpRecoverCode.join(QLatin1Char(','));
        QString user;
        QString token;
        if (isDeviceBing(reply, user, token))
            outcome += "bind " + user + "/" + token;
        if (refusal.startAgain)
            outcome += "again";
        QTEST(outcome, "outcome");
    }

    void changingThePasswordIsAllowedUnlessForbidden()
    {
        QVERIFY(LoginReply::fromJson({}).allowChangePass);
        QVERIFY(!LoginReply::fromJson({{"allowChangePass", false}}).allowChangePass);
    }

    void maintenance_data()
    {
        // "shown": l stops the login, f on focus, r is running
        const auto row = columns<QByteArray, bool, QString>("body", "handled", "shown");
        const auto notice = [](qlonglong now, const char* state) {
            return QByteArray("{'type':'upgrade','id':'n','startTime':1000,'endTime':2000,"
                              "'currentTime':" +
                              QByteArray::number(now) + ",'state':'" + state + "'}");
        };
        row("ahead", notice(500, "wait"), false, "lf");
        row("ahead, handled", notice(500, "wait"), true, "");
        row("inside, not begun", notice(1500, "wait"), false, "lf");
        row("at its end", notice(2000, "wait"), false, "f");
        row("over", notice(2001, "wait"), false, "");
        row("running", notice(1500, "run"), false, "r");
        row("running, handled", notice(1500, "run"), true, "r");
        row("running at its first moment", notice(1000, "run"), false, "");
        row("running at its last moment", notice(2000, "run"), false, "");
        row("of another type", "{'type':'news','endTime':9e12}", false, "");
        row("no JSON", "<html>", false, "");
        row("times as text", "{'type':'upgrade','endTime':'2000'}", false, "f");
    }

    void maintenance()
    {
        QFETCH(bool, handled);
        const auto notice = parseOrchUpgradeReply(JsonUtil::object(json(cell<QByteArray>("body"))));
        QTEST(QString(::maintenance::stopsLogin(notice, handled) ? "l" : "") +
                  (::maintenance::announcedOnFocus(notice, handled) ? "f" : "") +
                  (::maintenance::isRunning(notice) ? "r" : ""),
              "shown");
    }

    void maintenanceTimes()
    {
        const qint64 moment = QDateTime(QDate(2026, 3, 5), QTime(7, 8)).toMSecsSinceEpoch();
        QCOMPARE(::maintenance::noticeTime(moment, false), QString("Mar 5, 2026 07:08"));
        QCOMPARE(::maintenance::noticeTime(moment, true), QString("2026年3月5日，07:08"));
        // The variable for times counts before the system's language.
        QVERIFY(!::maintenance::chineseTimes("", false) && ::maintenance::chineseTimes("", true));
        QVERIFY(::maintenance::chineseTimes("zh_CN.UTF-8", false));
        QVERIFY(!::maintenance::chineseTimes("en_US.UTF-8", true));
    }

    void polls()
    {
        QCOMPARE(decidePoll(-1, 1), PollNext::PollAgain);
        QCOMPARE(decidePoll(-1, 0), PollNext::TimedOut);
        QCOMPARE(decidePoll(0, 0), PollNext::Approved);
    }
};

QTEST_GUILESS_MAIN(LoginDecisionsTest)
#include "LoginDecisionsTest.moc"
