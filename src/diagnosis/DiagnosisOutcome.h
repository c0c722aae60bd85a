#pragma once

#include "orch/DiagnosisRequests.h"
#include "orch/HttpErrorText.h"

/// What the orchestrator's answers mean for a diagnosis. Pure; any thread.
namespace diagnosis {

/// The report about an upload that was answered at `time`, seconds since 1970-01-01 UTC.
DiagnosisReport uploadReport(const OrchReply& upload, qint64 time);

/// The report that there was nothing to upload.
DiagnosisReport missingReport(qint64 time);

/// How a refused request ends the session.
struct SessionFinding
{
    Kickout kickout = Kickout::NoReason; ///< the dialog that is shown, if any
    bool logout = false;
    bool showTipInLoginUI = false; ///< of that logout
    bool passwordChanged = false;
};
SessionFinding sessionFinding(const OrchReply& refused);

} // namespace diagnosis
