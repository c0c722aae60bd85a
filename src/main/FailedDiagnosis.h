#pragma once

#include "orch/OrchTypes.h"

/// What is remembered of the last run of the diagnosis.
struct FailedDiagnosis
{
    bool again = false;    ///< it failed and is to be run again
    bool typeLost = false; ///< it failed, and nobody noted who asked for it
    DiagnoseTriggerType type = TriggerByClient;

    /// From the settings: 0 for a run that succeeded, 1 for one to be run again; the trigger type,
    /// where any other number than its values means that none was recorded.
    static FailedDiagnosis of(int failed, int type)
    {
        const bool known = type == TriggerByClient || type == TriggerByOrch;
        return {failed == 1, failed != 0 && !known,
                known ? DiagnoseTriggerType(type) : TriggerByClient};
    }
};
