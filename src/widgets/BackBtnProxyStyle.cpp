#include "widgets/BackBtnProxyStyle.h"

#include "widgets/Style.h"

#include <QPainter>
#include <QStyleOption>

namespace {

constexpr int kArrowWidth = 6;
constexpr int kArrowTop = 3;
constexpr int kArrowBottom = 2;
constexpr int kTextLeft = 13;

} // namespace

BackBtnProxyStyle::BackBtnProxyStyle()
    : QProxyStyle(QStringLiteral("fusion")), m_arrow(pictureIcon(QStringLiteral("btnleft.ico")))
{
}

void BackBtnProxyStyle::drawControl(ControlElement element, const QStyleOption* option,
                                    QPainter* painter, const QWidget* widget) const
{
    const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
    if (element != CE_PushButton || !button) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    const QRect area = button->rect;
    const QRect arrow(area.left(), area.top() + kArrowTop, kArrowWidth,
                      area.height() - kArrowTop - kArrowBottom);
    m_arrow.paint(painter, arrow);

    const bool live = button->state & (State_MouseOver | State_HasFocus);
    painter->setPen(live ? QColor(0x02, 0x90, 0xff) : QColor(0x35, 0x40, 0x52));
    const QRect text = area.adjusted(kTextLeft, 0, 0, 0);
    painter->drawText(text, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextShowMnemonic, button->text);
    if (button->state & State_HasFocus) {
        const int width = button->fontMetrics.horizontalAdvance(button->text);
        const int y = text.center().y() + button->fontMetrics.height() / 2;
        painter->drawLine(text.left(), y, text.left() + width, y);
    }
}
