#pragma once

#include "orch/HttpErrorText.h"

#include <QString>

/// What the answer to a request for a new authenticator secret means. Pure.
struct OtpRecovery
{
    bool done = false;      ///< the authenticator is to be bound anew
    QString otpKey;         ///< secret: what is to be bound
    QString otpMiddleToken; ///< secret: goes on with the login; empty: the former one does
    QString error;          ///< to be shown; an answer may neither be done nor have one

    static OtpRecovery fromReply(const OrchReply& reply, const OrchTexts& texts);
};
