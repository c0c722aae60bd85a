#pragma once

#include "widgets/OtpBaseDlg.h"

class QLabel;

/// A notice with the single button "Confirm", which accepts. GUI thread.
class CommonTipsDialog : public OtpBaseDlg
{
    Q_OBJECT

public:
    explicit CommonTipsDialog(QWidget* parent = nullptr);

    /// The notice; plain text, wrapped at words.
    void setContentText(const QString& text);

    /// Makes the dialog `width` wide and at least `minimumHeight` high, with less space around
    /// its text.
    void setCompact(int width, int minimumHeight);

protected:
    void showEvent(QShowEvent* event) override;

private:
    QLabel* m_contentLabel;
    QWidget* m_Parent;
    QSize m_compactSize; ///< width and least height; invalid: as large as the text wants
};
