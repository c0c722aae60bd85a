#pragma once

#include "widgets/ConfirmDialog.h"

/// Asks whether to stop or cancel the connection, in the words of its caller.
class dlgStopPrompt : public ConfirmDialog
{
    Q_OBJECT

public:
    dlgStopPrompt(QString text, QWidget* parent);
};
