#include "forgetpassword/PasswordRules.h"

#include "orch/JsonUtil.h"
#include "orch/TextUtil.h"

#include <QJsonArray>

namespace {

/// Enough for any expression that is meant to be used, and reached within milliseconds.
const QString kBounds = QStringLiteral("(*LIMIT_MATCH=20000)(*LIMIT_DEPTH=2000)");

const QString kUnusable = QStringLiteral("(");

QRegularExpression compiled(const QString& rule)
{
    // On its own first: one that is broken may look whole between the anchors.
    const bool usable = !rule.isEmpty() && rule.size() <= TQ::PasswordRules::kLongestRule &&
                        QRegularExpression(rule).isValid();
    return QRegularExpression(usable ? kBounds + QRegularExpression::anchoredPattern(rule)
                                     : kUnusable);
}

} // namespace

namespace TQ {

PasswordRules PasswordRules::fromJson(const QJsonObject& json)
{
    PasswordRules read;
    read.confirmPwdSame =
        Util::oneLine(JsonUtil::getQString(json, QStringLiteral("confirmPwdSame"), QString()));
    const QJsonArray rules = JsonUtil::getArray(json, QStringLiteral("firstPwdRule"));
    for (const QJsonValue& value : rules) {
        const QJsonObject rule = value.toObject();
        const QString regExp =
            JsonUtil::getQString(rule, QStringLiteral("pwdRegularStr"), QString());
        const QString tips = JsonUtil::getQString(rule, QStringLiteral("clientName"), QString());
        const bool tooMany = read.m_regExpList.size() == kMostRules;
        read.m_regExpList.append({regExp, Util::oneLine(tips)});
        read.m_compiled.append(tooMany ? QRegularExpression(kUnusable) : compiled(regExp));
        if (tooMany)
            break;
    }
    return read;
}

PasswordRules::Finding PasswordRules::check(const QString& password) const
{
    Finding finding;
    finding.unchecked = !isEmpty() && password.size() > kLongestPassword;
    if (finding.unchecked)
        return finding;
    for (int i = 0; i < m_compiled.size(); ++i) {
        if (!m_compiled.at(i).isValid()) {
            finding.unchecked = true;
            continue;
        }
        const QRegularExpressionMatch match = m_compiled.at(i).match(password);
        finding.unchecked = finding.unchecked || !match.isValid();
        if (match.isValid() && !match.hasMatch() && !finding.broken) {
            finding.broken = true;
            finding.errTips = m_regExpList.at(i).errTips;
        }
    }
    return finding;
}

} // namespace TQ
