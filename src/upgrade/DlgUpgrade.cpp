#include "upgrade/DlgUpgrade.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequests.h"
#include "orch/Util.h"
#include "upgrade/InstallerHandover.h"
#include "upgrade/UpgradePolicy.h"
#include "widgets/DialogFrame.h"
#include "widgets/IconButton.h"
#include "widgets/Style.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QNetworkAccessManager>
#include <QPushButton>
#include <QScrollArea>

namespace {

constexpr QSize kSize(252, 284);
constexpr QSize kPicture(252, 104);
constexpr QRect kNote(20, 140, 212, 76);
constexpr int kNoteWidth = 200; // leaves room for the scroll bar
constexpr QSize kButton(80, 28);
constexpr QPoint kUpgrade(134, 224);
constexpr QPoint kUpgradeAlone(86, 224);

} // namespace

QString brokenToWidth(const QString& text, int width,
                      const std::function<int(const QString&)>& lineWidth)
{
    QString broken;
    QString line;
    for (const QChar c : text) {
        if (c == QLatin1Char('\n')) {
            broken += line + c;
            line.clear();
            continue;
        }
        if (!line.isEmpty() && !c.isLowSurrogate() && lineWidth(line + c) > width) {
            broken += line + QLatin1Char('\n');
            line.clear();
        }
        line += c;
    }
    return broken + line;
}

DlgUpgrade::DlgUpgrade(QWidget* parent, bool forwardReplies)
    : QDialog(parent), m_NetMgr(new QNetworkAccessManager(this)), m_Parent(parent),
      m_labelTitle(new QLabel(this)), m_labelContent(new QLabel)
{
    setObjectName(QStringLiteral("DlgUpgrade"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setStyleSheet(styleSheetFor("dialogs"));
    setFixedSize(kSize);
    cutToCard(this);
    if (forwardReplies)
        connect(m_NetMgr, &QNetworkAccessManager::finished, this, &DlgUpgrade::checkAnswered);

    auto* picture = new QLabel(this);
    picture->setObjectName(QStringLiteral("labelPic"));
    picture->setGeometry(QRect(QPoint(), kPicture));
    picture->setPixmap(pictureIcon(QStringLiteral("upgrade.png")).pixmap(kPicture));
    auto* badge = new QLabel(this);
    badge->setObjectName(QStringLiteral("newIconLabel"));
    badge->setGeometry(20, 16, 32, 16);
    badge->setPixmap(pictureIcon(QStringLiteral("new.png")).pixmap(32, 16));
    m_labelTitle->setObjectName(QStringLiteral("labelTitle"));
    m_labelTitle->setTextFormat(Qt::PlainText);
    setRole(m_labelTitle, "heading");
    m_labelTitle->setGeometry(20, 112, 212, 20);
    buildNote();

    m_btnUpgrade = button("btnUpgrade", tr("Upgrade"), "primary", QRect(kUpgrade, kButton),
                          &DlgUpgrade::on_btnUpgrade_clicked);
    m_btnLater = button("btnLater", tr("Later"), "secondary", QRect(QPoint(38, 224), kButton),
                        &DlgUpgrade::on_btnLater_clicked);
    m_btnSkip = button("btnSkip", tr("Skip This Version"), "link", QRect(46, 254, 160, 24),
                       &DlgUpgrade::on_btnSkip_clicked);
    auto* close = new IconButton("close_white", tr("Close"), this);
    close->setObjectName(QStringLiteral("btnClose"));
    close->move(kSize.width() - close->width() - 8, 8);
    connect(close, &QPushButton::clicked, this, &DlgUpgrade::on_btnClose_clicked);
    setTabOrder(m_btnUpgrade, m_btnLater);
    setTabOrder(m_btnLater, m_btnSkip);
    setTabOrder(m_btnSkip, close);
}

DlgUpgrade::~DlgUpgrade() = default;

QPushButton* DlgUpgrade::button(const char* name, const QString& text, const char* role,
                                const QRect& place, void (DlgUpgrade::*slot)())
{
    auto* made = new QPushButton(text, this);
    made->setObjectName(QLatin1String(name));
    made->setGeometry(place);
    made->setCursor(Qt::PointingHandCursor);
    made->setAutoDefault(false);
    setRole(made, role);
    connect(made, &QPushButton::clicked, this, slot);
    return made;
}

// A long note scrolls.
void DlgUpgrade::buildNote()
{
    m_labelContent->setObjectName(QStringLiteral("labelContent"));
    m_labelContent->setTextFormat(Qt::PlainText);
    m_labelContent->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* scroll = new QScrollArea(this);
    scroll->setObjectName(QStringLiteral("noteArea"));
    scroll->setGeometry(kNote);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus); // it shows no focus
    scroll->setWidget(m_labelContent);
    m_labelContent->setAutoFillBackground(false); // the card shows through
    scroll->viewport()->setAutoFillBackground(false);
}

void DlgUpgrade::setSettings(const QString& note, const QString& version, bool force)
{
    m_NewVersion = version;
    m_labelTitle->setText(tr("Discover A New Version V") + version);
    setAccessibleName(m_labelTitle->text());
    const QFontMetrics metrics(QApplication::font());
    m_labelContent->setText(brokenToWidth(
        note, kNoteWidth, [&](const QString& line) { return metrics.horizontalAdvance(line); }));
    m_btnUpgrade->move(force ? kUpgradeAlone : kUpgrade);
    m_btnUpgrade->setDefault(force);
    m_btnLater->setVisible(!force);
    m_btnSkip->setVisible(!force);
}

void DlgUpgrade::setUrl(const QString& url)
{
    m_Url = url;
}

void DlgUpgrade::checkUpgrade(bool byUser)
{
    logDisplayInfo(QStringLiteral("Check new version"));
    const QString authUrl = ConfigUtil::getvalue(ConfigUtil::AUTHURL, QString()).toString();
    OrchRequest request = orchrequest::upgradeCheck(
        authUrl, storedIdentity(), Util::getDistributionId(), Util::getCpuArchitecture());
    request.userData = byUser;
    sendOrchRequest(*m_NetMgr, request);
}

void DlgUpgrade::on_btnUpgrade_clicked()
{
    handOverToInstaller(m_Url);
    accept();
}

void DlgUpgrade::on_btnLater_clicked()
{
    UpgradeChoices::putOff(m_NewVersion);
    reject();
}

void DlgUpgrade::on_btnSkip_clicked()
{
    UpgradeChoices::skip(m_NewVersion);
    done(kSkipped);
}

void DlgUpgrade::on_btnClose_clicked()
{
    on_btnLater_clicked();
}

// Escape would answer the offer by accident; Return presses the button that has the focus.
void DlgUpgrade::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (auto* focused = qobject_cast<QPushButton*>(focusWidget()); enter && focused)
        return focused->click();
    if (event->key() != Qt::Key_Escape)
        QDialog::keyPressEvent(event);
}

// Closed by the window manager's means: as by the close button.
void DlgUpgrade::closeEvent(QCloseEvent* event)
{
    if (event->spontaneous())
        UpgradeChoices::putOff(m_NewVersion);
    QDialog::closeEvent(event);
}

void DlgUpgrade::showEvent(QShowEvent* event)
{
    m_btnUpgrade->setFocus();
    QDialog::showEvent(event);
    centerOver(this, m_Parent);
}

void DlgUpgrade::paintEvent(QPaintEvent*)
{
    paintCard(this);
}
