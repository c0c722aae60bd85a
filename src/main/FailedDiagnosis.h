#pragma once

#include "orch/OrchTypes.h"

/// What is remembered of the last run of the diagnosis.
struct FailedDiagnosis
{
    bool again = false;    ///< it failed and is to be run again
    bool typeLost = false; ///< it failed, and nobody noted who asked for it
    DiagnoseTriggerType type = TriggerByClient;

    /// From the settings: 0 for a run that succeeded, 1 for one to be run again; the trigger type,
    /// -1 for none.
    static FailedDiagnosis of(int failed, int type)
    {
        const bool lost = failed != 0 && type == -1;
        return {failed == 1, lost, lost ? TriggerByClient : DiagnoseTriggerType(type)};
    }
};
