#include "forgetpassword/TipsPopupWidget.h"

#include "app/ConfigUtil.h"
#include "app/DeepinShadowEffectListener.h"
#include "app/Platform.h"
#include "widgets/WidgetParts.h"

#include <QCoreApplication>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>

namespace {

constexpr int kEdge = 3; ///< the shadow's width
constexpr int kTail = 5;
constexpr int kAbove = 5; ///< from the widget's top to the text's; with kBelow the height of no row
constexpr int kBelow = 13;
constexpr int kBeside = 12;
constexpr int kWidestText = 176;
constexpr int kRow = 16;
constexpr int kChineseRow = 25;
constexpr qreal kRadius = 4;

int rowsOfWords(const QFontMetrics& metrics, const QString& text, int width)
{
    const int space = metrics.horizontalAdvance(QLatin1Char(' '));
    int rows = 1;
    int used = 0;
    for (const QString& word : text.split(QLatin1Char(' '))) {
        const int wide = metrics.horizontalAdvance(word);
        if (used > 0 && used + space + wide > width) {
            ++rows;
            used = wide;
        } else {
            used += (used > 0 ? space : 0) + wide;
        }
    }
    return rows;
}

/// Whether shadows are left out, as the desktop's window manager does.
bool isPlain()
{
    static const bool deepin = isDeepinDesktop(qEnvironmentVariable("XDG_CURRENT_DESKTOP"));
    return deepin && !qApp->property(appproperty::kDeepinShadowEnabled).toBool();
}

QPainterPath bubble(const QRectF& body, qreal tip)
{
    QPainterPath card;
    card.addRoundedRect(body, kRadius, kRadius);
    QPainterPath tail;
    tail.moveTo(tip - kTail, body.bottom() - 1);
    tail.lineTo(tip, body.bottom() + kTail);
    tail.lineTo(tip + kTail, body.bottom() - 1);
    tail.closeSubpath();
    return card.united(tail);
}

} // namespace

namespace TQ {

int calcNeedRows(const QFontMetrics& metrics, const QString& text, const QRect& rect)
{
    const int width = qMax(1, rect.width());
    const int wide = metrics.horizontalAdvance(text);
    if (wide <= width)
        return 1;
    return platform().isChinese() ? wide / width : rowsOfWords(metrics, text, width);
}

TipsPopupWidget::TipsPopupWidget(QWidget* parent)
    : QWidget(parent), m_label(makeLabel(this, "tipsLabel", "text"))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_label->setWordWrap(true);
    m_label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    hide();
}

void TipsPopupWidget::setText(const QString& text)
{
    m_label->setText(text);
}

QString TipsPopupWidget::text() const
{
    return m_label->text();
}

void TipsPopupWidget::fitText()
{
    m_label->ensurePolished();
    const QFontMetrics metrics = m_label->fontMetrics();
    // A pixel more than the text itself: a label wraps what fits exactly.
    const int width = qMin(metrics.horizontalAdvance(text()) + 1, kWidestText);
    const int row = platform().isChinese() ? kChineseRow : kRow;
    const int rows = calcNeedRows(metrics, text(), {0, 0, width, 0});
    const int high = qMax(rows * row, m_label->heightForWidth(width));
    m_label->setGeometry(kBeside, kAbove, width, high);
    resize(width + 2 * kBeside, high + kAbove + kBelow);
}

void TipsPopupWidget::showAbove(const QWidget* widget)
{
    fitText();
    const QPoint middle = widget->mapTo(parentWidget(), QPoint(widget->width() / 2, 0));
    const int left = qBound(0, middle.x() - width() / 2, parentWidget()->width() - width());
    m_tip = middle.x() - left;
    move(left, qMax(0, middle.y() - height()));
    show();
    raise();
    update();
}

void TipsPopupWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (isPlain()) {
        painter.fillRect(rect(), Qt::white);
        return;
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(kEdge, kEdge, -kEdge, -kEdge - kTail);
    const QPainterPath outline = bubble(body, m_tip);
    for (int wide = kEdge; wide > 0; --wide)
        painter.strokePath(outline, QPen(QColor(0x35, 0x40, 0x52, 14), 2 * wide));
    painter.setPen(QColor(0xd4, 0xdf, 0xeb));
    painter.setBrush(Qt::white);
    painter.drawPath(outline);
}

} // namespace TQ
