#include "login/OtpVerifyPage.h"

#include "login/AccessibleCode.h"
#include "login/VerifyNumInputWidget.h"
#include "widgets/BackButton.h"
#include "widgets/WidgetParts.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

namespace {

constexpr int kFormWidth = 264;
constexpr int kButtonHeight = 36;

VerifyNumInputWidget* makeCodeInput(QWidget* parent)
{
    describeCodesToAssistants(); // they look as soon as it has a name
    return named(new VerifyNumInputWidget(parent), "m_verifyNumber");
}

} // namespace

OtpVerifyPage::OtpVerifyPage(QWidget* parent)
    : QWidget(parent), m_verifyNumber(makeCodeInput(this)),
      m_verifyBtn(makeButton(this, "m_verifyBtn", "primary", tr("Verify"))),
      m_lostPhoneBtn(makeButton(this, "m_lostPhoneBtn", "link", tr("Lost Your Phone?")))
{
    setObjectName(QStringLiteral("m_otpVerifyPage"));
    auto* back = named(new BackButton(tr("Back"), this), "verifyBackBtn");
    for (QPushButton* button : {m_verifyBtn, m_lostPhoneBtn, static_cast<QPushButton*>(back)})
        button->setAutoDefault(true); // Return presses the button that has the focus
    layOut(back);

    connect(m_verifyNumber, &VerifyNumInputWidget::enterPressed, this, &OtpVerifyPage::verify);
    connect(m_verifyBtn, &QPushButton::clicked, this, &OtpVerifyPage::verify);
    connect(m_lostPhoneBtn, &QPushButton::clicked, this, &OtpVerifyPage::lostPhoneBtnPressed);
    connect(back, &QPushButton::clicked, this, &OtpVerifyPage::backBtnClicked);
}

void OtpVerifyPage::layOut(QPushButton* back)
{
    QLabel* text =
        makeLabel(this, "labelVerify", "heading",
                  tr("Please enter the 6-digit authentication numbers shown in authenticator."));
    text->setWordWrap(true);
    m_verifyBtn->setFixedHeight(kButtonHeight);

    auto* form = new QWidget(this);
    form->setFixedWidth(kFormWidth);
    auto* column = new QVBoxLayout(form);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(16);
    column->addWidget(back, 0, Qt::AlignLeft);
    column->addWidget(text);
    column->addWidget(m_verifyNumber);
    column->addWidget(m_verifyBtn);
    column->addWidget(m_lostPhoneBtn, 0, Qt::AlignRight);

    auto* middle = new QVBoxLayout(this);
    middle->setContentsMargins(0, 0, 0, 36);
    middle->addStretch();
    middle->addWidget(form, 0, Qt::AlignHCenter);
    middle->addStretch();

    setTabOrder(m_verifyNumber, m_verifyBtn);
    setTabOrder(m_verifyBtn, m_lostPhoneBtn);
    setTabOrder(m_lostPhoneBtn, back);
}

void OtpVerifyPage::setLostPhoneBtnVisible(bool visible)
{
    m_lostPhoneBtn->setVisible(visible);
}

void OtpVerifyPage::setVerifyBtnEnabled(bool enabled)
{
    m_verifyBtn->setEnabled(enabled);
    m_lostPhoneBtn->setEnabled(enabled);
}

void OtpVerifyPage::clearVerifyNumber()
{
    m_verifyNumber->clearNumber();
    if (isVisible())
        m_verifyNumber->setFocus();
}

void OtpVerifyPage::verify()
{
    if (!m_verifyBtn->isEnabled())
        return; // Return was pressed while a code is on its way
    const QString code = m_verifyNumber->text();
    if (code.size() < DigitCells::kCount)
        return emit codeMissing();
    m_verifyNumber->setFocus(); // which the disabled button would hand on
    setVerifyBtnEnabled(false);
    emit verifyBtnClicked(code);
}

void OtpVerifyPage::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel))
        emit backBtnClicked(); // the window would close
    else
        QWidget::keyPressEvent(event);
}

void OtpVerifyPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) // which a window is that comes back from the task bar
        setVerifyBtnEnabled(true);
}

void OtpVerifyPage::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        setLostPhoneBtnVisible(true);
}
