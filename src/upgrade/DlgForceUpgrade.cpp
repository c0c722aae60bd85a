#include "upgrade/DlgForceUpgrade.h"

#include "upgrade/InstallerHandover.h"
#include "widgets/DialogFrame.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>

namespace {

constexpr int kWidth = 304;
constexpr int kNoteHeight = 72;
constexpr QSize kPicture(64, 64);

} // namespace

DlgForceUpgrade::DlgForceUpgrade(QDialog* parent)
    : OtpBaseDlg(parent), m_noteEdit(named(new QTextEdit(contentWidget()), "m_noteEdit")),
      m_newVersionLabel(makeLabel(contentWidget(), "m_newVersionLabel", "")),
      m_titleLabel(makeLabel(contentWidget(), "m_titleLabel", "title"))
{
    setObjectName(QStringLiteral("DlgForceUpgrade"));
    QLabel* picture =
        makePicture(contentWidget(), "", QStringLiteral("upgrade_warning2x.png"), kPicture);
    m_titleLabel->setWordWrap(true);
    m_titleLabel->setFixedWidth(kWidth);
    m_titleLabel->setAlignment(Qt::AlignCenter);
    m_noteEdit->setReadOnly(true);
    m_noteEdit->setFixedHeight(kNoteHeight);
    m_noteEdit->setAccessibleName(tr("Release note"));
    setRole(m_noteEdit, "panel");
    QPushButton* upgrade =
        makeDialogButton(contentWidget(), "btnUpgrade", "primary", tr("Upgrade"));
    upgrade->setDefault(true);
    connect(upgrade, &QPushButton::clicked, this, &DlgForceUpgrade::onUpgradePressed);

    auto* version = new QHBoxLayout;
    version->setSpacing(0);
    version->addWidget(makeLabel(contentWidget(), "", "", tr("Discover A New Version V")));
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
