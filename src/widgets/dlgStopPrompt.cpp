#include "widgets/dlgStopPrompt.h"

#include "app/Product.h"

dlgStopPrompt::dlgStopPrompt(QString text, QWidget* parent)
    : ConfirmDialog("question.png", QLatin1String(product::kName), text, parent)
{
    setObjectName(QStringLiteral("dlgStopPrompt"));
    addYesNo();
}
