#include "main/SessionRules.h"

namespace session {

QString headerName(const QString& userName)
{
    constexpr int kLongest = 11;
    const QString name = userName.section(QLatin1Char('@'), 0, 0);
    return name.size() > kLongest ? name.left(kLongest) + QStringLiteral("...") : name;
}

QString customerText(const QString& typed, const QString& customerId)
{
    return typed == customerId ? typed : typed + QLatin1Char('(') + customerId + QLatin1Char(')');
}

bool mayRestartDatapath(int& restarts)
{
    if (restarts > 1) {
        restarts = 0;
        return false;
    }
    ++restarts;
    return true;
}

bool heartbeatDue(long long now, long long last, int interval)
{
    return now - last >= static_cast<long long>(interval) - 1;
}

QStringList logoutArguments(bool invalidToken, bool isByUser, bool showTipInLoginUI)
{
    QStringList arguments{QStringLiteral("-logout")};
    if (invalidToken && showTipInLoginUI)
        arguments << QStringLiteral("-invalidToken");
    if (isByUser)
        arguments << QStringLiteral("-byuser");
    return arguments;
}

QStringList datapathStartArguments(const QString& serial, const QString& token,
                                   const QString& orchDomain)
{
    return {QStringLiteral("-S"), serial,     QStringLiteral("-T"), token,
            QStringLiteral("-R"), orchDomain, QStringLiteral("-D"), QStringLiteral("start")};
}

QStringList datapathStopArguments()
{
    return {QStringLiteral("-D"), QStringLiteral("stop")};
}

} // namespace session
