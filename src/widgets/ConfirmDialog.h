#pragma once

#include "widgets/OtpBaseDlg.h"

class QLabel;
class QPushButton;

/// What the confirmation dialogs have in common: a title, a picture beside the question, a note in
/// smaller print when there is one, and a row of buttons. Stands in the middle of its parent.
/// GUI thread.
class ConfirmDialog : public OtpBaseDlg
{
    Q_OBJECT

protected:
    /// `picture` names a picture of 32 x 32; `title` and `text` are shown as plain text.
    ConfirmDialog(const char* picture, const QString& title, const QString& text, QWidget* parent);

    void setText(const QString& text);
    void setNote(const QString& note);

    /// The buttons "Yes" (accepts, default) and "No" (rejects).
    void addYesNo();
    /// The single button "OK", which accepts.
    void addOk();

    void showEvent(QShowEvent* event) override;

private:
    QPushButton* addButton(const QString& text, const char* name, const char* role);

    QWidget* m_Parent;
    QLabel* m_labelText;
    QLabel* m_labelNote;
    QWidget* m_buttonRow;
};
