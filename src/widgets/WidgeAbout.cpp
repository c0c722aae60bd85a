#include "widgets/WidgeAbout.h"

#include "app/Deployment.h"
#include "app/Platform.h"
#include "app/Product.h"
#include "widgets/QLabelAnim.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr QSize kIcon(16, 16);

QLabel* centred(QLabel* label)
{
    label->setAlignment(Qt::AlignCenter);
    return label;
}

} // namespace

WidgeAbout::WidgeAbout(QWidget* parent)
    : QWidget(parent), m_rotatePng(new QLabelAnim(this)),
      m_btnNewVersion(makeDialogButton(this, "btnNewVersion", "link", QString())),
      m_upgradeIcon(
          centred(makePicture(this, "labelUpgradeIcon", QStringLiteral("new.png"), QSize(32, 16))))
{
    setObjectName(QStringLiteral("WidgeAbout"));
    QLabel* picture = centred(makePicture(
        this, "labelLogo", QStringLiteral("veltaro/ostrana-logo-version.png"), QSize(200, 64)));
    picture->setAccessibleName(QLatin1String(product::kName));
    QLabel* version = centred(makeLabel(this, "labelVersion", "heading",
                                        tr("Version ") + QLatin1String(product::kVersion)));
    QLabel* maker = centred(makeLabel(this, "labelMaker", "secondary", deployment::makerName()));
    QLabel* rights =
        centred(makeLabel(this, "labelRights", "hint",
                          tr("Copyright © ") + platform().now().toString(QStringLiteral("yyyy ")) +
                              deployment::makerName()));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 8, 24, 16);
    layout->setSpacing(8);
    layout->addStretch(2);
    layout->addWidget(picture);
    layout->addWidget(version);
    layout->addWidget(makeVersionRow(), 0, Qt::AlignHCenter);
    layout->addStretch(3);
    layout->addWidget(makeLinks());
    layout->addWidget(maker);
    layout->addWidget(rights);
}

QWidget* WidgeAbout::makeVersionRow()
{
    m_rotatePng->setObjectName(QStringLiteral("m_rotatePng"));
    m_rotatePng->setFixedSize(kIcon);
    m_rotatePng->setAccessibleName(tr("Checking for a new version"));
    m_rotatePng->init(pictureIcon(QStringLiteral("version_loading.png")).pixmap(kIcon));
    m_rotatePng->hide();
    m_upgradeIcon->hide();
    m_btnNewVersion->hide();
    connect(m_btnNewVersion, &QPushButton::clicked, this, &WidgeAbout::on_btnNewVersion_clicked);

    auto* row = new QWidget(this);
    row->setMinimumHeight(28); // keeps the page still while its content comes and goes
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_rotatePng);
    layout->addWidget(m_upgradeIcon);
    layout->addWidget(m_btnNewVersion);
    return row;
}

QLabel* WidgeAbout::makeLinks()
{
    const bool chinese = platform().isChinese();
    const QString colour = QStringLiteral("rgb(2, 144, 255)");
    QLabel* links = centred(makeLabel(this, "labelLinks", "text"));
    links->setTextFormat(Qt::RichText);
    links->setText(tr("<a style=\"color:%1\" href=\"%2\">User Agreement</a> and "
                      "<a style=\"color:%3\" href=\"%4\">Privacy Policy</a>.")
                       .arg(colour, deployment::userAgreementUrl(chinese), colour,
                            deployment::privacyPolicyUrl(chinese)));
    links->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(links, &QLabel::linkActivated, this,
            [](const QString& address) { platform().openUrl(QUrl(address)); });
    return links;
}

void WidgeAbout::showVersion(const QString& version, bool showNew, bool failed)
{
    setNewVersion(version);
    m_ShowNewVersion = showNew;
    stopAnim();
    const bool offered = m_ShowNewVersion && !m_NewVersion.isEmpty();
    if (offered)
        m_btnNewVersion->setText(tr("Discover A New Version ") + m_NewVersion);
    else
        m_btnNewVersion->setText(failed ? tr("Check failed, please try again")
                                        : tr("Already the Latest Version"));
    m_btnNewVersion->setEnabled(offered);
    m_btnNewVersion->show();
    m_upgradeIcon->setVisible(offered);
}

void WidgeAbout::startCheck()
{
    m_btnNewVersion->hide();
    m_upgradeIcon->hide();
    startAnim();
}

void WidgeAbout::startAnim()
{
    m_rotatePng->show();
    m_rotatePng->start();
}

void WidgeAbout::stopAnim()
{
    m_rotatePng->stop();
    m_rotatePng->hide();
}

void WidgeAbout::setNewVersion(const QString& version)
{
    m_NewVersion = version;
}

void WidgeAbout::on_btnNewVersion_clicked()
{
    emit newVersionRequested();
}
