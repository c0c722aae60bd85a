#pragma once

#include "app/LogContent.h"

#include <QAbstractListModel>
#include <QVector>

#include <deque>

/// The rows of the log page. A list over plain values rather than an item model: a history of
/// several hundred thousand rows is put in place in one step, and a new message near the top
/// costs the same whatever stands below it. GUI thread only.
class LogModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The role that views draw from: a QVariant holding a LogContent. The text alone is there
    /// for screen readers too, under Qt::AccessibleTextRole.
    static constexpr int ContentRole = Qt::UserRole + 1;

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

    /// Replaces all rows.
    void setRows(std::deque<LogContent> rows);

    /// Inserts rows before `row`, which is lowered to the number of rows when it is beyond it.
    void insertContents(int row, const QVector<LogContent>& contents);

private:
    std::deque<LogContent> m_rows;
};
