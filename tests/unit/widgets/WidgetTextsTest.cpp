#include "widgets/PromptText.h"
#include "widgets/QLabelAnim.h"

#include <QTest>

/// The small rules behind the widgets: where a long prompt breaks, how a spinner turns.
class WidgetTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void promptBreaks_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("width");
        QTest::addColumn<bool>("chinese");
        QTest::addColumn<QString>("shown");

        const QString words = QStringLiteral("aaaa bbbb cccc dddd");
        QTest::newRow("as wide as allowed") << words << 460 << false << words;
        QTest::newRow("a pixel wider")
            << words << 461 << false << QStringLiteral("aaaa bbbb \ncccc dddd");
        QTest::newRow("space on the middle itself")
            << QStringLiteral("aaaa bbbb") << 500 << false << QStringLiteral("aaaa \nbbbb");
        QTest::newRow("space before the middle does not count")
            << QStringLiteral("aa bbbbbbbbbbbbbb") << 500 << false
            << QStringLiteral("aa bbbbbbbbbbbbbb");
        QTest::newRow("full stop stays on its line") << QStringLiteral("aaaaaaaa.bbbbb") << 500
                                                     << false << QStringLiteral("aaaaaaaa.\nbbbbb");
        QTest::newRow("comma first")
            << QStringLiteral("aaaaaa,bb cc") << 500 << false << QStringLiteral("aaaaaa,\nbb cc");
        QTest::newRow("no empty second line") << QStringLiteral("aaaaaaaaaaaaaa.") << 500 << false
                                              << QStringLiteral("aaaaaaaaaaaaaa.");
        QTest::newRow("Chinese, at the middle whatever stands there")
            << QStringLiteral("一二三四 五六七") << 500 << true
            << QStringLiteral("一二三四\n 五六七");
        QTest::newRow("Chinese, odd length")
            << QStringLiteral("一二三四五") << 500 << true << QStringLiteral("一二\n三四五");
        QTest::newRow("Chinese, a character of two units is not cut")
            << QStringLiteral("一𠀀二") << 500 << true << QStringLiteral("一𠀀\n二");
        QTest::newRow("Chinese, narrow")
            << QStringLiteral("一二三四") << 100 << true << QStringLiteral("一二三四");
        QTest::newRow("empty") << QString() << 500 << true << QString();
    }

    void promptBreaks()
    {
        QFETCH(QString, text);
        QFETCH(int, width);
        QFETCH(bool, chinese);
        QTEST(breakPromptText(text, width, chinese), "shown");
    }

    void spinnerTurns()
    {
        int angle = 0;
        QVector<int> seen;
        do {
            seen.append(angle);
            angle = nextSpinnerAngle(angle);
        } while (angle != 0 && seen.size() < 1000);
        QCOMPARE(seen.size(), 36);
        QCOMPARE(seen.last(), 350);
    }
};

QTEST_GUILESS_MAIN(WidgetTextsTest)
#include "WidgetTextsTest.moc"
