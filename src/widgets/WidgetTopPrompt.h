#pragma once

#include <QRect>
#include <QWidget>

class IconButton;
class QGraphicsDropShadowEffect;
class QLabel;
class QTimer;

/// The short message at the top of a window. A success hides itself after 4 seconds; a warning or
/// an error stays until it is closed or replaced. GUI thread.
class WidgetTopPrompt : public QWidget
{
    Q_OBJECT

public:
    enum PROMPT_TYPE { SHOW_SUCCESS = 0, SHOW_WARNING = 1, SHOW_ERROR = 2 };

    /// `parent` is the window at whose top edge the prompt appears; not null.
    explicit WidgetTopPrompt(QWidget* parent);

    /// Shows `text` in place of what was shown before. With `log` set, a warning or an error is
    /// also written to the user's activity log.
    void showPrompt(PROMPT_TYPE type, QString text, bool log);
    void hidePrompt();

    /// Puts the prompt back to the middle of its parent's width, 10 px below its top.
    void refreshPos();

public slots:
    void onTimeout();
    void on_btnClose_clicked();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void logPrompt(PROMPT_TYPE type, const QString& text) const;
    void setLook(PROMPT_TYPE type);
    void fitTo(const QString& text);

    QWidget* m_Parent;
    QRect m_RcBtn; ///< where the close button is
    int m_WidthParent = 0;
    QGraphicsDropShadowEffect* effect;
    bool m_Chinese; ///< the system language is Chinese
    QTimer* m_HideTimer;
    QLabel* m_icon;
    QLabel* m_label;
    IconButton* m_closeBtn;
};
