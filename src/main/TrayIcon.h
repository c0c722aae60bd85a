#pragma once

#include <QObject>
#include <QSystemTrayIcon>

class QMenu;
class QWidget;

/// The program's icon in the desktop's tray, with its menu. GUI thread.
class TrayIcon : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it; its icon is shown.
    explicit TrayIcon(QWidget* window);

    /// Whether the desktop has a tray that a hidden window can be brought back from.
    static bool isThere();

    /// Shows the state: the picture is grey without a connection, and the tool tip names it.
    void setConnected(bool connected);

signals:
    void openWanted();
    void exitWanted();

private:
    void initSysTray();
    void activeTray(QSystemTrayIcon::ActivationReason reason);

    const QIcon m_connectedIcon;
    const QIcon m_idleIcon;
    QSystemTrayIcon* m_Tray;
    QMenu* m_Menu;
};
