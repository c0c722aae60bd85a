#pragma once

#include <QWidget>

/// The grey veil over a window while a modal dialog stands on it. It appears and disappears with
/// the dialog and deletes itself when the dialog hides; on a desktop that draws window shadows
/// itself it stays away. GUI thread.
class GreyMaskForUkui : public QWidget
{
    Q_OBJECT

public:
    /// `parent` is the window to cover, `dialog` the dialog to follow. Not shown yet.
    GreyMaskForUkui(QWidget* parent, QWidget* dialog);
    ~GreyMaskForUkui() override;

    bool eventFilter(QObject* object, QEvent* event) override;

    /// Covers `under` while `dialog` is open; does nothing without a window under the dialog.
    static void cover(QWidget* under, QWidget* dialog);

public slots:
    /// Shows the mask while the desktop does not draw shadows.
    void onEffectChanged(bool enabled);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QWidget* m_dialog;
};
