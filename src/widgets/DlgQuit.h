#pragma once

#include "widgets/ConfirmDialog.h"

/// Asks whether to quit the program.
class DlgQuit : public ConfirmDialog
{
    Q_OBJECT

public:
    explicit DlgQuit(QWidget* parent = nullptr);
};
