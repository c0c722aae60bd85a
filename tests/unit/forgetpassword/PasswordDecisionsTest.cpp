#include "app/Platform.h"
#include "forgetpassword/PasswordRules.h"
#include "forgetpassword/ResetAccount.h"
#include "forgetpassword/TipsPopupWidget.h"
#include "orch/JsonUtil.h"
#include "support/Rows.h"

#include <QJsonArray>

class PasswordDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void resetMethods()
    {
        const auto take = [](const QByteArray& reply, ResetOffer offer, int ways) {
            ResetAccount account;
            account.phoneNumber = "of an earlier answer";
            QCOMPARE(account.take(JsonUtil::object(json(reply))), offer);
            QCOMPARE(int(account.supportResetType()), ways);
        };
        using Offer = ResetOffer;
        take("{'resetPwdMethod':0,'mailbox':'a@b'}", Offer::ShowPage, RESET_EMAIL);
        take("{'resetPwdMethod':0}", Offer::NoAddress, RESET_INVALID);
        take("{'resetPwdMethod':1,'phone':'1','mailbox':'a@b'}", Offer::ShowPage, RESET_BOTH);
        take("{'resetPwdMethod':1,'mailbox':'a@b'}", Offer::NoPhone, RESET_EMAIL);
        take("{'resetPwdMethod':2,'phone':'1'}", Offer::NoMailbox, RESET_PHONE);
        take("{'resetPwdMethod':3}", Offer::Unsupported, RESET_INVALID);
        take("{'resetPwdMethod':4,'phone':1}", Offer::Unusable, RESET_INVALID);
        take("<html>", Offer::Unusable, RESET_INVALID);
    }

    void rules_data()
    {
        // Several rules are separated by a space, and their tips are numbers.
        const auto row =
            columns<QString, QString, QString, bool>("rules", "password", "broken", "unchecked");
        row("the first", ".{8,} .*\\d.*", "abc", "0", false);
        row("the second", ".{8,} .*\\d.*", "abcdefgh", "1", false);
        row("all kept", ".{8,} .*\\d.*", "abcdefg1", "", false);
        row("a shorter alternative", "a|ab", "ab", "", false);
        row("does not compile", "[a .{8,}", "abc", "1", true);
        row("whole only between anchors", "a)|(b", "x", "", true);
        row("swallows what follows", "(?x)a#", "a", "", true);
        row("too long", QString(1001, 'a'), "a", "", true);
        row("exponential", "(a+)+b .{99,}", QString(40, 'a') + "!b", "1", true);
        row("too many", QString("a+ ").repeated(33).trimmed(), "a", "", true);
    }

    void rules()
    {
        QJsonArray rules;
        for (const QString& rule : cell<QString>("rules").split(' '))
            rules.append(QJsonObject{{"pwdRegularStr", rule},
                                     {"clientName", QString::number(rules.size())}});
        const auto read = TQ::PasswordRules::fromJson({{"firstPwdRule", rules}});
        const auto finding = read.check(cell<QString>("password"));
        QTEST(finding.errTips, "broken");
        QTEST(finding.unchecked, "unchecked");
    }

    void codes()
    {
        QVERIFY(isVerificationCode("123456") && !isVerificationCode("12345"));
        QVERIFY(!isVerificationCode("12345a") && !isVerificationCode("１２３４５６"));
        for (int code : {1043, 1048, 1055, 1059, 1060})
            QVERIFY(isAccountChanged(code));
        QVERIFY(!isAccountChanged(1044));
    }

    void rows()
    {
        const auto check = [](bool chinese, const QString& text, const QString& room, int rows) {
            const QFontMetrics metrics{QFont()};
            platform().isChinese = [chinese] { return chinese; };
            const QRect rect(0, 0, metrics.horizontalAdvance(room), 0);
            QCOMPARE(TQ::calcNeedRows(metrics, text, rect), rows);
        };
        check(false, "aa bb", "aa bb", 1);
        check(false, "aa bb cc dd ee", "aa bb", 3);
        check(false, "a bbbbbbbbbbbb c", "aa bb", 3);
        check(true, "一二三四五六七八九", "一二三四", 2);
    }
};

QTEST_MAIN(PasswordDecisionsTest)
#include "PasswordDecisionsTest.moc"
