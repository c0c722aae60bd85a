#include "widgets/BrandPanel.h"

#include "widgets/Style.h"

#include <QLinearGradient>
#include <QPainter>

namespace {

constexpr QSize kMark(112, 96);
constexpr QSize kNetwork(240, 240);

QPoint topLeft(const QRect& area, const QSize& size, qreal down)
{
    return {area.center().x() - size.width() / 2 + 1, int((area.height() - size.height()) * down)};
}

} // namespace

BrandPanel::BrandPanel(QWidget* parent)
    : QFrame(parent), m_mark(pictureIcon(QStringLiteral("brand_mark.png")).pixmap(kMark)),
      m_network(pictureIcon(QStringLiteral("brand.png")).pixmap(kNetwork))
{
}

void BrandPanel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QLinearGradient gradient(rect().topLeft(), rect().bottomRight());
    gradient.setColorAt(0, QColor(3, 224, 191));
    gradient.setColorAt(1, QColor(2, 114, 252));
    painter.fillRect(rect(), gradient);
    painter.drawPixmap(topLeft(rect(), kNetwork, 1), m_network);
    painter.drawPixmap(topLeft(rect(), kMark, 0.33), m_mark);
}
