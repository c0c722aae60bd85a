#include "forgetpassword/NewPassword.h"

#include "app/Attempt.h"
#include "app/LogMarker.h"
#include "forgetpassword/WarningIcon.h"
#include "orch/ErrorCatalogue.h"
#include "orch/OrchIpc.h"
#include "widgets/EntryField.h"

namespace {

constexpr int kLongestWithoutRules = 64;

} // namespace

namespace TQ {

NewPassword::NewPassword(const Parts& parts, QObject* parent) : QObject(parent), m_parts(parts)
{
    connect(parts.edit, &EntryField::textEdited, this, &NewPassword::check);
    connect(parts.repeat, &EntryField::textEdited, this, &NewPassword::check);
}

void NewPassword::clear()
{
    m_parts.edit->clear();
    m_parts.repeat->clear();
    m_checkInputEmpty = false;
    m_parts.warning->clear();
    m_parts.repeatWarning->clear();
}

void NewPassword::fetchRules(const QString& customerId, const Attempt& visit)
{
    m_rules = PasswordRules();
    m_toldUnchecked = false;
    ipc::PasswdRulesParams params;
    params.customerId = customerId;
    params.clientType = QStringLiteral("linux");
    const auto failed = [this](const OrchReply& reply) {
        if (reply.error == QNetworkReply::ContentNotFoundError)
            emit rulesUnknown(reply);
        else
            emit rulesFailed(reply);
    };
    ipc::OrchIpc::instance()->getRulesOfPasswd(
        params, visit.step([this](const OrchReply& reply) { takeRules(reply); }),
        visit.step(failed));
}

void NewPassword::takeRules(const OrchReply& reply)
{
    m_rules = PasswordRules::fromJson(reply.json());
    check(); // the user may have begun to type
}

QString NewPassword::text() const
{
    return m_parts.edit->text().trimmed();
}

void NewPassword::check()
{
    const QString password = text();
    checkRules(password);
    const QString repeated = m_parts.repeat->text().trimmed();
    if (repeated.isEmpty() || repeated == password)
        m_parts.repeatWarning->clear();
    else
        m_parts.repeatWarning->warn(m_rules.confirmPwdSame.isEmpty() ? tr("Password mismatch")
                                                                     : m_rules.confirmPwdSame);
    emit checked();
}

void NewPassword::checkRules(const QString& password)
{
    const bool erased = password.isEmpty() && m_checkInputEmpty;
    m_checkInputEmpty = m_checkInputEmpty || !password.isEmpty();
    const PasswordRules::Finding finding = m_rules.check(password);
    if (finding.unchecked && !m_toldUnchecked) {
        m_toldUnchecked = true;
        logDisplayWarning(tr("A password rule of the service cannot be applied here. The service "
                             "itself checks the password against it."));
    }
    if (erased && (m_parts.withoutRules || !m_rules.isEmpty()))
        m_parts.warning->warn(m_parts.emptyTips);
    else if (finding.broken && !password.isEmpty())
        m_parts.warning->warn(finding.errTips.isEmpty()
                                  ? tr("The password does not meet the requirements.")
                                  : finding.errTips);
    else
        m_parts.warning->clear();
}

bool NewPassword::isAcceptable() const
{
    return !text().isEmpty() && !m_parts.repeat->text().trimmed().isEmpty() &&
           !m_parts.warning->isWarning() && !m_parts.repeatWarning->isWarning();
}

QString NewPassword::fault() const
{
    if (text() != m_parts.repeat->text().trimmed())
        return tr("Password mismatch");
    if (m_rules.isEmpty() && text().size() > kLongestWithoutRules)
        return errorText(ErrorText::PasswordTooLong);
    return QString();
}

} // namespace TQ
