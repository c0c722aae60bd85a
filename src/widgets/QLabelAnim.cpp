#include "widgets/QLabelAnim.h"

#include "app/NamedTimer.h"

#include <QPainter>

int nextSpinnerAngle(int angle)
{
    return (angle + 10) % 360;
}

QLabelAnim::QLabelAnim(QWidget* parent)
    : QLabel(parent), m_AnimTimer(makeTimer(this, "m_AnimTimer", 200, &QLabelAnim::advance))
{
}

void QLabelAnim::init(QPixmap pixmap)
{
    m_Pixmap = std::move(pixmap);
    update();
}

void QLabelAnim::start()
{
    m_AnimTimer->start();
}

void QLabelAnim::stop()
{
    m_AnimTimer->stop();
}

void QLabelAnim::advance()
{
    angle = nextSpinnerAngle(angle);
    update();
}

void QLabelAnim::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.translate(QRectF(rect()).center());
    painter.rotate(angle);
    const QSizeF size = QSizeF(m_Pixmap.size()) / m_Pixmap.devicePixelRatioF();
    painter.drawPixmap(QPointF(-size.width() / 2, -size.height() / 2), m_Pixmap);
}
