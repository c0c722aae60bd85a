#pragma once

#include <QStyledItemDelegate>

/// Paints the rows of the activity log as a time line: date titles, messages with a dot in the
/// colour of their severity, and time stamps. GUI thread.
class CustomDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};
