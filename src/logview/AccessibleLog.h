#pragma once

#include "app/LogContent.h"

#include <QAccessibleWidget>
#include <QMap>
#include <QRect>

/// A list of rows of which some are in view.
class VisibleRows
{
public:
    virtual ~VisibleRows() = default;

    /// The first and the last row of which something is to be seen; `last` < `first` for none.
    virtual int firstVisible() const = 0;
    virtual int lastVisible() const = 0;

    /// In coordinates of the widget; empty when it is not in view.
    virtual QRect rowRect(int row) const = 0;
    virtual LogContent content(int row) const = 0;
    virtual bool isSelected(int row) const = 0;
    virtual int currentRow() const = 0; ///< -1 for none
};

/// What assistive technology is told of such a list: its children are the rows in view, however
/// many there are. GUI thread.
class AccessibleLog : public QAccessibleWidget
{
public:
    /// `rows` is the widget.
    AccessibleLog(QWidget* widget, const VisibleRows* rows);
    ~AccessibleLog() override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* focusChild() const override;

private:
    void forgetHidden() const;

    const VisibleRows* m_rows;
    mutable QMap<int, QAccessible::Id> m_ids; ///< of the rows that were asked for
};
