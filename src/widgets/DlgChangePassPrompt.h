#pragma once

#include "widgets/ConfirmDialog.h"

/// Tells the user that the password has changed. Only its button dismisses it: what follows is a
/// new login, which nobody should be surprised by.
class DlgChangePassPrompt : public ConfirmDialog
{
    Q_OBJECT

public:
    explicit DlgChangePassPrompt(QWidget* parent = nullptr);

    /// The notice, already translated; passwordChangedText() until it is set.
    void setDlgContent(const QString& text);

    static QString passwordChangedText();
    static QString passwordResetText();
    static QString passwordResetByAdminText();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
};
