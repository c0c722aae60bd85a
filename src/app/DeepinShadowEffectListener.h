#pragma once

#include <QObject>

/// Whether a value of XDG_CURRENT_DESKTOP names the Deepin desktop; a list of names does not.
bool isDeepinDesktop(const QString& currentDesktop);

/// Follows the Deepin window manager's compositing state. While compositing is on the window
/// manager draws window shadows itself, so that modal dialogs need no grey mask. On every other
/// desktop the listener exists but never fires. GUI thread.
class DeepinShadowEffectListener : public QObject
{
    Q_OBJECT

public:
    /// The one instance, made on first use.
    static DeepinShadowEffectListener* instance();

    /// Reads the current state from the window manager; logs when it cannot be reached.
    void checkOnStart();

signals:
    /// Compositing was switched on or off.
    void effectChanged(bool enabled);

public slots:
    /// Publishes the state as the application property "DeepinShadowEnabled".
    void onCompositingEnabledChanged(bool enabled);

private:
    DeepinShadowEffectListener();

    QObject* m_wm = nullptr; ///< the library's `__wm`; null on other desktops
};
