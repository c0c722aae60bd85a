#pragma once

#include "main/ConnState.h"
#include "main/MenuItem.h"

#include <QObject>

class DlgMainUi;
class QTimer;
class QWidget;
class Session;

/// What the home page shows of the session: connect button, rates, time, encryption, intranet mode.
/// Works on the window's widgets. GUI thread.
class HomePage : public QObject, public MenuItem, public ConnState
{
    Q_OBJECT

public:
    /// `window` owns it and holds the widgets of `ui`; both and `session` live as long.
    HomePage(DlgMainUi& ui, const Session& session, QWidget* window);

    /// The page that is shown from now on, of all of the window's pages.
    void setPage(MENU_ITEM page);

    /// A new state of the session; every request for one, even one that is ignored, comes here.
    void onStatus(Transition change);
    void updateQuantumUI();
    /// Connected in intranet mode, and no longer so.
    void setupMobileConnected();
    void setupMobileDisConnected();
    /// The rates in bit/s; without a measurement they read 0.
    void showRates(long long up, long long down);
    void showNoRates();

    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void initMobileDetectUI();
    void changeStartBtnStatus(CONN_STATUS s);
    void enableConnectButton(bool enable);
    void onStartBtnAnimTick();
    void clearRates(const QString& value);
    void setMobileDetectWidgetVisible(bool visible);
    bool isHome() const;

    DlgMainUi& ui;
    const Session& m_session;
    QWidget* m_window;
    MENU_ITEM m_curMenuItem = MENU_HOME;
    QTimer* m_StartBtnAnimTimer;
    bool m_MouseOverConnect = false;
    QWidget* m_focusLent = nullptr; ///< got the connect button's keyboard focus; only compared
};
