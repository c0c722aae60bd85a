#include "widgets/ConfirmDialog.h"

#include "widgets/DialogFrame.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace {

constexpr int kTextWidth = 264;
constexpr QSize kPicture(32, 32);

QLabel* wrappingLabel(QWidget* parent, const char* name, const char* role)
{
    QLabel* label = makeLabel(parent, name, role);
    label->setWordWrap(true);
    return label;
}

} // namespace

ConfirmDialog::ConfirmDialog(const char* picture, const QString& title, const QString& text,
                             QWidget* parent)
    : OtpBaseDlg(parent), m_Parent(parent),
      m_labelText(wrappingLabel(contentWidget(), "labelText", "heading")),
      m_labelNote(wrappingLabel(contentWidget(), "labelNote", "secondary")),
      m_buttonRow(new QWidget(contentWidget()))
{
    setWindowTitle(title);
    QLabel* labelTitle = wrappingLabel(contentWidget(), "labelTitle", "title");
    labelTitle->setText(title);
    QLabel* labelPic = makePicture(contentWidget(), "labelPic", QLatin1String(picture), kPicture);

    auto* words = new QVBoxLayout;
    words->setSpacing(4);
    words->addStretch();
    words->addWidget(m_labelText);
    words->addWidget(m_labelNote);
    words->addStretch();
    m_labelText->setFixedWidth(kTextWidth);
    m_labelNote->setFixedWidth(kTextWidth);
    m_labelNote->hide();

    auto* body = new QHBoxLayout;
    body->setSpacing(16);
    body->addWidget(labelPic, 0, Qt::AlignTop);
    body->addLayout(words, 1);

    auto* buttons = new QHBoxLayout(m_buttonRow);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(12);
    buttons->addStretch();

    auto* layout = new QVBoxLayout(contentWidget());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(20);
    layout->addWidget(labelTitle);
    layout->addLayout(body);
    layout->addWidget(m_buttonRow);
    setText(text);
}

void ConfirmDialog::setText(const QString& text)
{
    m_labelText->setText(text);
    setAccessibleName(text);
}

void ConfirmDialog::setNote(const QString& note)
{
    m_labelNote->setText(note);
    m_labelNote->setVisible(!note.isEmpty());
    setAccessibleDescription(note);
}

QPushButton* ConfirmDialog::addButton(const QString& text, const char* name, const char* role)
{
    QPushButton* button = makeDialogButton(m_buttonRow, name, role, text);
    m_buttonRow->layout()->addWidget(button);
    return button;
}

void ConfirmDialog::addYesNo()
{
    QPushButton* no = addButton(tr("No"), "btnNo", "secondary");
    QPushButton* yes = addButton(tr("Yes"), "btnYes", "primary");
    connect(no, &QPushButton::clicked, this, &QDialog::reject);
    connect(yes, &QPushButton::clicked, this, &QDialog::accept);
    yes->setDefault(true);
    yes->setFocus();
    setTabOrder(no, yes);
    setTabOrder(yes, m_closeBtn);
}

void ConfirmDialog::addOk()
{
    QPushButton* ok = addButton(tr("OK"), "btnOk", "primary");
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    ok->setDefault(true);
    ok->setFocus();
}

void ConfirmDialog::showEvent(QShowEvent* event)
{
    OtpBaseDlg::showEvent(event);
    centerOver(this, m_Parent);
}
