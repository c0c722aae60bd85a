#pragma once

#include "orch/OrchTypes.h"

#include <QJsonObject>
#include <QString>

/// What the orchestrator's answer to the public-key request allows. Any thread.
struct CredentialKey
{
    QString key;                  ///< empty: credentials travel as they are
    bool m_supportAEPSha = false; ///< the orchestrator accepts OAEP

    static CredentialKey fromJson(const QJsonObject& json);

    /// The padding of what encrypted() returns, as it travels in "rsaType".
    RSAPaddingType rsaType() const { return m_supportAEPSha ? OAEP_SHA : PKCS1v15; }

    /// `text` as Util::TQRSAEncrypt makes it travel; empty without a key, or when it does not fit.
    QString encrypted(const QString& text) const;
};
