#pragma once

#include <QJsonObject>
#include <QString>

/// What the lookup server says about a customer.
struct LookupReply
{
    int customerId = 0; ///< the numeric customer ID; 0 when the server names none
    QString orchDomain; ///< where the customer's orchestrator is; empty when unknown

    static LookupReply fromJson(const QJsonObject& json);
};

/// The customer ID that goes with a reply: the reply's number, else the typed text when it
/// consists of digits alone, else `current`, the one known so far.
QString customerIdOf(const LookupReply& reply, const QString& typed, const QString& current);

/// The orchestrator's login address: the domain with a scheme in front (http for a bare IPv4
/// address, https otherwise, none when it has one) and the login path behind, all lower case.
/// Empty for an empty domain.
QString authUrlOf(const QString& orchDomain);
