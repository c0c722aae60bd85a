#include "login/VerifyNumInputWidget.h"

#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <QLabel>
#include <QMenu>
#include <QPainter>

namespace {

constexpr int kCellWidth = 36;
constexpr int kCellHeight = 44;
constexpr int kLine = 2; // below the cells
constexpr int kLineGap = 4;

bool isReturn(const QKeyEvent* event)
{
    return event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
}

// With these a key is a command and types nothing.
bool isCommand(const QKeyEvent* event)
{
    return event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

// Each call is news to a screen reader.
void describe(QWidget* widget, const QString& text)
{
    if (widget->accessibleDescription() != text)
        widget->setAccessibleDescription(text);
}

} // namespace

VerifyNumInputWidget::VerifyNumInputWidget(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setInputMethodHints(Qt::ImhDigitsOnly | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
    setAccessibleName(tr("Authentication code"));

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, kLine + kLineGap);
    row->setSpacing(0);
    for (int index = 0; index < DigitCells::kCount; ++index) {
        if (index > 0)
            row->addStretch();
        addCell(index);
        row->addWidget(m_numLabels.last());
    }
    showCells();
}

void VerifyNumInputWidget::addCell(int index)
{
    QLabel* cell = makeLabel(this, "", "cell");
    cell->setObjectName(QStringLiteral("m_numLabels%1").arg(index));
    cell->setAccessibleName(tr("Digit %1 of %2").arg(index + 1).arg(DigitCells::kCount));
    cell->setAlignment(Qt::AlignCenter);
    cell->setFixedSize(kCellWidth, kCellHeight);
    m_numLabels.append(cell);
}

void VerifyNumInputWidget::setText(const QString& text)
{
    m_cells.clear();
    m_cells.paste(text);
    showCells();
}

void VerifyNumInputWidget::clearNumber()
{
    m_cells.clear();
    showCells();
}

int VerifyNumInputWidget::locatedNumLabelIndex(const QPoint& point) const
{
    for (int index = 0; index < m_numLabels.size(); ++index) {
        if (m_numLabels.at(index)->geometry().contains(point))
            return index;
    }
    return -1;
}

// What is shown

void VerifyNumInputWidget::showCells()
{
    resetLabelText();
    updateLabelStyle();
}

// A screen reader hears each cell's digit as its description, and on the whole how far it is.
void VerifyNumInputWidget::resetLabelText()
{
    for (int index = 0; index < m_numLabels.size(); ++index) {
        const QString digit = m_cells.at(index);
        m_numLabels.at(index)->setText(digit);
        describe(m_numLabels.at(index), digit.isEmpty() ? tr("empty") : digit);
    }
    describe(this,
             tr("%1 of %2 digits entered").arg(m_cells.text().size()).arg(DigitCells::kCount));
}

void VerifyNumInputWidget::updateLabelStyle()
{
    for (int index = 0; index < m_numLabels.size(); ++index) {
        const bool marked = m_focusStyle && index == m_cells.active();
        setRole(m_numLabels.at(index), marked ? "activeCell" : "cell");
    }
    update();
}

void VerifyNumInputWidget::setFocusStyle(bool focused)
{
    m_focusStyle = focused;
    updateLabelStyle();
}

// Behind the last digit no cell is the active one: a line shows who has the keyboard.
void VerifyNumInputWidget::paintEvent(QPaintEvent*)
{
    if (!m_focusStyle || m_cells.active() < DigitCells::kCount)
        return;
    QPainter painter(this);
    painter.fillRect(0, height() - kLine, width(), kLine, QColor(2, 144, 255));
}

// Keyboard

// The release is what counts; the press only must not reach a button of the window.
void VerifyNumInputWidget::keyPressEvent(QKeyEvent* event)
{
    m_fromMethod = false;
    if (event->matches(QKeySequence::Paste))
        paste(QGuiApplication::clipboard()->text());
    else if (!isReturn(event))
        QWidget::keyPressEvent(event);
}

void VerifyNumInputWidget::keyReleaseEvent(QKeyEvent* event)
{
    const QString typed = event->text();
    if (event->key() == Qt::Key_Backspace)
        m_cells.erase();
    else if (isReturn(event) && m_cells.active() == DigitCells::kCount)
        emit enterPressed();
    else if (typed.size() == 1 && !isCommand(event) && !m_fromMethod)
        m_cells.type(typed.front());
    showCells();
}

// A digit that an input method makes of a key comes without the press, but its release may follow.
void VerifyNumInputWidget::inputMethodEvent(QInputMethodEvent* event)
{
    m_fromMethod = true;
    for (const QChar c : event->commitString())
        m_cells.type(c);
    showCells();
    event->accept();
}

QVariant VerifyNumInputWidget::inputMethodQuery(Qt::InputMethodQuery query) const
{
    if (query == Qt::ImCursorRectangle) {
        const int last = DigitCells::kCount - 1;
        return m_numLabels.at(qMin(m_cells.active(), last))->geometry();
    }
    return QWidget::inputMethodQuery(query);
}

// Mouse

void VerifyNumInputWidget::mousePressEvent(QMouseEvent* event)
{
    const int index = locatedNumLabelIndex(event->pos());
    if (index >= 0)
        m_cells.select(index);
    const QClipboard* clipboard = QGuiApplication::clipboard();
    if (event->button() == Qt::MiddleButton && clipboard->supportsSelection())
        paste(clipboard->text(QClipboard::Selection));
    updateLabelStyle();
    QWidget::mousePressEvent(event); // the window may be dragged by it too
}

void VerifyNumInputWidget::contextMenuEvent(QContextMenuEvent* event)
{
    const QString copied = QGuiApplication::clipboard()->text();
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* action = menu->addAction(tr("Paste"), this, [this, copied] { paste(copied); });
    action->setEnabled(DigitCells().paste(copied));
    menu->popup(event->globalPos());
}

void VerifyNumInputWidget::paste(const QString& text)
{
    if (m_cells.paste(text))
        showCells();
}

// Focus and visibility

void VerifyNumInputWidget::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    setFocus();
}

void VerifyNumInputWidget::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous()) // which a window is that goes to the task bar
        clearNumber();
}

void VerifyNumInputWidget::focusInEvent(QFocusEvent* event)
{
    QWidget::focusInEvent(event);
    setFocusStyle(true);
}

void VerifyNumInputWidget::focusOutEvent(QFocusEvent* event)
{
    QWidget::focusOutEvent(event);
    setFocusStyle(false);
}
