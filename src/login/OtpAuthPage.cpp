#include "login/OtpAuthPage.h"

#include "login/QrPicture.h"
#include "widgets/BackButton.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kFormWidth = 312; // wider than the other pages: the code wants its room
constexpr int kCodeSide = 168;
constexpr int kEdge = 8; // about what the code leaves free of its picture

} // namespace

OtpAuthPage::OtpAuthPage(QWidget* parent)
    : QWidget(parent), instructionBtn(button("instructionBtn", "link", tr("View Instructions"),
                                             &OtpAuthPage::instructionsWanted)),
      copyUsernameBtn(button("copyUsernameBtn", "secondary", tr("Copy Username"),
                             &OtpAuthPage::copyUsernameWanted)),
      copyKeyBtn(
          button("copyKeyBtn", "secondary", tr("Copy the Key"), &OtpAuthPage::copyKeyWanted)),
      nextBtn(button("nextBtn", "primary", tr("Next"), &OtpAuthPage::nextWanted)),
      backBtn(named(new BackButton(tr("Back"), this), "backBtn")),
      qrLabel(makeLabel(this, "qrLabel", "")),
      qrBottomLabel(makeLabel(this, "qrBottomLabel", "secondary", tr("Scan QR Code")))
{
    setObjectName(QStringLiteral("otpAuthPage"));
    connect(backBtn, &QPushButton::clicked, this, &OtpAuthPage::backWanted);
    backBtn->setAutoDefault(true);
    qrLabel->setFixedSize(kCodeSide, kCodeSide);
    qrLabel->setAccessibleName(tr("QR code"));

    QLabel* text = makeLabel(this, "labelBinding", "secondary",
                             tr("Please download the authenticator (e.g. Tarvelin "
                                "Authenticator,Microsoft Authenticator, etc.) on your phone, bind "
                                "the authenticator by scanning the QR code or copying the key."));
    text->setWordWrap(true);
    text->setMinimumHeight(text->heightForWidth(kFormWidth)); // the form does not ask it again

    auto* form = new QWidget(this);
    form->setFixedWidth(kFormWidth);
    auto* column = new QVBoxLayout(form);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(backBtn, 0, Qt::AlignLeft);
    column->addWidget(makeLabel(form, "labelTitle", "title", tr("Binding Authenticator")));
    column->addWidget(text);
    column->addWidget(codeAndButtons());

    auto* middle = new QVBoxLayout(this);
    middle->setContentsMargins(0, 0, 0, 16);
    middle->addStretch();
    middle->addWidget(form, 0, Qt::AlignHCenter);
    middle->addStretch();

    setTabOrder(nextBtn, copyUsernameBtn);
    setTabOrder(copyUsernameBtn, copyKeyBtn);
    setTabOrder(copyKeyBtn, instructionBtn);
    setTabOrder(instructionBtn, backBtn);
}

QWidget* OtpAuthPage::codeAndButtons()
{
    auto* area = new QWidget(this);
    auto* left = new QVBoxLayout;
    left->setSpacing(4);
    left->addWidget(qrLabel);
    left->addWidget(qrBottomLabel, 0, Qt::AlignHCenter);

    auto* right = new QVBoxLayout;
    right->setSpacing(8);
    right->addWidget(copyUsernameBtn);
    right->addWidget(copyKeyBtn);
    right->addWidget(instructionBtn);
    right->addStretch();
    right->addWidget(nextBtn);

    auto* row = new QHBoxLayout(area);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    row->addLayout(left);
    row->addLayout(right, 1);
    right->setContentsMargins(0, kEdge, 0,
                              qrBottomLabel->sizeHint().height() + left->spacing() + kEdge);
    return area;
}

QPushButton* OtpAuthPage::button(const char* name, const char* role, const QString& text,
                                 void (OtpAuthPage::*wanted)())
{
    QPushButton* push = makeButton(this, name, role, text);
    push->setAutoDefault(true); // Return presses the button that has the focus
    connect(push, &QPushButton::clicked, this, wanted);
    return push;
}

void OtpAuthPage::setCode(const QString& text)
{
    m_code = text;
    drawCode();
}

void OtpAuthPage::drawCode()
{
    m_drawnFor = devicePixelRatioF();
    const QImage picture = qrPicture(m_code, kCodeSide, m_drawnFor);
    if (picture.isNull())
        qrLabel->clear();
    else
        qrLabel->setPixmap(QPixmap::fromImage(picture));
    qrBottomLabel->setVisible(!picture.isNull());
}

void OtpAuthPage::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Cancel))
        emit backWanted(); // the window would close
    else
        QWidget::keyPressEvent(event);
}

void OtpAuthPage::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    nextBtn->setFocus();
}

// The window may have come to a screen with other pixels.
void OtpAuthPage::paintEvent(QPaintEvent* event)
{
    if (!qFuzzyCompare(m_drawnFor, devicePixelRatioF()))
        drawCode();
    QWidget::paintEvent(event);
}
