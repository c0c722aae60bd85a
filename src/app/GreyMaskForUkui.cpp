#include "app/GreyMaskForUkui.h"

#include "app/ConfigUtil.h"
#include "app/DeepinShadowEffectListener.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPainter>
#include <QPaintEvent>

GreyMaskForUkui::GreyMaskForUkui(QWidget* parent, QWidget* dialog)
    : QWidget(parent), m_dialog(dialog)
{
    setObjectName(QStringLiteral("greyMask"));
    m_dialog->installEventFilter(this);
    connect(m_dialog, &QObject::destroyed, this, &QObject::deleteLater);
    setWindowFlags(windowFlags() | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    setGeometry(0, 0, parent->width(), parent->height());
    connect(DeepinShadowEffectListener::instance(), &DeepinShadowEffectListener::effectChanged,
            this, &GreyMaskForUkui::onEffectChanged);
}

GreyMaskForUkui::~GreyMaskForUkui() = default;

void GreyMaskForUkui::cover(QWidget* under, QWidget* dialog)
{
    if (under)
        new GreyMaskForUkui(under, dialog); // owned by `under`, deletes itself with the dialog
}

bool GreyMaskForUkui::eventFilter(QObject* object, QEvent* event)
{
    if (object == m_dialog) {
        if (event->type() == QEvent::Show &&
            !qApp->property(appproperty::kDeepinShadowEnabled).toBool()) {
            show();
            raise();
        } else if (event->type() == QEvent::Hide) {
            hide();
            deleteLater();
        }
    }
    return QWidget::eventFilter(object, event);
}

void GreyMaskForUkui::onEffectChanged(bool enabled)
{
    setVisible(!enabled);
    if (!enabled)
        raise();
}

void GreyMaskForUkui::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 50));
    painter.drawRect(event->rect());
    painter.end();
    QWidget::paintEvent(event);
}
