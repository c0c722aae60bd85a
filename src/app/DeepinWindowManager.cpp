// The window manager's proxy for DeepinShadowEffectListener, in a library of its own: what it is
// linked with costs every start a few milliseconds, and only the Deepin desktop needs it.
#include <com_deepin_wm.h>

extern "C" Q_DECL_EXPORT QObject* makeWindowManager(const QString& service, const QString& path,
                                                    QObject* parent)
{
    return new __wm(service, path, QDBusConnection::sessionBus(), parent);
}
