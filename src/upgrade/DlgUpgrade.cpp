#include "upgrade/DlgUpgrade.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "orch/HostIdentity.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequest.h"
#include "orch/OrchRequests.h"
#include "upgrade/InstallerHandover.h"
#include "upgrade/UpgradePolicy.h"
#include "widgets/DialogFrame.h"
#include "widgets/IconButton.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

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
constexpr QRect kPicture(0, 0, 252, 104);
constexpr QRect kBadge(20, 16, 32, 16);
constexpr QRect kNote(20, 140, 212, 76);
constexpr int kNoteWidth = 200; // leaves room for the scroll bar
constexpr QSize kButton(80, 28);
constexpr QPoint kUpgrade(134, 224);
constexpr QPoint kUpgradeAlone(86, 224);

} // namespace

// The length of the longest start of `text` that is not wider than `width`: doubled until it is
// too wide, then narrowed down. What has no width is so measured a few times over, not once a
// character.
static int fittingLength(const QStringRef& text, int width,
                         const std::function<int(const QString&)>& lineWidth)
{
    const auto fits = [&](int length) {
        if (length < text.size() && text.at(length).isLowSurrogate())
            ++length; // a pair is one character
        return lineWidth(text.left(length).toString()) <= width;
    };
    int good = 1; // a line has at least one character
    int bad = 2;
    while (bad <= text.size() && fits(bad)) {
        good = bad;
        bad *= 2;
    }
    bad = qMin(bad, text.size() + 1);
    while (bad - good > 1) {
        const int middle = good + (bad - good) / 2;
        (fits(middle) ? good : bad) = middle;
    }
    return good < text.size() && text.at(good).isLowSurrogate() ? good + 1 : good;
}

QString brokenToWidth(const QString& text, int width,
                      const std::function<int(const QString&)>& lineWidth)
{
    QString broken;
    for (const QStringRef& ownLine : text.splitRef(QLatin1Char('\n'))) {
        QStringRef rest = ownLine;
        while (!rest.isEmpty()) {
            const QStringRef line = rest.left(fittingLength(rest, width, lineWidth));
            rest = rest.mid(line.size());
            broken += line;
            if (!rest.isEmpty())
                broken += QLatin1Char('\n');
        }
        broken += QLatin1Char('\n');
    }
    broken.chop(1);
    return broken;
}

DlgUpgrade::DlgUpgrade(QWidget* parent, bool forwardReplies)
    : QDialog(parent), m_NetMgr(makeAccessManager(this)), m_Parent(parent),
      m_forwardReplies(forwardReplies), m_labelTitle(makeLabel(this, "labelTitle", "heading")),
      m_labelContent(makeLabel(nullptr, "labelContent", ""))
{
    setObjectName(QStringLiteral("DlgUpgrade"));
    setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    setStyleSheet(styleSheetFor("dialogs"));
    setFixedSize(kSize);
    cutToCard(this);

    makePicture(this, "labelPic", QStringLiteral("upgrade.png"), kPicture.size())
        ->setGeometry(kPicture);
    makePicture(this, "newIconLabel", QStringLiteral("new.png"), kBadge.size())
        ->setGeometry(kBadge);
    m_labelTitle->setGeometry(20, 112, 212, 20);
    buildNote();

    m_btnUpgrade = button("btnUpgrade", tr("Upgrade"), "primary", QRect(kUpgrade, kButton),
                          &DlgUpgrade::on_btnUpgrade_clicked);
    m_btnLater = button("btnLater", tr("Later"), "secondary", QRect(QPoint(38, 224), kButton),
                        &DlgUpgrade::on_btnLater_clicked);
    m_btnSkip = button("btnSkip", tr("Skip This Version"), "link", QRect(46, 254, 160, 24),
                       &DlgUpgrade::on_btnSkip_clicked);
    auto* close = named(new IconButton("close_white", tr("Close"), this), "btnClose");
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
    QPushButton* made = makeDialogButton(this, name, role, text);
    made->setGeometry(place);
    made->setAutoDefault(false);
    connect(made, &QPushButton::clicked, this, slot);
    return made;
}

// A long note scrolls.
void DlgUpgrade::buildNote()
{
    m_labelContent->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* scroll = named(new QScrollArea(this), "noteArea");
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
    logDisplayInfo(tr("Check new version"));
    const QString authUrl = ConfigUtil::savedText(ConfigUtil::AUTHURL);
    OrchRequest request = orchrequest::upgradeCheck(
        authUrl, storedIdentity(), Util::getDistributionId(), Util::getCpuArchitecture());
    request.userData = byUser;
    sendOrchRequest(*m_NetMgr, request, [this](const OrchReply& reply) {
        if (m_forwardReplies)
            emit checkAnswered(reply);
    });
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
    // Return that is pressed as the offer pops up puts it off and starts nothing.
    (m_btnLater->isHidden() ? m_btnUpgrade : m_btnLater)->setFocus();
    QDialog::showEvent(event);
    centerOver(this, m_Parent);
}

void DlgUpgrade::paintEvent(QPaintEvent*)
{
    paintCard(this);
}
