#include "widgets/WidgetTopPrompt.h"
#include "window/widgets/Looks.h"

#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

Q_DECLARE_METATYPE(WidgetTopPrompt::PROMPT_TYPE)

namespace {

struct Line
{
    QtMsgType type;
    QString text;
};
QVector<Line> logged;

void collect(QtMsgType type, const QMessageLogContext&, const QString& text)
{
    if (text.startsWith(QLatin1String("<DISPLAY> ")))
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

    void staysOrHides_data()
    {
        QTest::addColumn<WidgetTopPrompt::PROMPT_TYPE>("type");
        QTest::addColumn<QColor>("colour");
        QTest::addColumn<bool>("hides");
        QTest::newRow("success") << WidgetTopPrompt::SHOW_SUCCESS << QColor(53, 64, 82) << true;
        QTest::newRow("warning") << WidgetTopPrompt::SHOW_WARNING << QColor(255, 170, 0) << false;
        QTest::newRow("error") << WidgetTopPrompt::SHOW_ERROR << QColor(255, 85, 85) << false;
    }

    void staysOrHides()
    {
        QFETCH(WidgetTopPrompt::PROMPT_TYPE, type);
        QFETCH(bool, hides);
        m_prompt->showPrompt(type, QStringLiteral("Text"), false);
        QVERIFY(m_prompt->isVisible());
        QCOMPARE(label()->text(), QStringLiteral("Text"));
        QTEST(label()->palette().color(QPalette::WindowText), "colour");
        QCOMPARE(timer()->isActive(), hides);
        if (!hides)
            return;
        QCOMPARE(timer()->interval(), 4000);
        timer()->start(1);
        QTRY_VERIFY(!m_prompt->isVisible());
        QVERIFY(!timer()->isActive());
    }

    // The timer of a success must not take away the error that replaced it, nor count on from an
    // earlier success.
    void errorAfterSuccessStays()
    {
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, QStringLiteral("Good"), false);
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, QStringLiteral("Bad"), false);
        QVERIFY(!timer()->isActive());
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_SUCCESS, QStringLiteral("Good"), false);
        m_prompt->hidePrompt();
        QVERIFY(!timer()->isActive());
    }

    void closes()
    {
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, QStringLiteral("Bad"), false);
        QCOMPARE(looks::unnamed(m_prompt), QStringList());
        auto* close = m_prompt->findChild<QPushButton*>(QStringLiteral("btnClose"));
        QVERIFY(m_prompt->rect().contains(close->geometry()));
        QTest::mouseClick(close, Qt::LeftButton);
        QVERIFY(!m_prompt->isVisible());
    }

    void logs_data()
    {
        QTest::addColumn<WidgetTopPrompt::PROMPT_TYPE>("type");
        QTest::addColumn<bool>("log");
        QTest::addColumn<int>("level"); // -1: nothing
        QTest::newRow("success") << WidgetTopPrompt::SHOW_SUCCESS << true << -1;
        QTest::newRow("warning") << WidgetTopPrompt::SHOW_WARNING << true << int(QtWarningMsg);
        QTest::newRow("error") << WidgetTopPrompt::SHOW_ERROR << true << int(QtCriticalMsg);
        QTest::newRow("quiet warning") << WidgetTopPrompt::SHOW_WARNING << false << -1;
        QTest::newRow("quiet error") << WidgetTopPrompt::SHOW_ERROR << false << -1;
    }

    void logs()
    {
        QFETCH(WidgetTopPrompt::PROMPT_TYPE, type);
        QFETCH(bool, log);
        QFETCH(int, level);
        // Long enough to be broken and shortened on the screen: the log takes it as it is.
        const QString text = QStringLiteral("6009 \"%1\" 50% ").repeated(100);
        logged.clear();
        const QtMessageHandler before = qInstallMessageHandler(&collect);
        m_prompt->showPrompt(type, text, log);
        qInstallMessageHandler(before);
        QCOMPARE(logged.size(), level < 0 ? 0 : 1);
        if (level < 0)
            return;
        QCOMPARE(int(logged.first().type), level);
        QCOMPARE(logged.first().text, QStringLiteral("<DISPLAY> ") + text);
    }

    void fitsItsWindow_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("chinese");
        QTest::addColumn<int>("lines");
        QTest::newRow("short") << QStringLiteral("Veltaro is connected") << false << 1;
        QTest::newRow("two lines")
            << QStringLiteral(
                   "6022 Network connection error: It appears that all tunnels have been "
                   "disconnected. Rebuilding a tunnel...")
            << false << 2;
        QTest::newRow("two Chinese lines, the second wider")
            << QStringLiteral("6022 abcdefghi 网络连接异常所有隧道均已断开正在重建隧道请稍候"
                              "如果长时间未恢复请联系网络管理员")
            << true << 2;
        QTest::newRow("one long word") << QString(120, QLatin1Char('w')) << false << 0;
        QTest::newRow("a page of text")
            << QStringLiteral("some words ").repeated(5000) << false << 0;
        QTest::newRow("own lines") << QStringLiteral("first\nsecond") << false << 2;
        QTest::newRow("mark-up is text") << QStringLiteral("<b>bold</b><img src=x>") << false << 1;
    }

    void fitsItsWindow()
    {
        QFETCH(QString, text);
        QFETCH(bool, chinese);
        QFETCH(int, lines);
        const looks::Language language(chinese);
        m_prompt = new WidgetTopPrompt(m_window.get());
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, text, false);

        QCOMPARE(m_prompt->y(), 10);
        QVERIFY(qAbs(m_prompt->geometry().center().x() - m_window->rect().center().x()) <= 1);
        QVERIFY(m_window->rect().contains(m_prompt->geometry()));
        QCOMPARE(looks::clipped(m_prompt), QStringList());
        QCOMPARE(label()->textFormat(), Qt::PlainText);
        int widest = 0;
        const QStringList shown = label()->text().split(QLatin1Char('\n'));
        for (const QString& line : shown)
            widest = qMax(widest, label()->fontMetrics().horizontalAdvance(line));
        QCOMPARE(label()->width(), widest + 10);
        QCOMPARE(m_prompt->width(), widest + 80);
        if (lines > 0) {
            QCOMPARE(shown.size(), lines);
            QCOMPARE(shown.join(QString()), QString(text).remove(QLatin1Char('\n')));
        }
    }

    void doesNotRunAway()
    {
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, QStringLiteral("Bad"), false);
        m_window->resize(800, 400);
        m_prompt->refreshPos();
        QVERIFY(qAbs(m_prompt->geometry().center().x() - m_window->rect().center().x()) <= 1);
        m_prompt->showPrompt(WidgetTopPrompt::SHOW_ERROR, QStringLiteral("A longer one"), false);
        QVERIFY(qAbs(m_prompt->geometry().center().x() - m_window->rect().center().x()) <= 1);
    }

private:
    QLabel* label() const { return m_prompt->findChild<QLabel*>(QStringLiteral("labelText")); }
    QTimer* timer() const { return m_prompt->findChild<QTimer*>(QStringLiteral("m_HideTimer")); }

    std::unique_ptr<QWidget> m_window;
    WidgetTopPrompt* m_prompt = nullptr;
};

QTEST_MAIN(PromptTest)
#include "PromptTest.moc"
