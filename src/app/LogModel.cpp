#include "app/LogModel.h"

int LogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

QVariant LogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const LogContent& content = m_rows[size_t(index.row())];
    if (role == ContentRole)
        return QVariant::fromValue(content);
    if (role == Qt::AccessibleTextRole)
        return content.text;
    return {};
}

void LogModel::setRows(std::deque<LogContent> rows)
{
    beginResetModel();
    m_rows = std::move(rows);
    endResetModel();
}

void LogModel::insertContents(int row, const QVector<LogContent>& contents)
{
    row = qMin(row, rowCount());
    beginInsertRows({}, row, row + contents.size() - 1);
    m_rows.insert(m_rows.begin() + row, contents.cbegin(), contents.cend());
    endInsertRows();
}
