#include "main/TrayIcon.h"

#include "app/Product.h"

#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QWidget>

TrayIcon::TrayIcon(QWidget* window)
    : QObject(window), m_Tray(new QSystemTrayIcon(window->windowIcon(), this)),
      m_Menu(new QMenu(window))
{
    initSysTray();
}

void TrayIcon::initSysTray()
{
    m_Tray->setObjectName(QStringLiteral("m_Tray"));
    m_Tray->setToolTip(QLatin1String(product::kName));
    m_Menu->setObjectName(QStringLiteral("m_Menu"));
    m_Menu->addAction(tr("Open ") + QLatin1String(product::kName), this, &TrayIcon::openWanted)
        ->setObjectName(QStringLiteral("m_ActShowWin"));
    m_Menu->addAction(tr("Exit"), this, &TrayIcon::exitWanted)
        ->setObjectName(QStringLiteral("m_ActExit"));
    m_Tray->setContextMenu(m_Menu);
    connect(m_Tray, &QSystemTrayIcon::activated, this, &TrayIcon::activeTray);
    m_Tray->setVisible(true);
}

bool TrayIcon::isThere()
{
    return QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::activeTray(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Context)
        m_Menu->popup(QCursor::pos());
    else if (reason == QSystemTrayIcon::Trigger)
        emit openWanted();
}
