#pragma once

#include "app/Attempt.h"
#include "orch/OrchReply.h"

#include <QObject>
#include <QString>

class QNetworkAccessManager;
struct CredentialKey;

/// One change of the user's password at a time: asks for the customer's key and sends both
/// passwords, encrypted where the orchestrator publishes a key. Keeps them no longer than that.
/// GUI thread.
class PasswordChange : public QObject
{
    Q_OBJECT

public:
    explicit PasswordChange(QObject* parent);

    /// Replaces a change that has not been sent yet.
    void start(const QString& oldPass, const QString& newPass);

signals:
    /// Exactly one of these ends a change.
    void answered(const OrchReply& reply);
    void keyRefused(const OrchReply& reply);
    void keyUnusable(int status); ///< `status` is that of the key's answer, a success

private:
    void send(const CredentialKey& key);

    QNetworkAccessManager* m_NetMgr = nullptr; ///< made with the first change
    QString m_customerId;
    QString m_oldPass; ///< secret
    QString m_newPass; ///< secret
    Attempt m_change;
};
