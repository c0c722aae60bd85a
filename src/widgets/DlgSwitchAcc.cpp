#include "widgets/DlgSwitchAcc.h"

DlgSwitchAcc::DlgSwitchAcc(QWidget* parent)
    : ConfirmDialog("question.png", tr("Switch Account"), tr("Are you sure to switch account?"),
                    parent)
{
    setObjectName(QStringLiteral("DlgSwitchAcc"));
    setNote(tr("This operation will clear the saved password of the current account."));
    addYesNo();
}
