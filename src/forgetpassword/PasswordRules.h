#pragma once

#include <QJsonObject>
#include <QRegularExpression>
#include <QString>
#include <QVector>

namespace TQ {

/// One rule of the orchestrator for new passwords.
struct PwdRegExp
{
    QString regExp;  ///< the whole password must match it, case-sensitively
    QString errTips; ///< what is shown when it does not
};

/// The rules for new passwords as the orchestrator has sent them. Pure; any thread.
///
/// The rules are regular expressions that were written elsewhere, and one may be broken, larger
/// than sense, or need exponential time. Every match is bounded, so that typing never waits for
/// one. A rule that does not compile, exceeds kLongestRule, comes after the first kMostRules, or
/// reaches the bound is neither kept nor broken: it is left to the orchestrator, which checks the
/// password itself, and check() says so for the user to be told. Taking such a rule as broken would
/// lock the user out by a fault that only the service can mend.
class PasswordRules
{
public:
    static constexpr int kMostRules = 32;
    static constexpr int kLongestRule = 1000;    ///< characters of one expression
    static constexpr int kLongestPassword = 256; ///< characters that are matched at all

    /// What the rules say of one password.
    struct Finding
    {
        bool broken = false;
        QString errTips;        ///< of the first rule that is broken; may be empty
        bool unchecked = false; ///< at least one rule could not be applied
    };

    /// Reads the orchestrator's answer; without one there are no rules.
    static PasswordRules fromJson(const QJsonObject& json);

    bool isEmpty() const { return m_regExpList.isEmpty(); }

    /// The rules in their order; the first that is broken counts.
    Finding check(const QString& password) const;

    QString confirmPwdSame; ///< what is shown when the repetition differs

private:
    QVector<PwdRegExp> m_regExpList;
    QVector<QRegularExpression> m_compiled; ///< invalid where a rule cannot be used
};

} // namespace TQ
