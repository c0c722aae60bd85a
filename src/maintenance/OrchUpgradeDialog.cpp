#include "maintenance/OrchUpgradeDialog.h"

#include "app/Platform.h"
#include "widgets/DialogFrame.h"
#include "widgets/Style.h"

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

constexpr QSize kSize(448, 280);

} // namespace

OrchUpgradeDialog::OrchUpgradeDialog(NoticeType type, QWidget* parent)
    : OtpBaseDlg(parent), m_titleLabel(new QLabel(contentWidget())),
      m_contentEdit(new QTextEdit(contentWidget())), m_noticeType(type)
{
    setObjectName(QStringLiteral("OrchUpgradeDialog"));
    setFixedSize(kSize);
    m_titleLabel->setObjectName(QStringLiteral("m_titleLabel"));
    m_titleLabel->setTextFormat(Qt::PlainText);
    m_titleLabel->setStyleSheet(QStringLiteral("color: #354052;font-weight: 600;font-size: 14px;"));
    setTitle(maintenance::noticeTitle(type));

    m_contentEdit->setObjectName(QStringLiteral("m_contentEdit"));
    m_contentEdit->setReadOnly(true);
    m_contentEdit->setFrameShape(QFrame::NoFrame);
    m_contentEdit->setTextInteractionFlags(Qt::TextSelectableByMouse |
                                           Qt::TextSelectableByKeyboard);

    auto* confirm = new QPushButton(tr("Confirm"), contentWidget());
    confirm->setObjectName(QStringLiteral("btnConfirm"));
    confirm->setCursor(Qt::PointingHandCursor);
    confirm->setDefault(true);
    setRole(confirm, "primary");
    connect(confirm, &QPushButton::clicked, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(contentWidget());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(m_titleLabel);
    layout->addWidget(m_contentEdit, 1);
    layout->addWidget(confirm, 0, Qt::AlignHCenter);
    setTabOrder(confirm, m_contentEdit);
    setTabOrder(m_contentEdit, m_closeBtn);
    confirm->setFocus();
}

OrchUpgradeDialog::~OrchUpgradeDialog() = default;

void OrchUpgradeDialog::setTitle(const QString& title)
{
    m_titleLabel->setText(title);
    setAccessibleName(title);
    m_contentEdit->setAccessibleName(title);
}

void OrchUpgradeDialog::setStartEndTime(long long start, long long end)
{
    m_startTime = start;
    m_endTime = end;
}

void OrchUpgradeDialog::showEvent(QShowEvent* event)
{
    const bool chinese =
        maintenance::chineseTimes(qEnvironmentVariable("LC_TIME"), platform().isChinese());
    m_contentEdit->setHtml(maintenance::noticeBody(m_noticeType,
                                                   maintenance::noticeTime(m_startTime, chinese),
                                                   maintenance::noticeTime(m_endTime, chinese)));
    OtpBaseDlg::showEvent(event);
    centerOver(this, parentWidget());
}

void onShowOrchUpgradeDialog(QWidget* window, const OrchUpgradeReply& notice, NoticeType type)
{
    auto* dialog = new OrchUpgradeDialog(type, window);
    dialog->setStartEndTime(notice.startTime, notice.endTime);
    if (notice.templates.isEmpty() && !notice.title.isEmpty())
        dialog->setTitle(notice.title);
    runAndDelete(dialog);
}
