#pragma once

#include "login/DigitCells.h"

#include <QList>
#include <QWidget>

class QLabel;

/// The input of a six-digit code, a cell for each digit. Digits are typed, pasted, or come from an
/// input method; a click makes a cell the active one. It takes the keyboard when it is shown, and
/// forgets the code when it is hidden. GUI thread.
class VerifyNumInputWidget : public QWidget
{
    Q_OBJECT

public:
    explicit VerifyNumInputWidget(QWidget* parent);

    /// What the cells hold, joined. Secret.
    QString text() const { return m_cells.text(); }

    /// Fills the cells from the first one on, as if the text was pasted.
    void setText(const QString& text);

    /// Empties all cells; the first one is active.
    void clearNumber();

    /// The cell under the point, -1 when it is on none.
    int locatedNumLabelIndex(const QPoint& point) const;

    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

signals:
    /// Return or Enter behind the last digit.
    void enterPressed();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void addCell(int index);
    void resetLabelText();
    void updateLabelStyle();
    void setFocusStyle(bool focused);
    void showCells();
    void paste(const QString& text);

    DigitCells m_cells;
    QList<QLabel*> m_numLabels;
    bool m_focusStyle = false; ///< the active cell is marked
    bool m_fromMethod = false; ///< the last digit came from an input method, not by a key
};
