#pragma once

#include <QDialog>
#include <QPoint>

class QPushButton;
class QWidget;

/// The frameless base of the small modal dialogs: a white card with a close button at its top
/// right, moved by dragging, over a greyed window. Subclasses fill contentWidget(); Return presses
/// their default button and Escape rejects. GUI thread.
class OtpBaseDlg : public QDialog
{
    Q_OBJECT

public:
    /// `parent` is the window under the dialog; without one nothing is greyed.
    explicit OtpBaseDlg(QWidget* parent = nullptr);

    /// The area for the dialog's own widgets. It has no layout yet.
    QWidget* contentWidget() const { return m_contentWidget; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;
    /// What the close button does: rejects the dialog.
    virtual void onCloseBtnClicked();
    void resizeEvent(QResizeEvent* event) override;
    /// Centres the dialog over its parent.
    void showEvent(QShowEvent* event) override;

    QWidget* m_contentWidget;
    QPoint m_dragPos;
    QPushButton* m_closeBtn;
    bool m_isMoveable = true;

private:
    bool m_dragging = false;
};
