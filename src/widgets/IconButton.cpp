#include "widgets/IconButton.h"

#include "widgets/Style.h"

#include <QPainter>

IconButton::IconButton(const char* base, const QString& title, QWidget* parent)
    : QPushButton(parent), m_picture(stateIcon(QLatin1String(base)))
{
    setAccessibleName(title);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
    setCursor(Qt::PointingHandCursor);
    setFixedSize(16, 16);
}

void IconButton::paintEvent(QPaintEvent* event)
{
    if (!styleSheet().isEmpty()) {
        QPushButton::paintEvent(event);
        return;
    }
    QPainter painter(this);
    const bool live = underMouse() || hasFocus() || isDown();
    m_picture.paint(&painter, rect(), Qt::AlignCenter, live ? QIcon::Active : QIcon::Normal);
}
