#include "app/Deployment.h"

#include "DeploymentValues.h"

namespace deployment {

static QString replaceable(const char* variable, const char* compiledIn)
{
#if VELTARO_DEVELOPMENT
    const QString replacement = qEnvironmentVariable(variable);
    if (!replacement.isEmpty())
        return replacement;
#else
    Q_UNUSED(variable)
#endif
    return QString::fromUtf8(compiledIn);
}

QString lookupPrimary()
{
    return replaceable("VELTARO_LOOKUP_PRIMARY", VELTARO_LOOKUP_PRIMARY);
}

QString lookupBackup()
{
    return replaceable("VELTARO_LOOKUP_BACKUP", VELTARO_LOOKUP_BACKUP);
}

QString userAgreementUrl(bool chinese)
{
    return QString::fromUtf8(chinese ? VELTARO_USER_AGREEMENT_ZH : VELTARO_USER_AGREEMENT_EN);
}

QString privacyPolicyUrl(bool chinese)
{
    return QString::fromUtf8(chinese ? VELTARO_PRIVACY_POLICY_ZH : VELTARO_PRIVACY_POLICY_EN);
}

QString makerName()
{
    return QStringLiteral(VELTARO_MAKER_NAME);
}

QStringList pingTargets()
{
    return QStringLiteral(VELTARO_PING_TARGETS).split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

} // namespace deployment
