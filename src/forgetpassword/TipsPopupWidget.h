#pragma once

#include <QFontMetrics>
#include <QRect>
#include <QString>
#include <QWidget>

class QLabel;

namespace TQ {

/// The rows that `text` takes in the width of `rect`: Chinese runs on from row to row, the words of
/// other languages are kept whole.
int calcNeedRows(const QFontMetrics& metrics, const QString& text, const QRect& rect);

/// A speech bubble with a short text, over whatever stands in its parent. It takes neither the
/// pointer nor the keyboard. It is a part of its window rather than one of its own, so that neither
/// place nor shadow depends on the window manager. GUI thread.
class TipsPopupWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TipsPopupWidget(QWidget* parent);

    /// Plain text; its size follows it.
    void setText(const QString& text);
    QString text() const;

    /// Shows it above a widget of the same parent, pointing at its middle.
    void showAbove(const QWidget* widget);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void fitText();

    QLabel* m_label;
    int m_tip = 0; ///< where the bubble points down, from its left
};

} // namespace TQ
