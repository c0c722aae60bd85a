#include "widgets/WidgeDiagnoseResult.h"

#include "widgets/DialogFrame.h"
#include "widgets/IconButton.h"
#include "widgets/Style.h"
#include "widgets/WidgetParts.h"

#include <QGraphicsDropShadowEffect>
#include <QGridLayout>
#include <QLabel>

namespace {

constexpr int kIcon = 16;

void setFinding(QLabel* icon, QLabel* text, bool ok, const QString& words)
{
    const QString picture = ok ? QStringLiteral("right1x.png") : QStringLiteral("warning.png");
    icon->setPixmap(pictureIcon(picture).pixmap(kIcon, kIcon));
    text->setText(words);
}

} // namespace

WidgeDiagnoseResult::WidgeDiagnoseResult(QWidget* parent)
    : QWidget(parent), effect(new QGraphicsDropShadowEffect(this)),
      m_networkIcon(makeLabel(this, "labelNetworkIcon", "text")),
      m_networkText(makeLabel(this, "labelNetwork", "text")),
      m_orchIcon(makeLabel(this, "labelOrchIcon", "text")),
      m_orchText(makeLabel(this, "labelOrch", "text"))
{
    setObjectName(QStringLiteral("WidgeDiagnoseResult"));
    setAccessibleName(tr("Check Result"));
    setFixedWidth(232);
    effect->setOffset(0, 2);
    effect->setBlurRadius(16);
    effect->setColor(QColor(53, 64, 82, 70));
    setGraphicsEffect(effect);

    QLabel* title = makeLabel(this, "labelTitle", "title", tr("Check Result"));
    auto* close = named(new IconButton("close", tr("Close"), this), "pushBtnClose");
    connect(close, &QPushButton::clicked, this, &WidgeDiagnoseResult::on_pushBtnClose_clicked);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(16, 12, 12, 16);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(12);
    grid->setColumnStretch(1, 1);
    grid->addWidget(title, 0, 0, 1, 2);
    grid->addWidget(close, 0, 2, Qt::AlignTop);
    grid->addWidget(m_networkIcon, 1, 0);
    grid->addWidget(m_networkText, 1, 1, 1, 2);
    grid->addWidget(m_orchIcon, 2, 0);
    grid->addWidget(m_orchText, 2, 1, 1, 2);
}

void WidgeDiagnoseResult::setDiagnoseResult(bool networkOK, bool orchOK)
{
    setFinding(m_networkIcon, m_networkText, networkOK,
               networkOK ? tr("Network Normal") : tr("Network Anormaly"));
    setFinding(m_orchIcon, m_orchText, orchOK,
               orchOK ? tr("Orchestrator Connected") : tr("Orchestrator Not Connected"));
}

void WidgeDiagnoseResult::showEvent(QShowEvent*)
{
    announce(this, QStringList{tr("Check Result"), m_networkText->text(), m_orchText->text()}.join(
                       QStringLiteral(", ")));
}

void WidgeDiagnoseResult::on_pushBtnClose_clicked()
{
    close();
}

void WidgeDiagnoseResult::paintEvent(QPaintEvent*)
{
    paintCard(this);
}
