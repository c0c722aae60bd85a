#include "app/DeepinShadowEffectListener.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"

#include <QCoreApplication>
#include <QDBusInterface>
#include <QLibrary>

namespace {
const QString kService = QStringLiteral("com.deepin.wm");
const QString kPath = QStringLiteral("/com/deepin/wm");
} // namespace

bool isDeepinDesktop(const QString& currentDesktop)
{
    return currentDesktop.compare(QLatin1String("Deepin"), Qt::CaseInsensitive) == 0;
}

DeepinShadowEffectListener* DeepinShadowEffectListener::instance()
{
    static DeepinShadowEffectListener listener;
    return &listener;
}

DeepinShadowEffectListener::DeepinShadowEffectListener()
{
    if (!isDeepinDesktop(qEnvironmentVariable("XDG_CURRENT_DESKTOP")))
        return;
    QLibrary library(QStringLiteral(VELTARO_DEEPIN_LIBRARY));
    using Make = QObject*(const QString& service, const QString& path, QObject* parent);
    auto* const make = reinterpret_cast<Make*>(library.resolve("makeWindowManager"));
    if (!make) {
        qWarning().noquote() << "The window manager is not followed:" << library.errorString();
        return;
    }
    m_wm = make(kService, kPath, this);
    connect(m_wm, SIGNAL(compositingEnabledChanged(bool)), this,
            SLOT(onCompositingEnabledChanged(bool)));
}

void DeepinShadowEffectListener::checkOnStart()
{
    QDBusInterface wm(kService, kPath, kService, QDBusConnection::sessionBus());
    if (!wm.isValid()) {
        logDisplayDebug(QStringLiteral("com.deepin.wm dbus interface error, ") +
                        wm.lastError().name());
        return;
    }
    onCompositingEnabledChanged(wm.property("compositingEnabled").toBool());
}

void DeepinShadowEffectListener::onCompositingEnabledChanged(bool enabled)
{
    qApp->setProperty(appproperty::kDeepinShadowEnabled, enabled);
    emit effectChanged(enabled);
}
