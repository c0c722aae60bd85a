#include "forgetpassword/SendCodeButton.h"

#include <QPainter>

namespace TQ {

SendCodeButton::SendCodeButton(QWidget* parent) : QPushButton(parent)
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(true); // Return presses it while it has the focus
    showIdle(true);
}

void SendCodeButton::showIdle(bool ready)
{
    setText(tr("Send Code"));
    setEnabled(ready);
}

void SendCodeButton::showCountdown(int seconds)
{
    setText(tr("Send Code(%1s)").arg(seconds));
    setEnabled(false);
}

// Wide enough for every text that it comes to show, so that nothing beside it moves.
QSize SendCodeButton::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    const int wide = qMax(metrics.horizontalAdvance(tr("Send Code(%1s)").arg(88)),
                          metrics.horizontalAdvance(tr("Send Code")));
    return {wide + 16, metrics.height() + 12};
}

void SendCodeButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool live = isEnabled() && (underMouse() || hasFocus());
    painter.setPen(live ? QColor(0x02, 0x90, 0xff) : QColor(0xd4, 0xdf, 0xeb));
    painter.setBrush(isDown() ? QColor(0xe0, 0xed, 0xf8) : QColor(Qt::white));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.setPen(isEnabled() ? QColor(0x02, 0x90, 0xff) : QColor(0xb6, 0xb6, 0xb6));
    painter.drawText(rect(), Qt::AlignCenter, text());
}

} // namespace TQ
