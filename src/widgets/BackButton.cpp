#include "widgets/BackButton.h"

#include "widgets/BackBtnProxyStyle.h"

#include <QPainter>
#include <QStyleOptionButton>

BackButton::BackButton(const QString& text, QWidget* parent)
    : QPushButton(text, parent), m_style(std::make_unique<BackBtnProxyStyle>())
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

BackButton::~BackButton() = default;

QSize BackButton::sizeHint() const
{
    const QFontMetrics metrics = fontMetrics();
    return {13 + metrics.horizontalAdvance(text()) + 4, metrics.height() + 4};
}

void BackButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    m_style->drawControl(QStyle::CE_PushButton, &option, &painter, this);
}
