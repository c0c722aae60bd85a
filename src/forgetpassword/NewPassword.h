#pragma once

#include "forgetpassword/PasswordRules.h"
#include "orch/OrchReply.h"

#include <QObject>
#include <QString>

class Attempt;
class EntryField;

namespace TQ {

class WarningIcon;

/// A new password and its repetition: two fields with their warnings, checked against the
/// orchestrator's rules at every edit. A password counts without the space around it, as it is
/// sent. GUI thread.
class NewPassword : public QObject
{
    Q_OBJECT

public:
    struct Parts
    {
        EntryField* edit;
        WarningIcon* warning;
        EntryField* repeat;
        WarningIcon* repeatWarning;
        QString emptyTips; ///< shown when the password has been erased again,
        bool withoutRules; ///< also while there are no rules
    };

    NewPassword(const Parts& parts, QObject* parent);

    /// Empties both fields and takes the warnings away.
    void clear();

    /// Asks for the rules; until they have arrived there are none.
    void fetchRules(const QString& customerId, const Attempt& visit);

    /// Secret.
    QString text() const;

    /// Both fields are filled and nothing is warned of.
    bool isAcceptable() const;

    /// Why the password cannot be sent, in the user's words; empty when it can.
    QString fault() const;

signals:
    void checked();
    /// The orchestrator knows no rules (404).
    void rulesUnknown(const OrchReply& reply);
    void rulesFailed(const OrchReply& reply);

private:
    void takeRules(const OrchReply& reply);
    void check();
    void checkRules(const QString& password);

    Parts m_parts;
    PasswordRules m_rules;
    bool m_checkInputEmpty = false; ///< the password has had content
    bool m_toldUnchecked = false;   ///< the log says that a rule cannot be applied
};

} // namespace TQ
