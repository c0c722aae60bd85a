#include "orch/QrSvg.h"
#include "orch/TextUtil.h"
#include "support/Rows.h"

#include <qrcodegen.hpp>

class TextTest : public QObject
{
    Q_OBJECT

private slots:
    void addresses()
    {
        for (const char* valid : {"192.168.1.20", "0.0.0.0", "255.255.255.255", "01.02.03.04"})
            QVERIFY2(Util::checkIp(valid), valid);
        for (const char* invalid : {"256.1.1.1", "1.1.1.300", "1.2.3", "1.2.3.4.5", "1.2.3.4\n",
                                    " 1.2.3.4", "1.2.3.4:80", "1a2b3c4", "\xd9\xa1.2.3.4", ""})
            QVERIFY2(!Util::checkIp(invalid), invalid);
    }

    void versions()
    {
        const auto row = checked([](const QString& a, const QString& b, int order) {
            QCOMPARE(Util::compareVersion(a, b), order);
            QCOMPARE(Util::compareVersion(b, a), -order);
        });
        row("same", "6.1.20", "6.1.20", 0);
        row("by number", "6.1.3", "6.1.20", -1);
        row("shorter", "6.2", "6.1.20", -1);
        row("shorter, higher", "7.0", "6.1.20", -1);
        row("longer", "6.1.20.1", "6.1.20", 1);
        row("leading zero", "6.1.020", "6.1.20", 0);
        row("letters", "6.1.x", "6.1.0", 0);
        row("beyond 32 bits", "6.1.4294967296", "6.1.20", 1);
        row("empty", "", "6", -1);
        row("empty part", "6.1.", "6.1.0", 0);
    }

    void tokens()
    {
        for (const char* valid : {"", "aZ09", "令牌", "𠀀"})
            QVERIFY2(Util::isTokenValid(valid), valid);
        for (const char* invalid : {"a b", "a-b", "a_b", "ab\n", "a，b"})
            QVERIFY2(!Util::isTokenValid(invalid), invalid);
        QVERIFY(!Util::isTokenValid(QString(1, QChar(0))));
    }

    void cutting()
    {
        const auto row =
            checked([](const QString& text, const QString& width5, const QString& encoded20) {
                QCOMPARE(Util::GetStringWithLength(text, 5), width5);
                QCOMPARE(Util::GetUrlEncodeStringOfLength(text, 20), encoded20);
            });
        row("empty", "", "", "");
        row("fits", "abcde", "abcde", "abcde");
        row("ascii", "abcdef", "abcde...", "abcdef");
        row("Chinese", "中文客户", "中文...", "中文...");
        row("mixed", "a中文b", "a中文...", "a中文b");
        row("Latin-1 is narrow", "éééééé", "ééééé...", "éé...");
        row("the last Latin-1 is wide", "ÿÿÿ", "ÿÿ...", "ÿÿ...");
        row("signs are encoded", "a@b.c", "a@b.c", "a@b....");
        row("no half characters", "ab😀😀", "ab😀...", "ab😀😀");
    }

    void rates()
    {
        const auto check = [](qlonglong bps, const QString& text) {
            QString unit;
            const QString number = Util::transToReadableBps(bps, unit);
            QCOMPARE(number + ' ' + unit, text);
        };
        check(0, "0.0 Kbps");
        check(999, "1.0 Kbps");
        check(1000, "1.0 Kbps");
        check(1000000, "1000.0 Kbps");
        check(1000001, "1.0 Mbps");
        check(1500000, "1.5 Mbps");
        check(1000000000, "1000.0 Mbps");
        check(2340000000LL, "2.3 Gbps");
        check(5000000000000LL, "5000.0 Gbps");
        check(-5000, "-5.0 Kbps");
    }

    void smallOnes()
    {
        QCOMPARE(Util::trimmedHost("c.example:443:1"), QString("c.example"));
        QCOMPARE(Util::trimmedHost("c.example"), QString("c.example"));
        QCOMPARE(Util::trimmedHost(":443"), QString());
        QCOMPARE(Util::removeUnvisibleUnicode(QStringLiteral(" \u0001a\u007f\u0085 b\u009f\t ")),
                 QString("a b"));
        QCOMPARE(Util::removeUnvisibleUnicode(QStringLiteral("\u00a0é~")), QString("é~"));
    }

    void qrCodeBorders()
    {
        const auto qr = qrcodegen::QrCode::encodeText("x", qrcodegen::QrCode::Ecc::LOW);
        QVERIFY(Util::qrCode2SvgString(qr, 0).contains(
            QString("viewBox=\"0 0 %1 %1\"").arg(qr.getSize())));
        for (const int border : {-1, 1073741823, std::numeric_limits<int>::max()}) {
            QTest::ignoreMessage(QtCriticalMsg, QRegularExpression("^Border (must|too large)"));
            QCOMPARE(Util::qrCode2SvgString(qr, border), QString());
        }
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "tst_text.moc"
