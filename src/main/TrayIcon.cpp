#include "main/TrayIcon.h"

#include "app/Product.h"

#include <QAction>
#include <QCursor>
#include <QMenu>
#include <QWidget>

namespace {

QIcon greyed(const QIcon& icon)
{
    QIcon grey;
    const auto sizes = icon.availableSizes();
    for (const QSize& size : sizes) {
        const QImage colour = icon.pixmap(size).toImage();
        QImage image = colour.convertToFormat(QImage::Format_Grayscale8)
                           .convertToFormat(QImage::Format_ARGB32);
        image.setAlphaChannel(colour.convertToFormat(QImage::Format_Alpha8));
        grey.addPixmap(QPixmap::fromImage(image));
    }
    return grey;
}

} // namespace

TrayIcon::TrayIcon(QWidget* window)
    : QObject(window), m_connectedIcon(window->windowIcon()), m_idleIcon(greyed(m_connectedIcon)),
      m_Tray(new QSystemTrayIcon(this)), m_Menu(new QMenu(window))
{
    initSysTray();
}

void TrayIcon::initSysTray()
{
    m_Tray->setObjectName(QStringLiteral("m_Tray"));
    setConnected(false);
    m_Menu->setObjectName(QStringLiteral("m_Menu"));
    m_Menu->addAction(tr("Open ") + QLatin1String(product::kName), this, &TrayIcon::openWanted)
        ->setObjectName(QStringLiteral("m_ActShowWin"));
    m_Menu->addAction(tr("Exit"), this, &TrayIcon::exitWanted)
        ->setObjectName(QStringLiteral("m_ActExit"));
    m_Tray->setContextMenu(m_Menu);
    connect(m_Tray, &QSystemTrayIcon::activated, this, &TrayIcon::activeTray);
    m_Tray->setVisible(true);
}

void TrayIcon::setConnected(bool connected)
{
    m_Tray->setIcon(connected ? m_connectedIcon : m_idleIcon);
    m_Tray->setToolTip(QLatin1String(product::kName) + QLatin1Char('\n') +
                       (connected ? tr("Connected") : tr("Not connected")));
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
