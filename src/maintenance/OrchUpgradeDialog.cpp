#include "maintenance/OrchUpgradeDialog.h"

#include "app/Platform.h"
#include "widgets/DialogFrame.h"
#include "widgets/WidgetParts.h"

#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QTextLayout>
#include <QTextOption>
#include <QVBoxLayout>

namespace {

constexpr QSize kSize(448, 280);
constexpr int kTitleWidth = 384; // ends before the close button
constexpr int kLongestTitle = 4000;

// The text in at most two lines no wider than kTitleWidth, the first broken within a word where it
// must be; an ellipsis stands for what is left over.
QString inTwoLines(const QString& text, const QFont& font)
{
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine first = layout.createLine();
    if (first.isValid())
        first.setLineWidth(kTitleWidth);
    layout.endLayout();
    const int length = first.isValid() ? first.textLength() : 0;
    if (length == text.size())
        return text;
    return text.left(length) + QLatin1Char('\n') +
           QFontMetrics(font).elidedText(text.mid(length), Qt::ElideRight, kTitleWidth);
}

} // namespace

OrchUpgradeDialog::OrchUpgradeDialog(NoticeType type, QWidget* parent)
    : OtpBaseDlg(parent), m_titleLabel(makeLabel(contentWidget(), "m_titleLabel", "")),
      m_contentEdit(named(new QTextEdit(contentWidget()), "m_contentEdit")), m_noticeType(type)
{
    setObjectName(QStringLiteral("OrchUpgradeDialog"));
    setFixedSize(kSize);
    m_titleLabel->setStyleSheet(QStringLiteral("color: #354052;font-weight: 600;font-size: 14px;"));
    setTitle(maintenance::noticeTitle(type));

    m_contentEdit->setReadOnly(true);
    m_contentEdit->setFrameShape(QFrame::NoFrame);
    m_contentEdit->setTextInteractionFlags(Qt::TextSelectableByMouse |
                                           Qt::TextSelectableByKeyboard);

    QPushButton* confirm =
        makeDialogButton(contentWidget(), "btnConfirm", "primary", tr("Confirm"));
    confirm->setDefault(true);
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
    m_titleLabel->ensurePolished(); // its font comes with its style
    const QString line = title.simplified().left(kLongestTitle);
    const QString shown = inTwoLines(line, m_titleLabel->font());
    m_titleLabel->setText(shown);
    m_titleLabel->setToolTip(shown.endsWith(QChar(0x2026)) ? Qt::convertFromPlainText(line)
                                                           : QString());
    m_titleLabel->setAccessibleName(title);
    setAccessibleName(title);
    m_contentEdit->setAccessibleName(title);
}

void OrchUpgradeDialog::setContent(const QString& content)
{
    m_contentEdit->setHtml(content);
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
    setContent(maintenance::noticeBody(m_noticeType, maintenance::noticeTime(m_startTime, chinese),
                                       maintenance::noticeTime(m_endTime, chinese)));
    OtpBaseDlg::showEvent(event);
    centerOver(this, parentWidget());
}

void showOrchUpgradeDialog(QWidget* window, const OrchUpgradeReply& notice, NoticeType type)
{
    auto* dialog = new OrchUpgradeDialog(type, window);
    dialog->setStartEndTime(notice.startTime, notice.endTime);
    if (notice.templates.isEmpty() && !notice.title.isEmpty())
        dialog->setTitle(notice.title);
    runAndDelete(dialog);
}
