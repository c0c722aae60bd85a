#include "app/Platform.h"
#include "forgetpassword/PasswordRules.h"
#include "forgetpassword/ResetAccount.h"
#include "forgetpassword/ResetChannel.h"
#include "forgetpassword/TipsPopupWidget.h"
#include "orch/JsonUtil.h"
#include "support/Rows.h"

#include <QJsonArray>

Q_DECLARE_METATYPE(ResetOffer)

/// What the password pages make of answers, and how large their bubbles are.
class PasswordDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void resetMethods_data()
    {
        const auto row = columns<QByteArray, ResetOffer, int>("reply", "offer", "type");
        row("both", "{'resetPwdMethod':0,'phone':'1','mailbox':'a@b'}", ResetOffer::ShowPage,
            RESET_BOTH);
        row("one of both", "{'resetPwdMethod':0,'mailbox':'a@b'}", ResetOffer::ShowPage,
            RESET_EMAIL);
        row("neither", "{'resetPwdMethod':0}", ResetOffer::NoAddress, RESET_INVALID);
        row("phone, both known", "{'resetPwdMethod':1,'phone':'1','mailbox':'a@b'}",
            ResetOffer::ShowPage, RESET_BOTH);
        row("phone, none known", "{'resetPwdMethod':1,'mailbox':'a@b'}", ResetOffer::NoPhone,
            RESET_EMAIL);
        row("mailbox, none known", "{'resetPwdMethod':2,'phone':'1'}", ResetOffer::NoMailbox,
            RESET_PHONE);
        row("unsupported", "{'resetPwdMethod':3}", ResetOffer::Unsupported, RESET_INVALID);
        row("unknown", "{'resetPwdMethod':4,'phone':'1'}", ResetOffer::Unusable, RESET_PHONE);
        row("mistyped", "{'resetPwdMethod':'0','phone':1}", ResetOffer::Unusable, RESET_INVALID);
        row("no JSON", "<html>", ResetOffer::Unusable, RESET_INVALID);
    }

    void resetMethods()
    {
        ResetAccount account;
        account.phoneNumber = "of an earlier answer";
        QTEST(account.take(JsonUtil::object(json(cell<QByteArray>("reply")))), "offer");
        QTEST(int(account.supportResetType()), "type");
    }

    void rules_data()
    {
        // Several rules are separated by a space, and their tips are numbers.
        const auto row =
            columns<QString, QString, QString, bool>("rules", "password", "broken", "unchecked");
        const QString two = ".{8,} .*\\d.*";
        row("none", "", "anything", "", false);
        row("the first", two, "abc", "0", false);
        row("the second", two, "abcdefgh", "1", false);
        row("all kept", two, "abcdefg1", "", false);
        row("the whole password", "\\d+", "12a", "0", false);
        row("a shorter alternative", "a|ab", "ab", "", false);
        row("a line's end", "\\d+", "12\n", "0", false);
        row("case", "[a-z]+", "A", "0", false);
        row("does not compile", "[a .{8,}", "abc", "1", true);
        row("whole only between anchors", "a)|(b", "x", "", true);
        row("swallows what follows", "(?x)a#", "a", "", true);
        row("too long", QString(1001, 'a'), "a", "", true);
        row("exponential", "(a+)+b .{99,}", QString(40, 'a') + "!b", "1", true);
        row("exponential, unless it fails", "(a+)+b", "aaab", "", false);
        row("deep", "(?:(?:(?:a*)*)*)*c", QString(200, 'a') + "!c", "", true);
        row("too long a password", "a+", QString(257, 'b'), "", true);
        row("too many", QString("a+ ").repeated(33).trimmed(), "a", "", true);
    }

    void rules()
    {
        const auto [rules, password] = fetched<QString, QString>("rules", "password");
        QJsonArray array;
        for (const QString& rule : rules.split(' ', Qt::SkipEmptyParts))
            array.append(QJsonObject{{"pwdRegularStr", rule},
                                     {"clientName", QString::number(array.size())}});
        const auto read = TQ::PasswordRules::fromJson({{"firstPwdRule", array}});
        const auto finding = read.check(password);
        QTEST(finding.errTips, "broken");
        QCOMPARE(finding.broken, !finding.errTips.isEmpty());
        QTEST(finding.unchecked, "unchecked");
        QCOMPARE(read.isEmpty(), rules.isEmpty());
    }

    void damagedRulesLockNobodyOut()
    {
        const auto read = TQ::PasswordRules::fromJson(
            JsonUtil::object(json("{'firstPwdRule':[7,{'pwdRegularStr':1}],'confirmPwdSame':2}")));
        QVERIFY(!read.check("x").broken && read.check("x").unchecked);
        QCOMPARE(read.confirmPwdSame, QString());
    }

    void codes()
    {
        for (const char* good : {"123456", "1234567"})
            QVERIFY2(isVerificationCode(good), good);
        for (const char* bad : {"", "12345", "12345a", "１２３４５６", "12345\n"})
            QVERIFY2(!isVerificationCode(bad), bad);
        for (int code : {1043, 1048, 1055, 1059, 1060})
            QVERIFY(isAccountChanged(code));
        for (int code : {0, 401, 1044, 1061})
            QVERIFY(!isAccountChanged(code));
    }

    void countdown()
    {
        TQ::Countdown countdown;
        countdown.start();
        for (int left = 59; left >= 0; --left) {
            countdown.tick();
            QCOMPARE(countdown.seconds(), left);
            QVERIFY(countdown.isRunning());
        }
        countdown.tick();
        QVERIFY(!countdown.isRunning());
        QCOMPARE(countdown.seconds(), 60);
    }

    void rows_data()
    {
        // The room is as wide as a text.
        const auto row = columns<QString, QString, bool, int>("text", "room", "chinese", "rows");
        row("fits", "aa bb", "aa bb", false, 1);
        row("a word too much", "aa bb c", "aa bb", false, 2);
        row("greedily", "aa bb cc dd ee", "aa bb", false, 3);
        row("a long word", "a bbbbbbbbbbbb c", "aa bb", false, 3);
        row("Chinese fits", "一二三四", "一二三四", true, 1);
        row("Chinese", "一二三四五六七八九", "一二三四", true, 2);
        row("no room", "aa bb", "", false, 2);
    }

    void rows()
    {
        const auto [text, room] = fetched<QString, QString>("text", "room");
        const QFontMetrics metrics{QFont()};
        platform().isChinese = [chinese = cell<bool>("chinese")] { return chinese; };
        QTEST(TQ::calcNeedRows(metrics, text, {0, 0, metrics.horizontalAdvance(room), 0}), "rows");
    }
};

QTEST_MAIN(PasswordDecisionsTest)
#include "PasswordDecisionsTest.moc"
