#include "support/Rows.h"
#include "widgets/PromptText.h"
#include "widgets/QLabelAnim.h"

/// The small rules behind the widgets: where a long prompt breaks, how a spinner turns.
class WidgetTextsTest : public QObject
{
    Q_OBJECT

private slots:
    void promptBreaks()
    {
        const auto row =
            checked([](const QString& text, int width, bool chinese, const QString& shown) {
                QCOMPARE(breakPromptText(text, width, chinese), shown);
            });
        row("as wide as allowed", "aaaa bbbb cccc dddd", 460, false, "aaaa bbbb cccc dddd");
        row("a pixel wider", "aaaa bbbb cccc dddd", 461, false, "aaaa bbbb \ncccc dddd");
        row("space on the middle itself", "aaaa bbbb", 500, false, "aaaa \nbbbb");
        row("space before the middle does not count", "aa bbbbbbbbbbbbbb", 500, false,
            "aa bbbbbbbbbbbbbb");
        row("full stop stays on its line", "aaaaaaaa.bbbbb", 500, false, "aaaaaaaa.\nbbbbb");
        row("comma first", "aaaaaa,bb cc", 500, false, "aaaaaa,\nbb cc");
        row("no empty second line", "aaaaaaaaaaaaaa.", 500, false, "aaaaaaaaaaaaaa.");
        row("Chinese, at the middle", "一二三四 五六七", 500, true, "一二三四\n 五六七");
        row("Chinese, odd length", "一二三四五", 500, true, "一二\n三四五");
        row("Chinese, a pair is not cut", "一𠀀二", 500, true, "一𠀀\n二");
        row("Chinese, narrow", "一二三四", 100, true, "一二三四");
        row("empty", "", 500, true, "");
    }

    void spinnerTurns()
    {
        for (int angle = 0; angle < 350; angle += 10)
            QCOMPARE(nextSpinnerAngle(angle), angle + 10);
        QCOMPARE(nextSpinnerAngle(350), 0);
    }
};

QTEST_GUILESS_MAIN(WidgetTextsTest)
#include "WidgetTextsTest.moc"
