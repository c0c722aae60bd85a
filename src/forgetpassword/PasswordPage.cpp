#include "forgetpassword/PasswordPage.h"

#include "app/Platform.h"
#include "forgetpassword/WarningIcon.h"
#include "widgets/BackButton.h"
#include "widgets/CommonTipsDialog.h"
#include "widgets/DialogFrame.h"
#include "widgets/EntryField.h"
#include "widgets/PromptText.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kFormWidth = 264;
constexpr int kMargin = 24;      ///< beside the form; the right one holds the warnings
constexpr int kFieldHeight = 36; ///< that of makeField()
constexpr int kTipWidth = 248;
constexpr int kTipHeight = 148;
constexpr int kChineseTipHeight = 128;
constexpr int kLongestText = 200;
constexpr int kMostTextLines = 3; ///< beneath more of them the form would reach the prompt

} // namespace

namespace TQ {

PasswordPage::PasswordPage(const char* name, QWidget* parent) : QWidget(parent)
{
    auto* form = new QWidget(this);
    form->setFixedWidth(kFormWidth + 2 * kMargin);
    m_form = new QGridLayout(form);
    setObjectName(QLatin1String(name));
    m_form->setContentsMargins(kMargin, 0, 0, 0);
    m_form->setHorizontalSpacing(0);
    m_form->setVerticalSpacing(12);
    m_form->setColumnStretch(0, 1);
    m_form->setColumnMinimumWidth(1, kMargin);

    auto* back = named(new BackButton(tr("Back"), this), "backBtn");
    back->setAutoDefault(true);
    connect(back, &QPushButton::clicked, this, &PasswordPage::backBtnClicked);
    m_form->addWidget(back, 0, 0, Qt::AlignLeft);

    auto* middle = new QVBoxLayout(this);
    middle->setContentsMargins(0, 0, 0, 24);
    middle->addStretch();
    middle->addWidget(form, 0, Qt::AlignHCenter);
    middle->addStretch();
}

// Form

QHBoxLayout* PasswordPage::addTitle(QLabel* title)
{
    auto* row = new QHBoxLayout;
    row->addWidget(title, 1);
    m_form->addLayout(row, m_form->rowCount(), 0);
    return row;
}

void PasswordPage::addWide(QWidget* widget)
{
    m_form->addWidget(widget, m_form->rowCount(), 0);
}

void PasswordPage::addText(QLabel* label, const QString& text)
{
    label->setWordWrap(true);
    label->setFixedWidth(kFormWidth);
    addWide(label);
    setFormText(label, text);
}

void PasswordPage::setFormText(QLabel* label, const QString& text)
{
    label->ensurePolished();
    if (text.isEmpty())
        return label->clear();
    const int most = (2 * kMostTextLines + 1) * label->fontMetrics().lineSpacing() / 2;
    for (int length = qMin(text.size(), kLongestText); length > 0; --length) {
        label->setText(shortenedText(text, length));
        if (label->heightForWidth(kFormWidth) <= most)
            break;
    }
    label->setFixedHeight(label->heightForWidth(kFormWidth)); // the form does not ask it again
    setPlainToolTip(label, label->text() == text ? QString() : text);
}

void PasswordPage::addField(EntryField* field, WarningIcon* warning)
{
    const int row = m_form->rowCount();
    m_form->addWidget(field, row, 0);
    if (warning)
        m_form->addWidget(warning, row, 1, Qt::AlignRight | Qt::AlignVCenter);
}

void PasswordPage::addField(EntryField* field, QPushButton* beside)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(field, 1);
    row->addWidget(beside);
    beside->setFixedHeight(kFieldHeight);
    m_form->addLayout(row, m_form->rowCount(), 0);
}

void PasswordPage::addSubmit(QPushButton* button)
{
    m_submit = button;
    button->setFixedHeight(kFieldHeight);
    button->setAutoDefault(true); // Return presses it while it has the focus
    addWide(button);
    connect(button, &QPushButton::clicked, this, &PasswordPage::keepFocus);
}

EntryField* PasswordPage::makeField(const char* name, const QString& title, const char* icon)
{
    return adopt(::makeField(this, name, title, icon));
}

EntryField* PasswordPage::makePasswordField(const char* name, const QString& title)
{
    return adopt(::makePasswordField(this, name, title));
}

EntryField* PasswordPage::adopt(EntryField* field)
{
    connect(field, &QLineEdit::returnPressed, this, [this, field] { onReturn(field); });
    connect(field, &QLineEdit::textEdited, this, [this, field] { m_lastEdited = field; });
    m_fields.append(field);
    return field;
}

// Keyboard

void PasswordPage::onReturn(EntryField* field)
{
    if (m_submit->isEnabled())
        return m_submit->click();
    const int at = m_fields.indexOf(field);
    for (int i = 1; i < m_fields.size(); ++i) {
        EntryField* next = m_fields.at((at + i) % m_fields.size());
        if (next->text().isEmpty() && !next->isReadOnly())
            return next->setFocus(Qt::TabFocusReason);
    }
}

// A button that is disabled while its request runs would hand the focus on to one that leaves.
void PasswordPage::keepFocus()
{
    auto* const field = qobject_cast<EntryField*>(focusWidget());
    if (m_lastEdited && !m_fields.contains(field))
        m_lastEdited->setFocus(Qt::OtherFocusReason);
}

void PasswordPage::focusFirstEmpty()
{
    for (EntryField* field : qAsConst(m_fields)) {
        if (field->text().isEmpty() && !field->isReadOnly())
            return field->setFocus(Qt::OtherFocusReason);
    }
}

void PasswordPage::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel))
        emit backBtnClicked(); // the window would close
    else
        QWidget::keyPressEvent(event);
}

// Visits

void PasswordPage::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        m_visit.begin();
        enter();
        focusFirstEmpty();
    }
    QWidget::showEvent(event);
}

void PasswordPage::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous()) {
        leave();
        m_visit.begin();
    }
    QWidget::hideEvent(event);
}

// Outcomes

void PasswordPage::fail(const OrchReply& reply)
{
    if (reply.status == 502)
        emit badGateway(m_visit);
    else
        emit reportNetworkErr(reply);
}

bool PasswordPage::showTip(const QString& text)
{
    const QPointer<PasswordPage> alive(this);
    const Attempt::Run run = m_visit.run();
    auto* tip = new CommonTipsDialog(window());
    tip->setContentText(text);
    tip->setCompact(kTipWidth, platform().isChinese() ? kChineseTipHeight : kTipHeight);
    runAndDelete(tip);
    return alive && run.isCurrent();
}

} // namespace TQ
