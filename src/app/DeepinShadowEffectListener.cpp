#include "app/DeepinShadowEffectListener.h"

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"

#include <com_deepin_wm.h>

#include <QCoreApplication>
#include <QDBusInterface>

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
    m_wm = new __wm(kService, kPath, QDBusConnection::sessionBus(), this);
    connect(m_wm, &__wm::compositingEnabledChanged, this,
            &DeepinShadowEffectListener::onCompositingEnabledChanged);
}

DeepinShadowEffectListener::~DeepinShadowEffectListener() = default;

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
