#include "main/HomePage.h"

#include "app/NamedTimer.h"
#include "main/ConnectButton.h"
#include "main/DlgMainUi.h"
#include "main/Session.h"
#include "main/widgeChronometer.h"
#include "orch/TextUtil.h"
#include "widgets/Style.h"

#include <QEvent>
#include <QLabel>
#include <QPushButton>

#include <utility>

namespace {

constexpr int kAnimationMs = 400;
constexpr QRect kIntranetLabel(228, 146, 216, 40);

} // namespace

HomePage::HomePage(DlgMainUi& widgets, const Session& session, QWidget* window)
    : QObject(window), ui(widgets), m_session(session), m_window(window),
      m_StartBtnAnimTimer(
          makeTimer(this, "m_StartBtnAnimTimer", kAnimationMs, &HomePage::onStartBtnAnimTick))
{
    ui.btnConnect->installEventFilter(this);
    ui.btnConnect->setAttribute(Qt::WA_Hover);
    initMobileDetectUI();
}

void HomePage::initMobileDetectUI()
{
    ui.m_mobileDetectLabel->setText(tr("Running in\nIntranet Mode"));
    setMobileDetectWidgetVisible(false);
}

bool HomePage::isHome() const
{
    return m_curMenuItem == MENU_HOME || m_curMenuItem == MENU_INTRANET;
}

void HomePage::setPage(MENU_ITEM page)
{
    m_curMenuItem = page;
    ui.m_Chronometer->setVisible(isHome() && m_session.isConnected());
    updateQuantumUI();
}

void HomePage::onStatus(Transition change)
{
    ui.labelQuantumPic->hide();
    ui.labelQuantumText->hide();
    if (change == Transition::Ignored)
        return;
    changeStartBtnStatus(m_session.status());
    ui.showRoute(m_session.isConnected());
    switch (change) {
    case Transition::Connected:
        ui.m_Chronometer->start();
        ui.m_Chronometer->setVisible(isHome());
        ui.labelUpSpeed->setText(QStringLiteral("0"));
        ui.labelDownSpeed->setText(QStringLiteral("0"));
        return updateQuantumUI();
    case Transition::Ended:
        clearRates(QStringLiteral("--"));
        Q_FALLTHROUGH();
    case Transition::Abandoned:
        setupMobileDisConnected();
        return;
    case Transition::Stopping:
        return ui.m_Chronometer->stop();
    case Transition::Begin:
    case Transition::Cancelling:
    case Transition::Ignored:
        return;
    }
}

// Connect button

void HomePage::changeStartBtnStatus(CONN_STATUS s)
{
    if (s == CONNECTING || s == DISCONNECTING)
        m_StartBtnAnimTimer->start();
    else
        m_StartBtnAnimTimer->stop();
    enableConnectButton(s != DISCONNECTING);
    switch (s) {
    case CONNECTING:
        return ui.btnConnect->setText(tr("Connecting"));
    case DISCONNECTING:
        return ui.btnConnect->setText(tr("Disconnecting"));
    case CONNECTION:
        setRole(ui.btnConnect, "secondary");
        return ui.btnConnect->setText(tr("Stop"));
    case DISCONNECTION:
        setRole(ui.btnConnect, "primary");
        return ui.btnConnect->setText(tr("Connect"));
    }
}

// A button that is switched off passes the keyboard on; it gets it back from where it went, unless
// the user has taken it elsewhere meanwhile.
void HomePage::enableConnectButton(bool enable)
{
    const bool hadFocus = m_window->focusWidget() == ui.btnConnect;
    ui.btnConnect->setEnabled(enable);
    if (!enable)
        m_focusLent = hadFocus ? m_window->focusWidget() : nullptr;
    else if (m_focusLent && std::exchange(m_focusLent, nullptr) == m_window->focusWidget())
        ui.btnConnect->setFocus();
}

void HomePage::onStartBtnAnimTick()
{
    const ConnectButtonTexts texts{tr("Connecting"), tr("Cancel"), tr("Disconnecting")};
    ui.btnConnect->setText(
        nextButtonText(m_session.status(), m_MouseOverConnect, ui.btnConnect->text(), texts));
}

bool HomePage::eventFilter(QObject* object, QEvent* event)
{
    if (event->type() == QEvent::HoverEnter)
        m_MouseOverConnect = true;
    else if (event->type() == QEvent::HoverLeave)
        m_MouseOverConnect = false;
    return QObject::eventFilter(object, event);
}

// Rates and encryption

void HomePage::clearRates(const QString& value)
{
    for (QLabel* speed : {ui.labelUpSpeed, ui.labelDownSpeed})
        speed->setText(value);
    for (QLabel* unit : {ui.labelUpKps, ui.labelDownKps})
        unit->setText(QStringLiteral("Kbps"));
}

void HomePage::showNoRates()
{
    clearRates(QStringLiteral("0"));
}

void HomePage::showRates(long long up, long long down)
{
    const auto show = [](long long rate, QLabel* value, QLabel* unit) {
        QString unitText;
        value->setText(Util::transToReadableBps(rate, unitText));
        unit->setText(unitText);
    };
    show(up, ui.labelUpSpeed, ui.labelUpKps);
    show(down, ui.labelDownSpeed, ui.labelDownKps);
}

void HomePage::updateQuantumUI()
{
    const bool encrypted = m_session.enableQuantum() || m_session.enablePQC();
    const bool shown = m_session.isConnected() && encrypted && m_curMenuItem == MENU_HOME;
    ui.labelQuantumText->setText(m_session.enableQuantum() ? tr("Quantum Encryption Enabled")
                                                           : tr("PQC Encryption Enabled"));
    ui.labelQuantumPic->setVisible(shown);
    ui.labelQuantumText->setVisible(shown);
}

// Intranet mode

void HomePage::setupMobileConnected()
{
    ui.placeChronometer(true);
    ui.m_Chronometer->start();
    if (isHome())
        setMobileDetectWidgetVisible(true);
    else
        ui.m_Chronometer->hide();
}

void HomePage::setupMobileDisConnected()
{
    setMobileDetectWidgetVisible(false);
    if (m_curMenuItem == MENU_INTRANET)
        m_curMenuItem = MENU_HOME;
    ui.placeChronometer(false);
    ui.m_Chronometer->stop();
}

void HomePage::setMobileDetectWidgetVisible(bool visible)
{
    ui.m_mobileDetectLabel->setGeometry(kIntranetLabel);
    ui.m_mobileDetectLabel->setVisible(visible);
    if (!isHome())
        return;
    for (QLabel* rate : {ui.labelDownPic, ui.labelDownKps, ui.labelDownSpeed, ui.labelUpPic,
                         ui.labelUpKps, ui.labelUpSpeed})
        rate->setVisible(!visible);
}
