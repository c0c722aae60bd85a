#pragma once

#include "support/AccessibilityBus.h"
#include "support/AccessibleNode.h"

#include <functional>

#include <QStringList>

namespace support {

/// A running program as an assistive tool sees it.
class AccessibleApp
{
public:
    /// `pid` is asked for at each look, so that it may name a program that starts later or is
    /// replaced by a new copy of itself.
    AccessibleApp(const AccessibilityBus& bus, std::function<qint64()> pid)
        : m_bus(bus), m_pid(std::move(pid))
    {
    }

    /// The first showing node of that kind and name, looking through the windows in order of
    /// the program; an empty name matches any. Invalid when there is none.
    AccessibleNode find(Kind kind, const QString& name) const;

    /// The same for a description.
    AccessibleNode findDescribed(Kind kind, const QString& description) const;

    /// Waits until find() finds it.
    AccessibleNode await(Kind kind, const QString& name, int timeoutMs = 10000) const;

    /// Presses a button once it shows and is enabled; false when that does not happen in time.
    bool press(const QString& button, int timeoutMs = 10000) const;

    /// Types into the field of that name once it shows.
    bool type(const QString& field, const QString& text, int timeoutMs = 10000) const;

    /// The names of all labels that show now, in order.
    QStringList labels() const;

    /// The windows that show now.
    QVector<AccessibleNode> windows() const;

    /// An indented listing of everything that shows: role, name, description, states.
    QString dump() const;

private:
    AccessibleNode findIf(const std::function<bool(const AccessibleNode&)>& matches) const;

    const AccessibilityBus& m_bus;
    std::function<qint64()> m_pid;
};

} // namespace support
