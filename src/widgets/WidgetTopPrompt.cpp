#include "widgets/WidgetTopPrompt.h"

#include "app/LogMarker.h"
#include "app/NamedTimer.h"
#include "app/Platform.h"
#include "widgets/DialogFrame.h"
#include "widgets/IconButton.h"
#include "widgets/PromptText.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QFontMetrics>
#include <QGraphicsDropShadowEffect>
#include <QLabel>
#include <QTextLayout>

namespace {

constexpr int kHideAfterMs = 4000;
constexpr int kTop = 10;
constexpr int kTextMargin = 10; // the label is wider than its text by this
constexpr int kFrame = 80;      // and the prompt by this
constexpr int kIcon = 16;
constexpr int kEdge = 14;
constexpr int kGap = 8;
constexpr int kPadding = 8; // above and below the text
constexpr int kLongestShown = 600;
constexpr int kLongestToolTip = 4000;

struct Look
{
    QColor colour;
    const char* icon;
};

Look lookOf(WidgetTopPrompt::PROMPT_TYPE type)
{
    switch (type) {
    case WidgetTopPrompt::SHOW_WARNING:
        return {QColor(255, 170, 0), "warningold.png"};
    case WidgetTopPrompt::SHOW_ERROR:
        return {QColor(255, 85, 85), "warning.png"};
    case WidgetTopPrompt::SHOW_SUCCESS:
        break;
    }
    return {QColor(53, 64, 82), "right1x.png"};
}

int widthOf(const QString& lines, const QFontMetrics& metrics)
{
    int width = 0;
    for (const QString& line : lines.split(QLatin1Char('\n')))
        width = qMax(width, metrics.horizontalAdvance(line));
    return width;
}

/// Wraps lines that are too wide for the window, inside words too where a word has no end.
QString wrapped(const QString& lines, const QFont& font, int width)
{
    QStringList result;
    for (const QString& line : lines.split(QLatin1Char('\n'))) {
        QTextLayout layout(line, font);
        QTextOption option;
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        layout.setTextOption(option);
        layout.beginLayout();
        for (QTextLine part = layout.createLine(); part.isValid(); part = layout.createLine()) {
            part.setLineWidth(width);
            result.append(line.mid(part.textStart(), part.textLength()));
        }
        layout.endLayout();
    }
    return result.join(QLatin1Char('\n'));
}

} // namespace

WidgetTopPrompt::WidgetTopPrompt(QWidget* parent)
    : QWidget(parent), m_Parent(parent), effect(new QGraphicsDropShadowEffect(this)),
      m_Chinese(platform().isChinese()),
      m_HideTimer(makeTimer(this, "m_HideTimer", kHideAfterMs, &WidgetTopPrompt::onTimeout)),
      m_icon(named(new QLabel(this), "labelIcon")), m_label(makeLabel(this, "labelText", "")),
      m_closeBtn(named(new IconButton("close", tr("Close"), this), "btnClose"))
{
    setObjectName(QStringLiteral("promptWidge"));
    effect->setOffset(0, 2);
    effect->setBlurRadius(12);
    effect->setColor(QColor(53, 64, 82, 60));
    setGraphicsEffect(effect);

    m_label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    connect(m_closeBtn, &IconButton::clicked, this, &WidgetTopPrompt::on_btnClose_clicked);

    m_HideTimer->setSingleShot(true);
    hide();
}

void WidgetTopPrompt::showPrompt(PROMPT_TYPE type, QString text, bool log)
{
    if (log)
        logPrompt(type, text);
    setLook(type);
    fitTo(text);
    refreshPos();
    show();
    raise();
    if (type == SHOW_SUCCESS)
        m_HideTimer->start();
    else
        m_HideTimer->stop();
    announce(this, text);
}

void WidgetTopPrompt::logPrompt(PROMPT_TYPE type, const QString& text) const
{
    if (type == SHOW_WARNING)
        logDisplayWarning(text);
    else if (type == SHOW_ERROR)
        logDisplayCritical(text);
}

void WidgetTopPrompt::setLook(PROMPT_TYPE type)
{
    const Look look = lookOf(type);
    QPalette colours = m_label->palette();
    colours.setColor(QPalette::WindowText, look.colour);
    m_label->setPalette(colours);
    m_icon->setPixmap(pictureIcon(QLatin1String(look.icon)).pixmap(kIcon, kIcon));
}

void WidgetTopPrompt::fitTo(const QString& text)
{
    m_label->ensurePolished();
    m_WidthParent = m_Parent->width();
    const QFontMetrics metrics = m_label->fontMetrics();
    const int widest = m_WidthParent - kFrame - 2 * kTop;
    const QString shown = shortenedText(text, kLongestShown);
    QString lines = breakPromptText(shown, metrics.horizontalAdvance(shown), m_Chinese);
    if (widthOf(lines, metrics) > widest)
        lines = wrapped(lines, m_label->font(), widest);
    m_label->setText(lines);
    setPlainToolTip(this, shown == text ? QString() : text.left(kLongestToolTip));

    const int labelWidth = widthOf(lines, metrics) + kTextMargin;
    const int labelHeight = m_label->sizeHint().height();
    const int height = qMax(labelHeight, kIcon) + 2 * kPadding;
    resize(labelWidth + kFrame - kTextMargin, height);

    m_icon->setGeometry(kEdge, (height - kIcon) / 2, kIcon, kIcon);
    m_label->setGeometry(kEdge + kIcon + kGap, (height - labelHeight) / 2, labelWidth, labelHeight);
    m_RcBtn = QRect(width() - kEdge - kIcon, (height - kIcon) / 2, kIcon, kIcon);
    m_closeBtn->setGeometry(m_RcBtn);
}

void WidgetTopPrompt::hidePrompt()
{
    m_HideTimer->stop();
    hide();
}

void WidgetTopPrompt::refreshPos()
{
    m_WidthParent = m_Parent->width();
    move((m_WidthParent - width()) / 2, kTop);
}

void WidgetTopPrompt::onTimeout()
{
    hidePrompt();
}

void WidgetTopPrompt::on_btnClose_clicked()
{
    hidePrompt();
}

void WidgetTopPrompt::paintEvent(QPaintEvent*)
{
    paintCard(this);
}
