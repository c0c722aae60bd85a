#include "orch/Util.h"

#include <qrcodegen.hpp>

#include <QtTest>
#include <QXmlStreamReader>

#include <limits>

class TextTest : public QObject
{
    Q_OBJECT

private slots:
    void addresses_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("valid");
        const auto row = [](const char* text, bool valid) {
            QTest::newRow(text) << QString::fromUtf8(text) << valid;
        };
        row("192.168.1.20", true);
        row("0.0.0.0", true);
        row("255.255.255.255", true);
        row("01.02.03.04", true);
        row("256.1.1.1", false);
        row("1.1.1.300", false);
        row("1.2.3", false);
        row("1.2.3.4.5", false);
        row("1.2.3.4\n", false);
        row(" 1.2.3.4", false);
        row("1.2.3.4:80", false);
        row("1a2b3c4", false);
        row("\xd9\xa1.2.3.4", false); // an Arabic digit
        row("", false);
    }

    void addresses()
    {
        QFETCH(QString, text);
        QTEST(Util::checkIp(text), "valid");
    }

    void versions_data()
    {
        QTest::addColumn<QString>("a");
        QTest::addColumn<QString>("b");
        QTest::addColumn<int>("order");
        const auto row = [](const char* a, const char* b, int order) {
            QTest::addRow("%s %s", a, b)
                << QString::fromLatin1(a) << QString::fromLatin1(b) << order;
        };
        row("6.1.20", "6.1.20", 0);
        row("6.1.3", "6.1.20", -1);
        row("6.2", "6.1.20", -1);
        row("7.0", "6.1.20", -1);
        row("6.1.20.1", "6.1.20", 1);
        row("6.1.020", "6.1.20", 0);
        row("6.1.x", "6.1.0", 0);
        row("6.1.4294967296", "6.1.20", 1);
        row("", "6", -1);
        row("6.1.", "6.1.0", 0);
    }

    void versions()
    {
        QFETCH(QString, a);
        QFETCH(QString, b);
        QFETCH(int, order);
        QCOMPARE(Util::compareVersion(a, b), order);
        QCOMPARE(Util::compareVersion(b, a), -order);
    }

    void tokens_data()
    {
        QTest::addColumn<QString>("token");
        QTest::addColumn<bool>("valid");
        QTest::newRow("empty") << QString() << true;
        QTest::newRow("plain") << QStringLiteral("aZ09") << true;
        QTest::newRow("Chinese") << QStringLiteral("令牌") << true;
        QTest::newRow("beyond 16 bits") << QStringLiteral("𠀀") << true;
        QTest::newRow("space") << QStringLiteral("a b") << false;
        QTest::newRow("sign") << QStringLiteral("a-b") << false;
        QTest::newRow("underscore") << QStringLiteral("a_b") << false;
        QTest::newRow("line feed") << QStringLiteral("ab\n") << false;
        QTest::newRow("full-width comma") << QStringLiteral("a，b") << false;
        QTest::newRow("zero") << QString(1, QChar(0)) << false;
    }

    void tokens()
    {
        QFETCH(QString, token);
        QTEST(Util::isTokenValid(token), "valid");
    }

    void cutting_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("width5");
        QTest::addColumn<QString>("encoded20");
        const auto row = [](const char* name, const QString& text, const QString& width5,
                            const QString& encoded20) {
            QTest::newRow(name) << text << width5 << encoded20;
        };
        row("empty", QString(), QString(), QString());
        row("fits", QStringLiteral("abcde"), QStringLiteral("abcde"), QStringLiteral("abcde"));
        row("ascii", QStringLiteral("abcdef"), QStringLiteral("abcde..."),
            QStringLiteral("abcdef"));
        row("Chinese", QStringLiteral("中文客户"), QStringLiteral("中文..."),
            QStringLiteral("中文..."));
        row("mixed", QStringLiteral("a中文b"), QStringLiteral("a中文..."),
            QStringLiteral("a中文b"));
        row("Latin-1 is narrow", QStringLiteral("éééééé"), QStringLiteral("ééééé..."),
            QStringLiteral("éé..."));
        row("the last Latin-1 is wide", QStringLiteral("ÿÿÿ"), QStringLiteral("ÿÿ..."),
            QStringLiteral("ÿÿ..."));
        row("signs are encoded", QStringLiteral("a@b.c"), QStringLiteral("a@b.c"),
            QStringLiteral("a@b...."));
        row("no half characters", QStringLiteral("ab😀😀"), QStringLiteral("ab😀..."),
            QStringLiteral("ab😀😀"));
    }

    void cutting()
    {
        QFETCH(QString, text);
        QTEST(Util::GetStringWithLength(text, 5), "width5");
        QTEST(Util::GetUrlEncodeStringOfLength(text, 20), "encoded20");
    }

    void rates_data()
    {
        QTest::addColumn<qlonglong>("bps");
        QTest::addColumn<QString>("text");
        const auto row = [](qlonglong bps, const char* text) {
            QTest::addRow("%lld", bps) << bps << QString::fromLatin1(text);
        };
        row(0, "0.0 Kbps");
        row(999, "1.0 Kbps");
        row(1000, "1.0 Kbps");
        row(1000000, "1000.0 Kbps");
        row(1000001, "1.0 Mbps");
        row(1500000, "1.5 Mbps");
        row(1000000000, "1000.0 Mbps");
        row(2340000000LL, "2.3 Gbps");
        row(5000000000000LL, "5000.0 Gbps");
        row(-5000, "-5.0 Kbps");
    }

    void rates()
    {
        QFETCH(qlonglong, bps);
        QString unit;
        const QString number = Util::transToReadableBps(bps, unit);
        QTEST(number + QLatin1Char(' ') + unit, "text");
    }

    void smallOnes()
    {
        QCOMPARE(Util::trimmedHost(QStringLiteral("c.example:443:1")), QStringLiteral("c.example"));
        QCOMPARE(Util::trimmedHost(QStringLiteral("c.example")), QStringLiteral("c.example"));
        QCOMPARE(Util::trimmedHost(QStringLiteral(":443")), QString());
        QCOMPARE(Util::removeUnvisibleUnicode(QStringLiteral(" \u0001a\u007f\u0085 b\u009f\t ")),
                 QStringLiteral("a b"));
        QCOMPARE(Util::removeUnvisibleUnicode(QStringLiteral("\u00a0é~")), QStringLiteral("é~"));
    }

    void qrCodeAsSvg()
    {
        const auto qr = qrcodegen::QrCode::encodeText("otpauth://totp/x?secret=ABC",
                                                      qrcodegen::QrCode::Ecc::LOW);
        const QString svg = Util::qrCode2SvgString(qr, 4);
        const QString side = QString::number(qr.getSize() + 8);
        QSet<QPair<int, int>> dark;
        QXmlStreamReader xml(svg);
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement)
                continue;
            if (xml.name() == QLatin1String("svg")) {
                QCOMPARE(xml.attributes().value(QStringLiteral("viewBox")).toString(),
                         QStringLiteral("0 0 %1 %1").arg(side));
            }
            const QString path = xml.attributes().value(QStringLiteral("d")).toString();
            const auto squares = path.split(QLatin1Char(' '), Qt::SkipEmptyParts);
            for (const QString& square : squares) {
                static const QRegularExpression form(
                    QStringLiteral("\\AM(\\d+),(\\d+)h1v1h-1z\\z"));
                const auto match = form.match(square);
                QVERIFY2(match.hasMatch(), qPrintable(square));
                dark.insert({match.captured(1).toInt() - 4, match.captured(2).toInt() - 4});
            }
        }
        QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
        for (int y = 0; y < qr.getSize(); ++y) {
            for (int x = 0; x < qr.getSize(); ++x)
                QCOMPARE(dark.contains({x, y}), qr.getModule(x, y));
        }
    }

    void qrCodeBorders()
    {
        const auto qr = qrcodegen::QrCode::encodeText("x", qrcodegen::QrCode::Ecc::LOW);
        QVERIFY(Util::qrCode2SvgString(qr, 0).contains(
            QStringLiteral("viewBox=\"0 0 %1 %1\"").arg(qr.getSize())));
        QTest::ignoreMessage(QtCriticalMsg, "Border must be non-negative");
        QCOMPARE(Util::qrCode2SvgString(qr, -1), QString());
        for (const int border : {1073741824, 1073741823, std::numeric_limits<int>::max()}) {
            QTest::ignoreMessage(QtCriticalMsg, "Border too large");
            QCOMPARE(Util::qrCode2SvgString(qr, border), QString());
        }
    }
};

QTEST_GUILESS_MAIN(TextTest)
#include "tst_text.moc"
