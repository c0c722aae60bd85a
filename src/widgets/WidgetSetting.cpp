#include "widgets/WidgetSetting.h"

#include "app/ConfigUtil.h"
#include "orch/HostIdentity.h"
#include "orch/TextUtil.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QFormLayout>
#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

WidgetSetting::WidgetSetting(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("m_SettingWidge"));
    initUI();
}

void WidgetSetting::initUI()
{
    const QString typed = ConfigUtil::savedText(ConfigUtil::CUSTOMERIDSTR);
    const QString number = ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    const QString customer = typed == number ? typed
                                             : Util::GetStringWithLength(typed, 20) +
                                                   QLatin1Char('(') + number + QLatin1Char(')');

    auto* card = new QFrame(this);
    setRole(card, "card");
    QLabel* heading = makeLabel(card, "", "heading", tr("Account Information"));
    auto* form = new QFormLayout;
    form->setHorizontalSpacing(24);
    form->setVerticalSpacing(12);
    form->setLabelAlignment(Qt::AlignLeft);
    addRow(form, tr("Customer ID"), customer);
    addRow(form, tr("Username"), ConfigUtil::savedText(ConfigUtil::USERNAME));
    addRow(form, tr("Serial Number"), Util::getSerial());

    auto* inside = new QVBoxLayout(card);
    inside->setContentsMargins(16, 12, 16, 16);
    inside->setSpacing(12);
    inside->addWidget(heading);
    inside->addLayout(form);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 8, 0);
    column->addWidget(card);
    column->addStretch();
}

void WidgetSetting::addRow(QFormLayout* form, const QString& title, const QString& value)
{
    QLabel* caption = makeLabel(this, "", "secondary", title);
    QLabel* text = makeLabel(this, "", "", value);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setAccessibleName(title);
    form->addRow(caption, text);
}

bool WidgetSetting::isDisable401() const
{
    return m_Disable401;
}

void WidgetSetting::clearDisable401()
{
    m_Disable401 = false;
}
