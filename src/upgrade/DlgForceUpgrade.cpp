#include "upgrade/DlgForceUpgrade.h"

#include "upgrade/InstallerHandover.h"
#include "widgets/DialogFrame.h"
#include "widgets/Style.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

constexpr int kWidth = 304;
constexpr int kNoteHeight = 72;
constexpr int kPicture = 64;

} // namespace

DlgForceUpgrade::DlgForceUpgrade(QDialog* parent)
    : OtpBaseDlg(parent), m_noteEdit(new QTextEdit(contentWidget())),
      m_newVersionLabel(new QLabel(contentWidget())), m_titleLabel(new QLabel(contentWidget()))
{
    setObjectName(QStringLiteral("DlgForceUpgrade"));
    auto* picture = new QLabel(contentWidget());
    picture->setPixmap(
        pictureIcon(QStringLiteral("upgrade_warning2x.png")).pixmap(kPicture, kPicture));
    m_titleLabel->setObjectName(QStringLiteral("m_titleLabel"));
    m_titleLabel->setTextFormat(Qt::PlainText);
    m_titleLabel->setWordWrap(true);
    m_titleLabel->setFixedWidth(kWidth);
    m_titleLabel->setAlignment(Qt::AlignCenter);
    setRole(m_titleLabel, "title");
    m_newVersionLabel->setObjectName(QStringLiteral("m_newVersionLabel"));
    m_newVersionLabel->setTextFormat(Qt::PlainText);
    m_noteEdit->setObjectName(QStringLiteral("m_noteEdit"));
    m_noteEdit->setReadOnly(true);
    m_noteEdit->setFixedHeight(kNoteHeight);
    m_noteEdit->setAccessibleName(tr("Release note"));
    setRole(m_noteEdit, "panel");
    auto* upgrade = new QPushButton(tr("Upgrade"), contentWidget());
    upgrade->setObjectName(QStringLiteral("btnUpgrade"));
    upgrade->setCursor(Qt::PointingHandCursor);
    upgrade->setDefault(true);
    setRole(upgrade, "primary");
    connect(upgrade, &QPushButton::clicked, this, &DlgForceUpgrade::onUpgradePressed);

    auto* version = new QHBoxLayout;
    version->setSpacing(0);
    version->addWidget(new QLabel(tr("Discover A New Version V"), contentWidget()));
    version->addWidget(m_newVersionLabel, 1);
    auto* layout = new QVBoxLayout(contentWidget());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addWidget(m_titleLabel);
    layout->addLayout(version);
    layout->addWidget(m_noteEdit);
    layout->addWidget(upgrade, 0, Qt::AlignHCenter);
    setTabOrder(upgrade, m_noteEdit);
    setTabOrder(m_noteEdit, m_closeBtn);
    upgrade->setFocus();
}

void DlgForceUpgrade::setNoteText(const QString& note)
{
    m_noteEdit->setPlainText(note);
}

void DlgForceUpgrade::setNewVersion(const QString& version)
{
    m_newVersionLabel->setText(version);
}

void DlgForceUpgrade::setUrl(const QString& url)
{
    m_Url = url;
}

void DlgForceUpgrade::setLogoutAfterClose(bool logout)
{
    m_logoutAfterClose = logout;
}

void DlgForceUpgrade::onUpgradePressed()
{
    handOverToInstaller(m_Url);
    if (!m_logoutAfterClose)
        accept();
}

void DlgForceUpgrade::showEvent(QShowEvent* event)
{
    const QString text =
        m_logoutAfterClose
            ? tr("Your client is outdated, please update it to the latest version and login "
                 "again. Notice: You will be automatically logged out once you close current "
                 "popup box.")
            : tr("Your client is outdated, please update it to the latest version and login "
                 "again.");
    m_titleLabel->setText(text);
    m_titleLabel->setFixedHeight(m_titleLabel->heightForWidth(kWidth));
    setAccessibleName(text);
    OtpBaseDlg::showEvent(event);
    centerOver(this, parentWidget());
}

void DlgForceUpgrade::onCloseBtnClicked()
{
    accept();
}
