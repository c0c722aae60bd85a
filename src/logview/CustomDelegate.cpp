#include "logview/CustomDelegate.h"

#include "app/LogModel.h"

#include <QPainter>

namespace {

constexpr int kTextLeft = 20;
constexpr int kLineX = 10;
const QColor kLineColour(0xd4, 0xdf, 0xeb);

const QColor kSelected(0xe0, 0xed, 0xf8);
const QColor kFocus(0x02, 0x90, 0xff);
const QColor kInfoText(0x35, 0x40, 0x52);

QColor dotColour(int type)
{
    switch (type) {
    case ITEM_NOTICE_WITH_DOT:
        return QColor(0x6e, 0xbc, 0x66);
    case ITEM_ERROR_WITH_DOT:
        return QColor(0xff, 0x55, 0x55);
    case ITEM_WARN_WITH_DOT:
        return QColor(0xff, 0xb4, 0x1f);
    default:
        return kLineColour;
    }
}

QFont timeFont(QFont font)
{
    font.setPointSize(font.pointSize() - 1);
    return font;
}

void drawTimeLine(QPainter* painter, const QRect& row)
{
    painter->setPen(kLineColour);
    painter->drawLine(row.left() + kLineX, row.top(), row.left() + kLineX, row.bottom());
}

void drawSelection(QPainter* painter, const QStyleOptionViewItem& option)
{
    if (option.state & QStyle::State_Selected)
        painter->fillRect(option.rect, kSelected);
    if (option.state & QStyle::State_HasFocus) {
        painter->setPen(kFocus);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option.rect.adjusted(0, 0, -1, -1));
    }
}

} // namespace

CustomDelegate::CustomDelegate(QObject* parent) : QStyledItemDelegate(parent)
{
    for (int type = 0; type < kDots; ++type) {
        const QColor colour = dotColour(type);
        m_pens[type] = QPen(colour, 4, Qt::SolidLine, Qt::RoundCap);
        m_brushes[type] = QBrush(colour);
    }
}

void CustomDelegate::drawMessage(QPainter* painter, const QRect& row, const QRect& textArea,
                                 const LogContent& content) const
{
    drawTimeLine(painter, row);
    const int y = row.top() + qMin(painter->fontMetrics().height(), row.height()) / 2;
    painter->setPen(m_pens[content.type]);
    painter->setBrush(m_brushes[content.type]);
    painter->drawPoint(row.left() + kLineX, y);
    painter->setPen(content.type == ITEM_INFO_WITH_DOT ? kInfoText : dotColour(content.type));
    painter->drawText(textArea, Qt::TextWordWrap, content.text);
}

void CustomDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                           const QModelIndex& index) const
{
    const auto content = index.data(LogModel::ContentRole).value<LogContent>();
    if (content.text.isEmpty())
        return;
    const QRect row = option.rect;
    const QRect textArea = row.adjusted(kTextLeft, 0, 0, 0);
    painter->save();
    drawSelection(painter, option);
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setFont(option.font);
    switch (content.type) {
    case ITEM_INFO_WITH_DOT:
    case ITEM_NOTICE_WITH_DOT:
    case ITEM_ERROR_WITH_DOT:
    case ITEM_WARN_WITH_DOT:
        drawMessage(painter, row, textArea, content);
        break;
    case ITEM_TIME:
        drawTimeLine(painter, row);
        painter->setFont(timeFont(option.font));
        painter->setPen(QColor(0xb6, 0xb6, 0xb6));
        painter->drawText(textArea, 0, content.text);
        break;
    case ITEM_TITLE:
        painter->setPen(option.palette.color(QPalette::Active, QPalette::Text));
        painter->drawText(row, 0, content.text);
        break;
    }
    painter->restore();
}

QSize CustomDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto content = index.data(LogModel::ContentRole).value<LogContent>();
    const int fontHeight = option.fontMetrics.height();
    const int width = option.rect.width();
    if (content.type == ITEM_TIME)
        return {width, fontHeight + 6};
    if (content.type == ITEM_TITLE)
        return {width, fontHeight + 10};
    int textWidth = width - kTextLeft;
    if (textWidth < 1)
        textWidth = 300;
    const QRect text = option.fontMetrics.boundingRect(QRect(0, 0, textWidth, 100000),
                                                       Qt::TextWordWrap, content.text);
    return {width, qMax(text.height() + 4, fontHeight + 2)};
}
