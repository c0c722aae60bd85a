#pragma once

#include "app/Attempt.h"

#include <QObject>
#include <QString>

#include <functional>

class OrchReply;
struct LoginContext;

/// From a customer ID to the orchestrator that serves it: privacy version, lookup, address,
/// configuration. Each request is sent when the one before has been answered:
///
///     privacy version (primary) --no answer, no version--> privacy version (backup)
///        |            \--newer--> agreementNeeded()             | (not waited for)
///        v                                                      v
///     lookup (primary) --failed--> lookup (backup) --failed--> failed()
///        |
///     authentication configuration          (a failure is ignored; 502: badGateway())
///        |
///     the customer's logos, where it has some: LogoChecker
///        |
///     done()
///
/// GUI thread.
class CustomerStep : public QObject
{
    Q_OBJECT

public:
    CustomerStep(LoginContext& context, QObject* parent);

    /// The step, from its beginning.
    void getPrivacyVerFromMain();

    /// The version that a lookup server named last; empty when none did.
    QString privacyVersion() const { return m_PrivacyVersion; }

    /// The step has ended with agreementNeeded(); otherwise it goes on beside the question.
    bool endedForAgreement() const { return m_endedForAgreement; }

    /// The user has agreed to this version, or without a known one.
    void keepAgreement(const QString& version);

    /// Asks what the customer's orchestrator offers, then goes on with `next`.
    void _authConfig(const std::function<void()>& next);

signals:
    /// The user must agree to privacyVersion().
    void agreementNeeded();
    /// The lookup has ended well: the customer is known, and another one than before.
    void verified();
    void customerChanged();
    /// Neither lookup server knows an orchestrator.
    void failed(const OrchReply& reply);
    void forgetPasswordSupported(bool supported);
    /// The configuration was answered with 502.
    void badGateway();
    /// The step has come to its end.
    void done();

private:
    void getPrivacyVerFromBackup();
    QString getPrivacyOemVer(const OrchReply& reply) const;
    void onPrimaryPrivacyVersion(const OrchReply& reply);
    void onBackupPrivacyVersion(const OrchReply& reply);
    void keepPrivacyVersion(const QString& version);
    void verifyCustomerId();
    void verifyCustomerIdUsingBackUrl();
    void onCustomerVerified(const OrchReply& reply);
    QString parseResultAndSaveUrl(const OrchReply& reply);

    LoginContext& m_context;
    QString m_PrivacyVersion;
    bool m_endedForAgreement = false;
    QString m_asked; ///< the customer ID that is looked up, as typed
    Attempt m_alive;
};
