// Where the session starts a diagnosis, and where the diagnosis ends the session.

#include "app/ConfigUtil.h"
#include "app/LogMarker.h"
#include "main/DlgMain.h"
#include "orch/HttpErrorText.h"

FailedDiagnosis DlgMain::failedDiagnosis() const
{
    const FailedDiagnosis last =
        FailedDiagnosis::of(ConfigUtil::getvalue(ConfigUtil::DIAGNOSIS_FAIL, 0).toInt(),
                            ConfigUtil::getvalue(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, -1).toInt());
    if (last.typeLost)
        logDisplayDebug(QStringLiteral(
            "Get last diagnostic type failed. using default value: 0(triggered by client)"));
    return last;
}

// The diagnosis worker takes this over; until it exists the wish is only recorded.
void DlgMain::startDiagnosis(DiagnoseTriggerType type)
{
    qInfo("Diagnosis requested, trigger type %d, connected %d", int(type), int(isConnected()));
}

void DlgMain::rerun(const FailedDiagnosis& diagnosis)
{
    if (diagnosis.again)
        startDiagnosis(diagnosis.type);
}

// Slots for the diagnosis worker, which asks for the logout itself once the dialog is closed.

void DlgMain::onShowKickedoutDialog()
{
    disconnect(false, ipc::DisConnNormalReason);
    explainEnd(SessionEnd::ForcedLogout);
}

void DlgMain::onShowLdapChangeDialog()
{
    disconnect(false, ipc::DisConnNormalReason);
    explainEnd(SessionEnd::AccountChanged);
}

void DlgMain::onShowChangePassDialog()
{
    disconnect(false, ipc::DisConnNormalReason);
    explainEnd(SessionEnd::PasswordChanged);
}
