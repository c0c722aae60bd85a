#include "widgets/CommonTipsDialog.h"

#include "widgets/DialogFrame.h"
#include "widgets/WidgetParts.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

CommonTipsDialog::CommonTipsDialog(QWidget* parent)
    : OtpBaseDlg(parent), m_contentLabel(makeLabel(contentWidget(), "contentLabel", "")),
      m_Parent(parent)
{
    setObjectName(QStringLiteral("CommonTipsDialog"));
    m_contentLabel->setWordWrap(true);
    m_contentLabel->setFixedWidth(304);
    m_contentLabel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);

    QPushButton* confirm =
        makeDialogButton(contentWidget(), "btnConfirm", "primary", tr("Confirm"));
    confirm->setDefault(true);
    connect(confirm, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(contentWidget());
    layout->setContentsMargins(0, 20, 0, 0);
    layout->setSpacing(24);
    layout->addWidget(m_contentLabel);
    layout->addWidget(confirm, 0, Qt::AlignHCenter);
    setTabOrder(confirm, m_closeBtn);
    confirm->setFocus();
}

void CommonTipsDialog::setContentText(const QString& text)
{
    m_contentLabel->setText(text);
    QString spoken = text;
    spoken.remove(QChar(0x200b)); // the places where a line may break
    m_contentLabel->setAccessibleName(spoken);
    setAccessibleName(spoken);
}

void CommonTipsDialog::setCompact(int width, int minimumHeight)
{
    layout()->setContentsMargins(20, 16, 20, 12);
    contentWidget()->layout()->setContentsMargins(0, 8, 0, 0);
    contentWidget()->layout()->setSpacing(10);
    m_contentLabel->setFixedWidth(width - 40);
    m_compactSize = QSize(width, minimumHeight);
}

void CommonTipsDialog::showEvent(QShowEvent* event)
{
    OtpBaseDlg::showEvent(event);
    if (m_compactSize.isValid()) {
        // Only now has the label the font that its height depends on.
        m_contentLabel->setFixedHeight(m_contentLabel->heightForWidth(m_contentLabel->width()));
        setFixedSize(m_compactSize.width(),
                     qMax(m_compactSize.height(), layout()->minimumSize().height()));
    }
    centerOver(this, m_Parent);
}
