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
    void uri()
    {
        const QString text = "otpauth://totp/%1?secret=%2&issuer=Veltaro_%3";
        QCOMPARE(otpAuthUri("alice", "10086", "ABCD"), text.arg("alice", "ABCD", "10086"));
        QCOMPARE(otpAuthUri("a b", "a.b", "K=/"), text.arg("a%20b", "K%3D%2F", "a.b"));
        QCOMPARE(otpAuthUri("four@f.o.u.rxy", "中中中中", "K"),
                 text.arg("four%40f.o.u.rx...", "K", QString("%E4%B8%AD").repeated(4)));
    }

    void qrModulesAreSharp()
    {
        const auto qr = qrcodegen::QrCode::encodeText("otpauth", qrcodegen::QrCode::Ecc::LOW);
        const int modules = qr.getSize() + 2;
        QImage expected(modules, modules, QImage::Format_RGB32);
        for (int i = 0; i < modules * modules; ++i) {
            const bool dark = qr.getModule(i % modules - 1, i / modules - 1);
            expected.setPixel(i % modules, i / modules, dark ? 0xff000000 : 0xffffffff);
        }
        for (const double ratio : {1.0, 1.5, 2.0}) {
            const QImage image = qrPicture("otpauth", 168, ratio);
            const int left = image.width() % modules / 2;
            const int side = image.width() - image.width() % modules;
            const QImage code = image.copy(left, left, side, side);
            QCOMPARE(image.width(), int(168 * ratio));
            QVERIFY(code.convertToFormat(expected.format()) == expected.scaled(side, side));
        }
        QVERIFY(qrPicture(QString(3000, 'x'), 168, 1).isNull());
    }

    void cells()
    {
        // < is Backspace, @ and a number a click on that cell, | what follows is pasted at once.
        const auto check = [](const QString& keys, const char* text, int active) {
            DigitCells cells;
            const QStringList parts = keys.split('|');
            for (int at = 0; at < parts[0].size(); ++at) {
                if (keys[at] == '<')
                    cells.erase();
                else if (keys[at] == '@')
                    cells.select(keys[++at].digitValue());
                else
                    cells.type(keys[at]);
            }
            cells.paste(parts.value(1));
            QCOMPARE(qMakePair(cells.text(), cells.active()), qMakePair(QString(text), active));
        };
        check("a1 -２", "12", 2);
        check("1234567", "123456", 6);
        check("123456<", "12345", 5);
        check("123456@2<", "12456", 2);
        check("12<<", "", 0);
        check("1@2345", "1345", 5);
        check("999999|１２３-4 56\n", "123456", 6);
        check("12|34", "1234", 4);
        check("12|12345x", "12", 2);
    }

    void recovery()
    {
        const auto check = [](int status, const char* body, bool done, const char* error) {
            const OrchReply reply(json(body), status);
            const auto result = OtpRecovery::fromReply(reply, {});
            QCOMPARE(qMakePair(result.done, result.error.left(13)),
                     qMakePair(done, QString(error)));
        };
        check(200, "{'otpKey':'K'}", true, "");
        check(200, "{'code':0,'otpKey':'K'}", false, "");
        check(200, "{'code':null,'otpKey':'K'}", true, "");
        check(200, "<html>", false, "6014 The Orch");
        check(400, "{'code':1110}", false, "The recovery ");
    }
};

QTEST_GUILESS_MAIN(AuthenticatorDecisionsTest)
#include "AuthenticatorDecisionsTest.moc"
