#include "orch/CredentialKey.h"

#include "orch/CredentialCipher.h"

#include <QJsonArray>

CredentialKey CredentialKey::fromJson(const QJsonObject& json)
{
    CredentialKey read;
    read.key = json.value(QLatin1String("key")).toString();
    const QJsonArray types = json.value(QLatin1String("rsaType")).toArray();
    read.m_supportAEPSha = types.contains(QJsonValue(int(OAEP_SHA)));
    return read;
}

QString CredentialKey::encrypted(const QString& text) const
{
    if (key.isEmpty())
        return {};
    return QString::fromStdString(
        Util::TQRSAEncrypt(text.toStdString(), key.toStdString(), m_supportAEPSha));
}
