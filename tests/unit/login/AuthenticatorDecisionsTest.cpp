#include "login/DigitCells.h"
#include "login/OtpAuthUri.h"
#include "login/OtpRecovery.h"
#include "login/QrPicture.h"
#include "support/Rows.h"

#include <qrcodegen.hpp>

/// What an authenticator is told, how its code is typed, and what a recovery's answer means.
class AuthenticatorDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void uri_data()
    {
        const auto row =
            columns<QString, QString, QString, QString>("user", "customer", "key", "uri");
        row("plain", "alice", "10086", "ABCDEFGHIJKLMNOP",
            "alice?secret=ABCDEFGHIJKLMNOP&issuer=Veltaro_10086");
        row("encoded", "a b", "a.b", "K=/", "a%20b?secret=K%3D%2F&issuer=Veltaro_a.b");
        row("cut", "four@f.o.u.rxy", "中文公司名", "K",
            "four%40f.o.u.rx...?secret=K&issuer=Veltaro_%E4%B8%AD%E6%96%87%E5%85%AC%E5%8F%B8...");
    }

    void uri()
    {
        const auto [user, customer, key] =
            fetched<QString, QString, QString>("user", "customer", "key");
        QCOMPARE(otpAuthUri(user, customer, key), "otpauth://totp/" + cell<QString>("uri"));
    }

    void qrModulesAreSharp()
    {
        const QString text = otpAuthUri("olga@acme.example", "acme", "JBSWY3DPEHPK3PXP");
        const auto qr = qrcodegen::QrCode::encodeText(text.toUtf8(), qrcodegen::QrCode::Ecc::LOW);
        for (const double ratio : {1.0, 1.5, 2.0}) {
            const QImage image = qrPicture(text, 168, ratio);
            QCOMPARE(image.width(), int(168 * ratio));
            const int modules = qr.getSize() + 2;
            const int side = image.width() / modules;
            const int left = (image.width() - side * modules) / 2;
            int wrong = 0;
            for (int y = 0; y < side * modules; ++y) {
                for (int x = 0; x < side * modules; ++x) {
                    const bool dark = qr.getModule(x / side - 1, y / side - 1);
                    wrong += image.pixel(left + x, left + y) != (dark ? 0xff000000 : 0xffffffff);
                }
            }
            QCOMPARE(wrong, 0);
        }
        QVERIFY(qrPicture(QString(3000, 'x'), 168, 1).isNull());
        QVERIFY(qrPicture(QString(1000, QChar(0x4e2d)), 168, 1).isNull());
    }

    void cells_data()
    {
        // < is Backspace, @ and a number a click on that cell, | what follows is pasted at once.
        const auto row = columns<QString, QString, int>("keys", "text", "active");
        row("a seventh digit", "1234567", "123456", 6);
        row("no digits", "a1 -", "1", 1);
        row("of another script", "１٢", "12", 2);
        row("back from the end", "123456<", "12345", 5);
        row("back in a filled cell", "123456@2<", "12456", 2);
        row("back in an empty cell", "12<", "1", 1);
        row("back in the first cell", "<", "", 0);
        row("a cell left out", "1@2345", "1345", 5);
        row("pasted", "9|123-456", "123456", 6);
        row("pasted over", "999999|１２３ 456\n", "123456", 6);
        row("pasted in part", "12|34", "1234", 4);
        row("pasted too much", "12|1234567", "12", 2);
        row("pasted words", "12|12345x", "12", 2);
        row("pasted nothing", "12| ", "12", 2);
    }

    void cells()
    {
        const QString keys = cell<QString>("keys");
        DigitCells cells;
        for (int at = 0; at < keys.size(); ++at) {
            if (keys[at] == '|') {
                cells.paste(keys.mid(at + 1));
                break;
            }
            if (keys[at] == '<')
                cells.erase();
            else if (keys[at] == '@')
                cells.select(keys[++at].digitValue());
            else
                cells.type(keys[at]);
        }
        QTEST(cells.text(), "text");
        QTEST(cells.active(), "active");
    }

    void recovery_data()
    {
        const auto row = columns<int, QByteArray, bool, QString>("status", "body", "done", "error");
        row("taken", 200, "{'otpKey':'K','otpMiddleToken':'T'}", true, "");
        row("with a code", 200, "{'code':0,'otpKey':'K','otpMiddleToken':'T'}", false, "");
        row("without a key", 200, "<html>", false, "6014 ");
        row("malformed", 400, "{'code':1110,'message':'m'}", false, "The recovery code should");
        row("wrong", 400, "{'code':1111,'message':'m'}", false, "text ");
        row("unknown", 503, "<html>", false, "6009 System error (503).");
        row("empty", 404, "", false, "6009 System error (404).");
        row("not answered", 0, "", false, "Connection refused");
    }

    void recovery()
    {
        const auto [status, body] = fetched<int, QByteArray>("status", "body");
        const auto failure =
            status == 0 ? QNetworkReply::ConnectionRefusedError : QNetworkReply::NoError;
        const auto text = [](const OrchReply& of) { return of.code() ? "text " : QString(); };
        const auto result = OtpRecovery::fromReply(
            OrchReply(json(body), status, failure, "Connection refused"), {false, text, {}});
        QTEST(result.done, "done");
        const QString error = cell<QString>("error");
        QCOMPARE(error.isEmpty() ? result.error : result.error.left(error.size()), error);
        QCOMPARE(result.otpMiddleToken, body.contains("'T'") ? "T" : "");
    }
};

QTEST_GUILESS_MAIN(AuthenticatorDecisionsTest)
#include "AuthenticatorDecisionsTest.moc"
