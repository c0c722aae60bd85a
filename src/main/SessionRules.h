#pragma once

#include <QString>
#include <QStringList>

/// Small decisions of the session.
namespace session {

/// The user name as the header shows it: what stands before the first "@", at most 11
/// characters followed by "...".
QString headerName(const QString& userName);

/// The customer as log lines name it: as typed, with the numeric ID in brackets when it differs.
QString customerText(const QString& typed, const QString& customerId);

/// Whether a vanished datapath is started again: twice, and then again after one refusal.
/// `restarts` counts and is reset by the refusal.
bool mayRestartDatapath(int& restarts);

/// Whether a heartbeat is due; all times in seconds since the epoch.
bool heartbeatDue(long long now, long long last, int interval);

/// The arguments of the restarted program at the end of a session.
QStringList logoutArguments(bool invalidToken, bool isByUser, bool showTipInLoginUI);

/// The arguments of the datapath's control script.
QStringList datapathStartArguments(const QString& serial, const QString& token,
                                   const QString& orchDomain);
QStringList datapathStopArguments();

} // namespace session
