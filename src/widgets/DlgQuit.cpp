#include "widgets/DlgQuit.h"

DlgQuit::DlgQuit(QWidget* parent)
    : ConfirmDialog("question.png", tr("Quit Application"), tr("Are you sure to quit?"), parent)
{
    setObjectName(QStringLiteral("DlgQuit"));
    addYesNo();
}
