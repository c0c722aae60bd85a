#include "widgets/DialogFrame.h"

#include <QAccessible>
#include <QBitmap>
#include <QDialog>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QWidget>

namespace {

constexpr qreal kRadius = 4;

QRect placeFor(const QWidget* dialog, const QWidget* parent, const QRect& screen)
{
    const QWidget* under = parent ? parent->window() : nullptr;
    const QRect over = under ? QRect(under->mapToGlobal(QPoint()), under->size()) : screen;
    QRect place(QPoint(), dialog->size());
    place.moveCenter(over.center());
    place.moveRight(qMin(place.right(), screen.right()));
    place.moveBottom(qMin(place.bottom(), screen.bottom()));
    place.moveLeft(qMax(place.left(), screen.left()));
    place.moveTop(qMax(place.top(), screen.top()));
    return place;
}

} // namespace

void centerOver(QWidget* dialog, const QWidget* parent)
{
    const QScreen* screen = parent ? parent->window()->screen() : dialog->screen();
    dialog->adjustSize();
    dialog->move(placeFor(dialog, parent, screen->availableGeometry()).topLeft());
}

bool runAndDelete(QDialog* dialog)
{
    const QPointer<QDialog> alive(dialog);
    const QPointer<QWidget> under(dialog->parentWidget() ? dialog->parentWidget()->window()
                                                         : nullptr);
    const bool accepted = dialog->exec() == QDialog::Accepted;
    delete alive;
    if (under && under->isVisible())
        under->activateWindow(); // without a window manager nobody else gives it the keyboard back
    return accepted;
}

void announce(QWidget* panel, const QString& text)
{
    panel->setAccessibleName(text);
    QAccessibleEvent alert(panel, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void paintCard(QWidget* widget)
{
    const QColor border(0xd4, 0xdf, 0xeb);
    QPainter painter(widget);
    // At a fractional scale the last row and column of a window are pixels that the card covers in
    // part; what is left of them would be black.
    if (widget->isWindow())
        painter.fillRect(widget->rect().adjusted(0, 0, 1, 1), border);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(border);
    painter.setBrush(Qt::white);
    painter.drawRoundedRect(QRectF(widget->rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius,
                            kRadius);
}

void cutToCard(QWidget* window)
{
    // Of each corner square only what lies outside the circle goes.
    QBitmap card(window->size());
    card.fill(Qt::color0);
    QPainter painter(&card);
    painter.setPen(Qt::color1);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(window->rect().adjusted(0, 0, -1, -1), kRadius, kRadius);
    painter.end();
    window->setMask(card);
}
