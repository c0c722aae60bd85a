#pragma once

#include "app/LogContent.h"

#include <QBrush>
#include <QPen>
#include <QStyledItemDelegate>

#include <array>

/// Paints the rows of the activity log as a time line: date titles, messages with a dot in the
/// colour of their severity, and time stamps. GUI thread.
class CustomDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    explicit CustomDelegate(QObject* parent = nullptr);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    static constexpr int kDots = 4; ///< types that have one, from 0 on

    void drawMessage(QPainter* painter, const QRect& row, const QRect& textArea,
                     const LogContent& content) const;

    std::array<QPen, kDots> m_pens; ///< of the dots, and their brushes
    std::array<QBrush, kDots> m_brushes;
};
