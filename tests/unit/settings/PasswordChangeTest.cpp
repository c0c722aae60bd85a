#include "settings/PasswordChangeRules.h"
#include "support/Rows.h"

class PasswordChangeTest : public QObject
{
    Q_OBJECT

private slots:
    void faults()
    {
        const auto row = checked([](const QString& old, const QString& fresh,
                                    const QString& confirm, const QString& fault) {
            QCOMPARE(passwordchange::fault(old, fresh, confirm), fault);
        });
        row("nothing", "", "", "", "Old password is a required field");
        row("no new one", "a", "", "", "New password is a required field");
        row("no confirmation", "a", "b", "", "Confirm password is a required field");
        row("65 characters, not confirmed", "a", QString(65, 'b'), "c",
            "Password too long. Please enter again.");
        row("64 characters", "a", QString(64, 'b'), QString(64, 'b'), "");
        row("another case", "a", "b", "B", "Confirm password and new password are inconsistent");
    }

    void answers()
    {
        const auto row =
            checked([](int status, const QByteArray& body, int end, const QString& text) {
                const auto error =
                    status < 300 ? QNetworkReply::NoError : QNetworkReply::UnknownContentError;
                OrchTexts texts;
                texts.content = [](const OrchReply& reply) {
                    return QStringLiteral("text of %1").arg(reply.code());
                };
                const auto answer = passwordchange::answer(
                    OrchReply(json(body), status, error, error ? "transport error" : ""), texts);
                QCOMPARE(answer.changed, end < 0);
                QCOMPARE(answer.sessionInvalid, status == 401);
                QCOMPARE(int(answer.end), qMax(end, 0));
                QCOMPARE(answer.text, text);
            });
        const QByteArray lost = "{'i18nKey':'k','code':401,'parameters':{'invalidReasonCode':";
        row("accepted", 200, "{}", -1, "");
        row("accepted, whatever it says", 200, "{'i18nKey':'k','code':406}", -1, "");
        row("406", 406, "{'i18nKey':'Used before.','code':406}", 0, "Used before.");
        row("406 without a text", 406, "{'i18nKey':7,'code':406}", 0,
            "6009 System error (406). Please contact your network administrator.");
        row("another code", 400, "{'i18nKey':'k','code':1062}", 0, "text of 1062");
        row("no key", 400, "{'code':406}", 0, "transport error");
        row("nothing", 502, "", 0, "transport error");
        row("204", 204, "", 0,
            "6009 System error (204). Please contact your network administrator.");
        row("invalid, no reason", 401, "{'i18nKey':'k','code':401}", 0, "text of 401");
        row("forced", 401, lost + "3}}", int(SessionEnd::ForcedLogout), "");
        row("another reason", 401, lost + "0}}", int(SessionEnd::InvalidToken), "");
    }
};

QTEST_GUILESS_MAIN(PasswordChangeTest)
#include "PasswordChangeTest.moc"
