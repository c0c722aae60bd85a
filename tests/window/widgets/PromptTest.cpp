#include "widgets/PromptText.h"
#include "widgets/WidgetTopPrompt.h"
#include "window/widgets/Looks.h"

namespace {

constexpr int kNothing = -1;

QVector<QPair<int, QString>> logged; // level and text

void collect(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (text.startsWith("<DISPLAY> "))
        logged.append({type, text});
}

} // namespace

class PromptTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { looks::prepare(); }
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_window->resize(600, 400);
        m_prompt = new WidgetTopPrompt(m_window.get());
        m_window->show();
        QVERIFY(!m_prompt->isVisible());
    }

    void cleanup() { m_window.reset(); }

    void staysOrHidesAndIsLogged()
    {
        using P = WidgetTopPrompt;
        const auto row = checked([this](P::PROMPT_TYPE type, bool log, const QColor& colour,
                                        int level) {
            // Long enough to be broken and shortened on the screen: the log takes it as it is.
            const QString text = QString("6009 \"%1\" 50% ").repeated(100);
            logged.clear();
            const QtMessageHandler before = qInstallMessageHandler(&collect);
            m_prompt->showPrompt(type, text, log);
            qInstallMessageHandler(before);
            using Lines = QVector<QPair<int, QString>>;
            QCOMPARE(logged, level == kNothing ? Lines() : Lines({{level, "<DISPLAY> " + text}}));
            QVERIFY(m_prompt->isVisible());
            QCOMPARE(label()->palette().color(QPalette::WindowText), colour);
            QCOMPARE(timer()->isActive(), type == P::SHOW_SUCCESS);
            if (!timer()->isActive())
                return;
            QCOMPARE(timer()->interval(), 4000);
            timer()->start(1);
            QTRY_VERIFY(!m_prompt->isVisible());
            QVERIFY(!timer()->isActive());
        });
        row("success", P::SHOW_SUCCESS, true, QColor(53, 64, 82), kNothing);
        row("warning", P::SHOW_WARNING, true, QColor(255, 170, 0), QtWarningMsg);
        row("error", P::SHOW_ERROR, true, QColor(255, 85, 85), QtCriticalMsg);
        row("quiet warning", P::SHOW_WARNING, false, QColor(255, 170, 0), kNothing);
        row("quiet error", P::SHOW_ERROR, false, QColor(255, 85, 85), kNothing);
    }

    // The timer of a success must not take away the error that replaced it, nor count on from an
    // earlier success.
    void errorAfterSuccessStays()
    {
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, "Good", false);
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, "Bad", false);
        QVERIFY(!timer()->isActive());
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, "Good", false);
        m_prompt->hidePrompt();
        QVERIFY(!timer()->isActive());
    }

    void staysInTheMiddleUntilItIsClosed()
    {
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, "Bad", false);
        m_window->resize(800, 400);
        m_prompt->refreshPos();
        QVERIFY(isCentred());
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, "A longer one", false);
        QVERIFY(isCentred());
        QCOMPARE(looks::unnamed(m_prompt), QStringList());
        auto* close = m_prompt->findChild<QPushButton*>("btnClose");
        QVERIFY(m_prompt->rect().contains(close->geometry()));
        QTest::mouseClick(close, Qt::LeftButton);
        QVERIFY(!m_prompt->isVisible());
    }

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

    void fitsItsWindow()
    {
        const auto row = checked([this](const QString& text, bool chinese, int lines) {
            const looks::Language language(chinese);
            m_prompt = new WidgetTopPrompt(m_window.get());
            m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, text, false);

            QVERIFY(isCentred());
            QVERIFY(m_window->rect().contains(m_prompt->geometry()));
            QCOMPARE(looks::clipped(m_prompt), QStringList());
            QCOMPARE(label()->textFormat(), Qt::PlainText);
            QTextDocument tip; // as a tool tip takes its text
            const bool rich = Qt::mightBeRichText(m_prompt->toolTip());
            rich ? tip.setHtml(m_prompt->toolTip()) : tip.setPlainText(m_prompt->toolTip());
            if (!tip.isEmpty())
                QCOMPARE(tip.toPlainText().trimmed(), text.left(4000).trimmed());
            const QStringList shown = label()->text().split('\n');
            if (lines > 0) {
                QCOMPARE(shown.size(), lines);
                QCOMPARE(shown.join(""), QString(text).remove('\n'));
            }
        });
        row("short", "Veltaro is connected", false, 1);
        row("two lines",
            "6022 Network connection error: It appears that all tunnels have been disconnected. "
            "Rebuilding a tunnel...",
            false, 2);
        row("two Chinese lines, the second wider",
            "6022 abcdefghi "
            "网络连接异常所有隧道均已断开正在重建隧道请稍候如果长时间未恢复请联系网络管理员",
            true, 2);
        row("one long word", QString(120, 'w'), false, 0);
        row("a page of text", QString("some <img src=x> words ").repeated(5000), false, 0);
        row("own lines", "first\nsecond", false, 2);
        row("mark-up is text", "<b>bold</b><img src=x>", false, 1);
    }

private:
    QLabel* label() const { return m_prompt->findChild<QLabel*>("labelText"); }
    bool isCentred() const
    {
        return qAbs(m_prompt->geometry().center().x() - m_window->rect().center().x()) <= 1;
    }
    QTimer* timer() const { return m_prompt->findChild<QTimer*>("m_HideTimer"); }

    std::unique_ptr<QWidget> m_window;
    WidgetTopPrompt* m_prompt = nullptr;
};

QTEST_MAIN(PromptTest)
#include "PromptTest.moc"
