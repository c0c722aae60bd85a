#pragma once

#include "app/Attempt.h"

#include <QString>

#include <functional>

class OrchErrRes;

/// What the fields of the login window hold, as typed.
struct LoginFields
{
    QString customerId;
    QString username;
    QString password;      ///< secret; the mask while a token is remembered
    QString shownCustomer; ///< the customer ID as the login page shows it
};

/// What the steps of a login share. The window owns it, and it outlives them. GUI thread.
struct LoginContext
{
    explicit LoginContext(std::function<LoginFields()> readFields);

    /// The fields as they are now.
    const std::function<LoginFields()> fields;

    /// The login under way: what belongs to an earlier one is dropped.
    Attempt attempt;

    QString m_CustomerID;           ///< as confirmed by the lookup server
    bool m_AgreePolicyNow = false;  ///< the user agreed in this run
    bool verifyingCustomer = false; ///< the lookup servers are asked, until the key has arrived
    bool byHand = false;            ///< the user has pressed Login
    QString passwordAtStart;        ///< secret: what a chain that starts by itself may send

    OrchErrRes* m_OrchErrRes;

    /// Makes sure that the orchestrator's error texts are there; `authUrl` empty: the stored one.
    void loadErrorResource(const QString& authUrl) const;
};
