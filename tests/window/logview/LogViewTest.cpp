#include "logview/LogView.h"
#include "app/LogModel.h"
#include "logview/CustomDelegate.h"
#include "support/Rows.h"

#include <QtWidgets>

/// The log page's list: what a row looks like, and how one moves and copies in a long list.
class LogViewTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_view = std::make_unique<LogView>();
        m_view->setItemDelegate(new CustomDelegate);
        m_view->setModel(&m_model);
        m_view->resize(300, 200);
        m_view->show();
    }

    void rows()
    {
        const auto row =
            checked([this](int type, const QString& text, int more, const QString& dot, bool line) {
                m_model.setRows({{text, LOG_TYPE(type)}});
                QStyleOptionViewItem option;
                option.font = m_view->font();
                option.fontMetrics = QFontMetrics(option.font);
                option.rect = {0, 0, 280, 0};
                const CustomDelegate delegate;
                const QSize size = delegate.sizeHint(option, m_model.index(0));
                const int font = option.fontMetrics.height();
                QCOMPARE(size.width(), 280);
                if (more >= 0)
                    QCOMPARE(size.height(), font + more);
                else
                    QVERIFY(size.height() > 4 * font);

                QImage image(size, QImage::Format_RGB32);
                image.fill(Qt::white);
                const QImage blank = image;
                option.rect = image.rect();
                QPainter painter(&image);
                delegate.paint(&painter, option, m_model.index(0));
                painter.end();
                const auto at = [&image](int y) { return QColor(image.pixel(10, y)); };
                if (type < ITEM_TIME && !text.isEmpty())
                    QVERIFY(isNear(at(font / 2), dot));
                QCOMPARE(at(size.height() - 2) != QColor(Qt::white), line);
                QCOMPARE(image == blank, type > ITEM_TITLE || text.isEmpty());
            });
        const QString words = QString("word ").repeated(60);
        row("message", ITEM_INFO_WITH_DOT, "text", 4, "#d4dfeb", true);
        row("notice", ITEM_NOTICE_WITH_DOT, "text", 4, "#6ebc66", true);
        row("error", ITEM_ERROR_WITH_DOT, "text", 4, "#ff5555", true);
        row("warning", ITEM_WARN_WITH_DOT, "text", 4, "#ffb41f", true);
        row("long error", ITEM_ERROR_WITH_DOT, words, -1, "#ff5555", true);
        row("time", ITEM_TIME, "10:11:12", 6, "#d4dfeb", true);
        row("date", ITEM_TITLE, "2026-01-02", 10, "", false);
        row("unknown", 6, "text", 4, "", false);
        row("nothing", ITEM_ERROR_WITH_DOT, "", 4, "", false);
    }

    void aLongList()
    {
        fill(600000);
        QScrollBar* bar = m_view->verticalScrollBar();
        QTest::keyClick(m_view.get(), Qt::Key_End);
        QCOMPARE(m_view->lastVisible(), 599999);
        QCOMPARE(m_view->rowRect(599999).bottom(), m_view->viewport()->height() - 1);
        QCOMPARE(bar->value(), bar->maximum());
        QTest::keyClick(m_view.get(), Qt::Key_Up);
        QCOMPARE(m_view->currentRow(), 599998);
        QTest::keyClick(m_view.get(), Qt::Key_PageUp);
        QVERIFY(m_view->currentRow() < 599998 && !m_view->rowRect(m_view->currentRow()).isEmpty());
        m_view->resize(150, 90);
        QTest::keyClick(m_view.get(), Qt::Key_End);
        QCOMPARE(m_view->rowRect(599999).bottom(), m_view->viewport()->height() - 1);
        QTest::keyClick(m_view.get(), Qt::Key_Home);
        QCOMPARE(bar->value(), 0);
        QCOMPARE(m_view->rowRect(0).top(), 0);
    }

    void whatIsReadStays()
    {
        fill(1000);
        m_view->verticalScrollBar()->setValue(100 * 256 + 128);
        const QString text = m_view->content(m_view->firstVisible()).text;
        const int top = m_view->rowRect(m_view->firstVisible()).top();
        m_model.insertContents(1, {{"new", ITEM_INFO_WITH_DOT}, {"10:00:00", ITEM_TIME}});
        QCOMPARE(m_view->content(m_view->firstVisible()).text, text);
        QCOMPARE(m_view->rowRect(m_view->firstVisible()).top(), top);
        m_view->verticalScrollBar()->setValue(0);
        m_model.insertContents(1, {{"newer", ITEM_INFO_WITH_DOT}, {"10:00:01", ITEM_TIME}});
        QCOMPARE(m_view->firstVisible(), 0);
    }

    void aRowHigherThanTheView()
    {
        m_model.setRows({{QString("word ").repeated(2000), ITEM_INFO_WITH_DOT}});
        QScrollBar* bar = m_view->verticalScrollBar();
        bar->setValue(bar->maximum());
        QVERIFY(qAbs(m_view->rowRect(0).bottom() + 1 - m_view->viewport()->height()) < 40);
    }

    void copies()
    {
        m_model.setRows({{"2026-01-02", ITEM_TITLE},
                         {"done", ITEM_INFO_WITH_DOT},
                         {"10:00:02", ITEM_TIME},
                         {"failed", ITEM_ERROR_WITH_DOT},
                         {"10:00:01", ITEM_TIME},
                         {"2026-01-01", ITEM_TITLE},
                         {"old", ITEM_INFO_WITH_DOT},
                         {"09:00:00", ITEM_TIME}});
        const auto row = checked([this](int first, int last, const QString& copied) {
            const auto press = [this](Qt::Key key, int times, Qt::KeyboardModifiers held = {}) {
                for (int time = 0; time < times; ++time)
                    QTest::keyClick(m_view.get(), key, held);
            };
            press(Qt::Key_Home, 1);
            press(Qt::Key_Down, first);
            press(last > first ? Qt::Key_Down : Qt::Key_Up, qAbs(last - first), Qt::ShiftModifier);
            press(Qt::Key_C, 1, Qt::ControlModifier);
            QCOMPARE(QApplication::clipboard()->text(), copied);
        });
        row("a message alone", 3, 3, "2026-01-02 10:00:01 failed");
        row("a time alone", 2, 2, "10:00:02");
        row("all", 0, 7,
            "2026-01-02 10:00:02 done\n2026-01-02 10:00:01 failed\n2026-01-01 09:00:00 old");
        row("upwards", 6, 3, "2026-01-02 10:00:01 failed\n2026-01-01 09:00:00 old");
    }

    void assistiveTechnologySeesTheRowsInView()
    {
        fill(600000);
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(m_view.get());
        QCOMPARE(list->role(), QAccessible::List);
        QVERIFY(list->childCount() > 5 && list->childCount() < 30);
        QCOMPARE(list->child(1)->text(QAccessible::Name), "Error: message 1");
        QTest::keyClick(m_view.get(), Qt::Key_End);
        QAccessibleInterface* last = list->child(list->childCount() - 1);
        QCOMPARE(last->text(QAccessible::Name), "message 599999");
        QCOMPARE(last->parent(), list);
        QVERIFY(last->state().selected && last->state().active);
        QCOMPARE(list->indexOfChild(last), list->childCount() - 1);
        QCOMPARE(list->childAt(last->rect().center().x(), last->rect().center().y()), last);
    }

private:
    /// Up to the smoothing at the edge of a dot.
    static bool isNear(const QColor& a, const QColor& b)
    {
        return qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) + qAbs(a.blue() - b.blue()) <
               50;
    }

    void fill(int count)
    {
        std::deque<LogContent> rows;
        for (int row = 0; row < count; ++row)
            rows.push_back({QStringLiteral("message %1").arg(row),
                            row % 5 == 1 ? ITEM_ERROR_WITH_DOT : ITEM_INFO_WITH_DOT});
        m_model.setRows(std::move(rows));
    }

    LogModel m_model;
    std::unique_ptr<LogView> m_view;
};

QTEST_MAIN(LogViewTest)
#include "LogViewTest.moc"
