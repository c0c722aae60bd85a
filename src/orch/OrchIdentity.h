#pragma once

#include <QString>

/// Who speaks to the orchestrator: the values of the headers that requests share.
struct OrchIdentity
{
    QString serial;     ///< client serial, header "sn"
    QString customerId; ///< header "customerId"
    QString token;      ///< session token, secret; only requests of a logged-in user send it
};

/// The identity held in the settings, with the stored customer ID or with `customerId`. Creates
/// the client serial on first use.
OrchIdentity storedIdentity();
OrchIdentity storedIdentity(const QString& customerId);
