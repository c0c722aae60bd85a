#include "logview/LogView.h"

#include "logview/LogText.h"

#include <QAbstractItemModel>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>

namespace {

constexpr int kUnits = 256; // of the scroll bar, a row

QAccessibleInterface* describeLog(const QString& className, QObject* object)
{
    if (className != QLatin1String("LogView"))
        return nullptr;
    auto* view = static_cast<LogView*>(object);
    return new AccessibleLog(view, view);
}

} // namespace

LogView::LogView(QWidget* parent) : QAbstractScrollArea(parent)
{
    static const bool described = [] {
        QAccessible::installFactory(describeLog);
        return true;
    }();
    Q_UNUSED(described)
    setFocusPolicy(Qt::StrongFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(kUnits);
}

void LogView::setItemDelegate(QStyledItemDelegate* delegate)
{
    m_delegate = delegate;
    delegate->setParent(this);
}

void LogView::setModel(QAbstractItemModel* model)
{
    m_model = model;
    connect(model, &QAbstractItemModel::modelReset, this, &LogView::onReset);
    connect(model, &QAbstractItemModel::rowsInserted, this,
            [this](const QModelIndex&, int first, int last) { onInserted(first, last); });
    onReset();
}

// Rows and their places

int LogView::rowCount() const
{
    return m_model ? m_model->rowCount() : 0;
}

LogContent LogView::content(int row) const
{
    return m_model ? logtext::rowOf(*m_model, row) : LogContent();
}

QStyleOptionViewItem LogView::optionFor(int row) const
{
    QStyleOptionViewItem option;
    option.initFrom(this);
    option.state.setFlag(QStyle::State_HasFocus, hasFocus() && row == m_current);
    option.state.setFlag(QStyle::State_Selected, isSelected(row));
    option.rect = QRect(0, 0, viewport()->width(), 0);
    option.font = font();
    option.widget = this;
    return option;
}

int LogView::rowHeight(int row) const
{
    return qMax(1, m_delegate->sizeHint(optionFor(row), m_model->index(row, 0)).height());
}

int LogView::firstVisible() const
{
    return verticalScrollBar()->value() / kUnits;
}

// Pixels of the first visible row that are above the view.
int LogView::topOffset() const
{
    if (rowCount() == 0)
        return 0;
    return int(qint64(verticalScrollBar()->value() % kUnits) * rowHeight(firstVisible()) / kUnits);
}

int LogView::lastVisible() const
{
    return rowAt(viewport()->height() - 1);
}

// The row at a height of the view, the last one for what is below it; -1 in an empty list.
int LogView::rowAt(int y) const
{
    int row = firstVisible();
    for (int bottom = -topOffset(); row < rowCount(); ++row) {
        bottom += rowHeight(row);
        if (bottom > y)
            return row;
    }
    return rowCount() - 1;
}

QRect LogView::rowRect(int row) const
{
    if (row < firstVisible() || row >= rowCount())
        return {};
    int top = -topOffset();
    for (int above = firstVisible(); above < row && top < viewport()->height(); ++above)
        top += rowHeight(above);
    return top < viewport()->height() ? QRect(0, top, viewport()->width(), rowHeight(row))
                                      : QRect();
}

// Scrolling

// Where the scroll bar stands when a row is the last in view, and whole; its top is not lost.
int LogView::valueWithBottom(int row) const
{
    int room = viewport()->height();
    for (int above = row; above >= 0; --above) {
        const int height = rowHeight(above);
        if (height > room)
            return above == row ? row * kUnits
                                : above * kUnits + ((height - room) * kUnits + height - 1) / height;
        room -= height;
    }
    return 0;
}

void LogView::updateRange()
{
    if (!m_delegate)
        return;
    QScrollBar* const bar = verticalScrollBar();
    int last = rowCount() - 1;
    int most = 0;
    if (last >= 0) {
        most = valueWithBottom(last);
        const int height = rowHeight(last);
        if (height > viewport()->height()) // its end must be within reach
            most += (height - viewport()->height()) * kUnits / height;
    }
    bar->setPageStep(qMax(1, last - most / kUnits) * kUnits);
    bar->setMaximum(most);
    viewport()->update();
}

void LogView::onReset()
{
    m_anchor = -1;
    m_current = -1;
    verticalScrollBar()->setValue(0);
    updateRange();
}

// What is read stays where it is; at the top the newest row comes into view.
void LogView::onInserted(int first, int last)
{
    const int rows = last - first + 1;
    const int value = verticalScrollBar()->value();
    const bool above = value > 0 && first <= value / kUnits;
    for (int* row : {&m_anchor, &m_current}) {
        if (*row >= first)
            *row += rows;
    }
    updateRange();
    if (above)
        verticalScrollBar()->setValue(value + rows * kUnits);
}

void LogView::scrollTo(int row)
{
    const QRect place = rowRect(row);
    if (row <= firstVisible())
        verticalScrollBar()->setValue(row * kUnits);
    else if (place.isEmpty() || place.bottom() >= viewport()->height())
        verticalScrollBar()->setValue(valueWithBottom(row));
}

void LogView::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateRange();
}

void LogView::changeEvent(QEvent* event)
{
    QAbstractScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        updateRange();
}

void LogView::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    int top = -topOffset();
    for (int row = firstVisible(); row < rowCount() && top <= event->rect().bottom(); ++row) {
        QStyleOptionViewItem option = optionFor(row);
        option.rect = QRect(0, top, viewport()->width(), rowHeight(row));
        top += option.rect.height();
        if (top > event->rect().top())
            m_delegate->paint(&painter, option, m_model->index(row, 0));
    }
}

// Selection

bool LogView::isSelected(int row) const
{
    return m_current >= 0 && row >= qMin(m_anchor, m_current) && row <= qMax(m_anchor, m_current);
}

void LogView::selectAll()
{
    m_anchor = 0;
    m_current = rowCount() - 1;
    viewport()->update();
}

void LogView::copy() const
{
    if (m_current >= 0)
        QGuiApplication::clipboard()->setText(
            logtext::copied(*m_model, qMin(m_anchor, m_current), qMax(m_anchor, m_current)));
}

void LogView::setCurrent(int row, bool extend)
{
    row = qBound(-1, row, rowCount() - 1);
    if (row < 0)
        return;
    if (!extend || m_anchor < 0)
        m_anchor = row;
    m_current = row;
    scrollTo(row);
    viewport()->update();
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(row - firstVisible());
    QAccessible::updateAccessibility(&focus);
}

// The row that a key leads to; -1 for other keys.
int LogView::moved(int key) const
{
    const int from = m_current < 0 ? firstVisible() - (key == Qt::Key_Down) : m_current;
    const int page = qMax(1, lastVisible() - firstVisible() - 1);
    switch (key) {
    case Qt::Key_Up:
        return qMax(0, from - 1);
    case Qt::Key_Down:
        return from + 1;
    case Qt::Key_PageUp:
        return qMax(0, from - page);
    case Qt::Key_PageDown:
        return from + page;
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return rowCount() - 1;
    default:
        return -1;
    }
}

void LogView::keyPressEvent(QKeyEvent* event)
{
    const int row = moved(event->key());
    if (row >= 0)
        setCurrent(row, event->modifiers().testFlag(Qt::ShiftModifier));
    else if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::SelectAll))
        selectAll();
    else if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter)
        QAbstractScrollArea::keyPressEvent(event); // Return would press the window's button
}

void LogView::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    viewport()->update();
}

void LogView::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    viewport()->update();
}

void LogView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        setCurrent(rowAt(event->y()), event->modifiers().testFlag(Qt::ShiftModifier));
}

void LogView::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons().testFlag(Qt::LeftButton))
        setCurrent(event->y() < 0 ? firstVisible() - 1 : rowAt(event->y()), true);
}

void LogView::contextMenuEvent(QContextMenuEvent* event)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Copy"), this, &LogView::copy, QKeySequence::Copy)
        ->setEnabled(m_current >= 0);
    menu->addAction(tr("Select All"), this, &LogView::selectAll, QKeySequence::SelectAll)
        ->setEnabled(rowCount() > 0);
    menu->popup(event->globalPos());
}
