#include "logview/AccessibleLog.h"

#include "logview/LogText.h"

#include <QWidget>
#include <QWindow>

namespace {

constexpr int kMostKept = 100; // rows that have left the view

class AccessibleRow : public QAccessibleInterface
{
public:
    AccessibleRow(QWidget* widget, const VisibleRows* rows, int row)
        : m_widget(widget), m_rows(rows), m_row(row)
    {
    }

    int row() const { return m_row; }

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_widget->window()->windowHandle(); }
    QAccessibleInterface* parent() const override
    {
        return QAccessible::queryAccessibleInterface(m_widget);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? logtext::spoken(m_rows->content(m_row)) : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override
    {
        const QRect place = m_rows->rowRect(m_row);
        return {m_widget->mapToGlobal(place.topLeft()), place.size()};
    }

    QAccessible::Role role() const override { return QAccessible::ListItem; }

    QAccessible::State state() const override
    {
        const bool current = m_row == m_rows->currentRow();
        QAccessible::State state;
        state.selectable = true;
        state.focusable = true;
        state.selected = m_rows->isSelected(m_row);
        state.active = current;
        state.focused = current && m_widget->hasFocus();
        state.invisible = m_rows->rowRect(m_row).isEmpty();
        return state;
    }

private:
    QWidget* m_widget;
    const VisibleRows* m_rows;
    int m_row;
};

} // namespace

AccessibleLog::AccessibleLog(QWidget* widget, const VisibleRows* rows)
    : QAccessibleWidget(widget, QAccessible::List), m_rows(rows)
{
}

AccessibleLog::~AccessibleLog()
{
    for (const QAccessible::Id id : qAsConst(m_ids))
        QAccessible::deleteAccessibleInterface(id);
}

int AccessibleLog::childCount() const
{
    return m_rows->lastVisible() - m_rows->firstVisible() + 1;
}

QAccessibleInterface* AccessibleLog::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    const int row = m_rows->firstVisible() + index;
    if (!m_ids.contains(row)) {
        forgetHidden();
        m_ids.insert(row, QAccessible::registerAccessibleInterface(
                              new AccessibleRow(widget(), m_rows, row)));
    }
    return QAccessible::accessibleInterface(m_ids.value(row));
}

void AccessibleLog::forgetHidden() const
{
    if (m_ids.size() < kMostKept)
        return;
    for (auto it = m_ids.begin(); it != m_ids.end();) {
        const bool hidden = it.key() < m_rows->firstVisible() || it.key() > m_rows->lastVisible();
        if (hidden)
            QAccessible::deleteAccessibleInterface(it.value());
        it = hidden ? m_ids.erase(it) : it + 1;
    }
}

QAccessibleInterface* AccessibleLog::childAt(int x, int y) const
{
    for (int index = 0; index < childCount(); ++index) {
        QAccessibleInterface* const row = child(index);
        if (row->rect().contains(x, y))
            return row;
    }
    return nullptr;
}

int AccessibleLog::indexOfChild(const QAccessibleInterface* child) const
{
    const auto* row = dynamic_cast<const AccessibleRow*>(child);
    return row ? row->row() - m_rows->firstVisible() : -1;
}

QAccessibleInterface* AccessibleLog::focusChild() const
{
    return child(m_rows->currentRow() - m_rows->firstVisible());
}
