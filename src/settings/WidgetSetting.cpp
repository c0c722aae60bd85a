#include "settings/WidgetSetting.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "orch/ErrorCatalogue.h"
#include "orch/HostIdentity.h"
#include "orch/TextUtil.h"
#include "settings/PasswordChange.h"
#include "settings/PasswordChangeRules.h"
#include "widgets/EntryField.h"
#include "widgets/FoldableWidget.h"
#include "widgets/QLabelAnim.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr QMargins kInside(16, 12, 16, 12); ///< of a section
constexpr int kFieldWidth = 264;
constexpr QSize kStartButton(88, 28);
constexpr QRect kSpinner(25, 5, 36, 16); ///< within the start button

QVBoxLayout* columnIn(FoldableWidget* section)
{
    auto* column = new QVBoxLayout(section->bottomWidget());
    column->setContentsMargins(kInside);
    column->setSpacing(8);
    return column;
}

} // namespace

WidgetSetting::WidgetSetting(QWidget* parent)
    : QWidget(parent), m_accountWidget(named(new FoldableWidget(tr("Account Information"), this),
                                             "m_accountWidget")),
      m_changePassWidget(
          named(new FoldableWidget(tr("Change Password"), this), "m_changePassWidget")),
      m_diagnoseWidget(
          named(new FoldableWidget(tr("Network Diagnosis"), this), "m_diagnoseWidget")),
      m_change(new PasswordChange(this))
{
    setObjectName(QStringLiteral("m_SettingWidge"));
    initUI();
    connect(m_change, &PasswordChange::answered, this, &WidgetSetting::netReply);
    connect(m_change, &PasswordChange::keyRefused, this, &WidgetSetting::onKeyRefused);
    connect(m_change, &PasswordChange::keyUnusable, this, [this](int status) {
        setUnderWay(false);
        emit error(errorText(ErrorText::SystemErrorNoErrorText, status));
    });
}

void WidgetSetting::initUI()
{
    buildAccount();
    buildPasswordChange();
    buildDiagnosis();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 8, 0);
    column->setSpacing(8);
    for (FoldableWidget* section : {m_accountWidget, m_changePassWidget, m_diagnoseWidget}) {
        column->addWidget(section);
        connect(section->topBtn(), &QPushButton::clicked, this, [this, section] {
            if (!section->isFold())
                QTimer::singleShot(0, this, [this, section] { emit sectionOpened(section); });
        });
    }
    column->addStretch();
}

void WidgetSetting::buildAccount()
{
    const QString typed = ConfigUtil::savedText(ConfigUtil::CUSTOMERIDSTR);
    const QString number = ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    const QString customer = typed == number ? typed
                                             : Util::GetStringWithLength(typed, 20) +
                                                   QLatin1Char('(') + number + QLatin1Char(')');

    auto* form = new QFormLayout(m_accountWidget->bottomWidget());
    form->setContentsMargins(kInside);
    form->setHorizontalSpacing(24);
    form->setVerticalSpacing(12);
    form->setLabelAlignment(Qt::AlignLeft);
    const auto addRow = [this, form](const QString& title, const QString& value) {
        QWidget* inside = m_accountWidget->bottomWidget();
        auto* text = new QLineEdit(value, inside); // to be copied, and of any length
        text->setReadOnly(true);
        text->setFrame(false);
        text->setCursorPosition(0);
        text->setAccessibleName(title);
        form->addRow(makeLabel(inside, "", "secondary", title), text);
    };
    addRow(tr("Customer ID"), customer);
    addRow(tr("Username"), ConfigUtil::savedText(ConfigUtil::USERNAME));
    addRow(tr("Serial Number"), Util::getSerial());
}

void WidgetSetting::buildPasswordChange()
{
    QWidget* inside = m_changePassWidget->bottomWidget();
    m_oldEdit = makePasswordField(inside, "m_oldEdit", tr("Old Password"));
    m_newEdit = makePasswordField(inside, "m_newEdit", tr("New Password"));
    m_confirmEdit = makePasswordField(inside, "m_confirmEdit", tr("Confirm Password"));
    m_saveBtn = makeButton(inside, "m_saveBtn", "primary", tr("Save Changes"));
    m_saveBtn->setAutoDefault(true);
    connect(m_saveBtn, &QPushButton::clicked, this, &WidgetSetting::onSubmit);

    QVBoxLayout* column = columnIn(m_changePassWidget);
    for (EntryField* field : {m_oldEdit, m_newEdit, m_confirmEdit}) {
        field->setFixedWidth(kFieldWidth);
        connect(field, &QLineEdit::returnPressed, m_saveBtn, &QPushButton::click);
        column->addWidget(field);
    }
    column->addWidget(m_saveBtn, 0, Qt::AlignLeft);
}

void WidgetSetting::buildDiagnosis()
{
    QWidget* inside = m_diagnoseWidget->bottomWidget();
    m_startBtn = makeButton(inside, "m_startBtn", "primary", tr("Start"));
    m_startBtn->setFixedSize(kStartButton);
    m_startBtn->setAutoDefault(true);
    m_startBtn->setAccessibleName(tr("Start the network diagnosis"));
    connect(m_startBtn, &QPushButton::clicked, this, &WidgetSetting::onStartDiagnosis);
    columnIn(m_diagnoseWidget)->addWidget(m_startBtn, 0, Qt::AlignLeft);

    m_anim = named(new QLabelAnim(m_startBtn), "m_anim");
    m_anim->init(pictureIcon(QStringLiteral("loading.png")).pixmap(QSize(16, 16)));
    m_anim->setAccessibleName(tr("The diagnosis is running"));
    m_anim->setGeometry(kSpinner);
    m_anim->hide();
}

void WidgetSetting::showEvent(QShowEvent* event)
{
    if (m_foldOnce) {
        m_foldOnce = false;
        for (FoldableWidget* section : {m_accountWidget, m_changePassWidget, m_diagnoseWidget})
            section->onHandleFold();
    }
    QWidget::showEvent(event);
}

void WidgetSetting::setChangePassWidgetVisible(bool visible)
{
    m_changePassWidget->setVisible(visible);
}

// Password

void WidgetSetting::clearPassword()
{
    for (EntryField* field : {m_oldEdit, m_newEdit, m_confirmEdit})
        field->clear();
}

void WidgetSetting::setUnderWay(bool underWay)
{
    m_Disable401 = underWay;
    m_saveBtn->setEnabled(!underWay);
}

void WidgetSetting::onSubmit()
{
    emit submitting();
    const QString oldPass = m_oldEdit->text().trimmed();
    const QString newPass = m_newEdit->text().trimmed();
    const QString fault = passwordchange::fault(oldPass, newPass, m_confirmEdit->text().trimmed());
    if (!fault.isEmpty())
        return emit error(fault);
    setUnderWay(true);
    m_change->start(oldPass, newPass);
}

void WidgetSetting::onKeyRefused(const OrchReply& reply)
{
    setUnderWay(false);
    logDisplayDebug(failureCauseText(reply));
    if (reply.status == 502)
        emit badGateway();
    else
        emit reportHttpErr(reply);
}

void WidgetSetting::netReply(const OrchReply& reply)
{
    const passwordchange::Answer answer = passwordchange::answer(reply, OrchTexts::shared());
    if (answer.changed) { // until the logout that follows, the old session is no longer good
        clearPassword();
        return emit passwordChanged();
    }
    setUnderWay(false);
    logDisplayDebug(QStringLiteral("Error Info: ") + reply.logText());
    if (answer.sessionInvalid)
        emit sessionInvalid(answer.end);
    if (answer.end == SessionEnd::None)
        emit error(answer.text);
}

// Diagnosis

void WidgetSetting::onStartDiagnosis()
{
    if (m_Diagnosising)
        return;
    m_Diagnosising = true;
    m_startBtn->setText(QString());
    m_startBtn->setAccessibleName(tr("The diagnosis is running"));
    m_anim->show();
    m_anim->start();
    emit diagnosisWanted();
}

void WidgetSetting::resetDiagnosis()
{
    m_startBtn->setText(tr("Start"));
    m_startBtn->setAccessibleName(tr("Start the network diagnosis"));
    m_anim->stop();
    m_anim->hide();
    m_Diagnosising = false;
}
