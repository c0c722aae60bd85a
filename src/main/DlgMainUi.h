#pragma once

#include <QCoreApplication>

class QDialog;
class LogView;
class QLabel;
class QPushButton;
class QScrollArea;
class QToolButton;
class WidgeAbout;
class WidgetSetting;
class widgeChronometer;

/// The widgets of the main window and their places; behaviour is DlgMain's. Each widget carries
/// its member's name as its object name.
class DlgMainUi
{
    Q_DISABLE_COPY(DlgMainUi)
    Q_DECLARE_TR_FUNCTIONS(DlgMain)

public:
    /// Builds everything into `window`, which owns it.
    explicit DlgMainUi(QDialog* window);

    // Left bar
    QLabel* labelRoundLogo;
    QToolButton* toolBtnHome;
    QToolButton* toolBtnSetting;
    QToolButton* toolBtnLog;
    QToolButton* toolBtnQuit;

    // Header
    QLabel* labelLogo;
    QLabel* labelUserName;
    QPushButton* btnAbout;
    QPushButton* btnMin;
    QPushButton* btnClose;

    // Home and intranet page
    QLabel* labelRoute;
    QLabel* labelUpPic;
    QLabel* labelUpSpeed;
    QLabel* labelUpKps;
    QLabel* labelDownPic;
    QLabel* labelDownSpeed;
    QLabel* labelDownKps;
    QPushButton* btnConnect;
    QLabel* labelQuantumPic;
    QLabel* labelQuantumText;
    QLabel* m_mobileDetectLabel;
    widgeChronometer* m_Chronometer;

    // Other pages
    QLabel* labelSettingTitle;
    QScrollArea* m_ScrollArea;
    WidgetSetting* m_SettingWidge;
    QLabel* labelLogTitle;
    LogView* logView;
    QPushButton* btnViewAll;
    QLabel* labelAboutTitle;
    WidgeAbout* m_AboutWidge;
    QLabel* labelQuitTitle;
    QPushButton* btnSwitchAccount;
    QPushButton* btnQuitApp;

    /// Places the chronometer below the rates, or below the intranet label.
    void placeChronometer(bool intranet);

    /// The picture above the rates: the way to the company network, open or not.
    void showRoute(bool connected);

private:
    void buildLeftBar(QDialog* window);
    void buildHeader(QDialog* window);
    void buildHome(QDialog* window);
    void buildPages(QDialog* window);
    void setTabOrder();
};
