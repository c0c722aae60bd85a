#pragma once

#include "logview/AccessibleLog.h"

#include <QAbstractScrollArea>
#include <QStyledItemDelegate>

class QAbstractItemModel;

/// The list of the log page. Its rows have heights of their own, which are worked out only for what
/// is in view: the scroll bar counts rows, each divided into the same number of units however high
/// it is, so that a list of any length opens, jumps and changes its width at once. Rows can be
/// selected, from one to another, by mouse and keyboard, and copied. GUI thread.
class LogView : public QAbstractScrollArea, public VisibleRows
{
    Q_OBJECT

public:
    explicit LogView(QWidget* parent = nullptr);

    /// Draws and measures rows; belongs to the view.
    void setItemDelegate(QStyledItemDelegate* delegate);

    /// The rows, which stay their owner's; once.
    void setModel(QAbstractItemModel* model);

    int firstVisible() const override;
    int lastVisible() const override;
    QRect rowRect(int row) const override;
    LogContent content(int row) const override;
    bool isSelected(int row) const override;
    int currentRow() const override { return m_current; }

public slots:
    void selectAll();
    /// Puts the selected rows onto the clipboard.
    void copy() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    int rowCount() const;
    QStyleOptionViewItem optionFor(int row) const;
    int rowHeight(int row) const;
    int topOffset() const;
    int rowAt(int y) const;
    int valueWithBottom(int row) const;
    void updateRange();
    void onReset();
    void onInserted(int first, int last);
    void scrollTo(int row);
    void setCurrent(int row, bool extend);
    int moved(int key) const;

    QAbstractItemModel* m_model = nullptr;
    QStyledItemDelegate* m_delegate = nullptr;
    int m_anchor = -1;  ///< where the selection began,
    int m_current = -1; ///< and the row at its other end; -1: none
};
