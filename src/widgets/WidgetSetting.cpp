#include "widgets/WidgetSetting.h"

#include "app/ConfigUtil.h"
#include "orch/Util.h"
#include "widgets/Style.h"

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
    const auto saved = [](const QString& key) {
        return ConfigUtil::getvalue(key, QString()).toString();
    };
    const QString typed = saved(ConfigUtil::CUSTOMERIDSTR);
    const QString number = saved(ConfigUtil::CUSTOMERID);
    const QString customer = typed == number ? typed
                                             : Util::GetStringWithLength(typed, 20) +
                                                   QLatin1Char('(') + number + QLatin1Char(')');

    auto* card = new QFrame(this);
    setRole(card, "card");
    auto* heading = new QLabel(tr("Account Information"), card);
    setRole(heading, "heading");
    auto* form = new QFormLayout;
    form->setHorizontalSpacing(24);
    form->setVerticalSpacing(12);
    form->setLabelAlignment(Qt::AlignLeft);
    addRow(form, tr("Customer ID"), customer);
    addRow(form, tr("Username"), saved(ConfigUtil::USERNAME));
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
    auto* caption = new QLabel(title, this);
    setRole(caption, "secondary");
    auto* text = new QLabel(value, this);
    text->setTextFormat(Qt::PlainText);
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
