#include "forgetpassword/WarningIcon.h"

#include "forgetpassword/TipsPopupWidget.h"
#include "widgets/PromptText.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QEvent>
#include <QLineEdit>
#include <QStyle>

namespace {

constexpr int kSize = 16;
constexpr int kLongestReason = 160; ///< keeps the bubble within its page

} // namespace

namespace TQ {

WarningIcon::WarningIcon(const char* name, const char* popupName, QLineEdit* field, QWidget* page)
    : QLabel(page), m_field(field), m_popup(named(new TipsPopupWidget(page), popupName))
{
    setObjectName(QLatin1String(name));
    setFixedSize(kSize, kSize);
    setPixmap(pictureIcon(QStringLiteral("warning.png")).pixmap({kSize, kSize}));
    hide();
    field->installEventFilter(this);
}

void WarningIcon::warn(const QString& reason)
{
    m_warning = true;
    showState(shortenedText(reason, kLongestReason));
}

void WarningIcon::clear()
{
    if (!m_warning)
        return;
    m_warning = false;
    showState(QString());
}

void WarningIcon::showState(const QString& reason)
{
    setVisible(m_warning);
    m_popup->setText(reason);
    setAccessibleName(reason);
    m_field->setAccessibleDescription(reason);
    m_field->setProperty("faulty", m_warning);
    m_field->style()->unpolish(m_field);
    m_field->style()->polish(m_field);
    refreshPopup();
}

void WarningIcon::refreshPopup()
{
    if (m_warning && (m_isMouseEnter || m_field->hasFocus()))
        m_popup->showAbove(this);
    else
        m_popup->hide();
}

void WarningIcon::enterEvent(QEvent*)
{
    m_isMouseEnter = true;
    refreshPopup();
}

void WarningIcon::leaveEvent(QEvent*)
{
    m_isMouseEnter = false;
    refreshPopup();
}

bool WarningIcon::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        refreshPopup();
    return QLabel::eventFilter(object, event);
}

} // namespace TQ
