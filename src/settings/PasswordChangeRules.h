#pragma once

#include "orch/HttpErrorText.h"

#include <QString>

/// The decisions about a change of the password on the settings page. Pure; texts translated.
namespace passwordchange {

/// Why these cannot be sent, in the user's words; empty when they can. All are trimmed.
QString fault(const QString& oldPass, const QString& newPass, const QString& confirmation);

/// What the orchestrator's answer means.
struct Answer
{
    bool changed = false;
    bool sessionInvalid = false;       ///< the connection is to be taken down first
    SessionEnd end = SessionEnd::None; ///< then the session ends in this way,
    QString text;                      ///< or, with None, this is shown
};

Answer answer(const OrchReply& reply, const OrchTexts& texts);

} // namespace passwordchange
