#pragma once

#include <functional>
#include <memory>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVector>

class QDBusConnection;

namespace support {

class AccessibilityBus;

/// What kind of control a node is, as far as a driver cares.
enum class Kind { Any, Window, Button, Field, CheckBox, Label };

/// One accessible object of a running program: a handle that holds nothing but the address, so
/// every question is answered by the program at that moment. A program that does not answer
/// within two seconds, or has gone, gives empty answers.
class AccessibleNode
{
public:
    AccessibleNode() = default;
    AccessibleNode(const AccessibilityBus* bus, QString service, QString path)
        : m_bus(bus), m_service(std::move(service)), m_path(std::move(path))
    {
    }

    bool isValid() const { return m_bus != nullptr; }
    QString name() const;
    QString description() const;
    uint role() const;
    bool is(Kind kind) const;
    QVector<AccessibleNode> children() const;

    bool isShowing() const;
    bool isEnabled() const;
    bool isChecked() const;
    bool isActive() const; ///< of a window: it has the keyboard
    bool isFocused() const;

    /// The text of a field; empty for a password.
    QString text() const;

    /// The number of characters in a field.
    int length() const;

    /// Where it is on the screen.
    QRect extents() const;

    /// Does what a click would do; false when it offers no action.
    bool press() const;

    /// Replaces the text of a field by clicking into it, selecting all and typing, as a person
    /// would; false when the field did not end up with the text. Printable ASCII only.
    bool type(const QString& text) const;

    QString service() const { return m_service; }
    bool operator==(const AccessibleNode& other) const
    {
        return m_service == other.m_service && m_path == other.m_path;
    }

private:
    bool hasState(int bit) const;

    const AccessibilityBus* m_bus = nullptr;
    QString m_service;
    QString m_path;
};

/// The accessibility bus of a desktop, over a connection of its own.
class AccessibilityBus
{
public:
    explicit AccessibilityBus(const QString& address);
    ~AccessibilityBus();
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    /// The root node of the program that runs as process `pid`; invalid while it is not there.
    /// The desktop is asked anew each time.
    AccessibleNode program(qint64 pid) const;

    /// Presses and releases the key of an X11 key symbol (see X11/keysymdef.h).
    void key(uint symbol) const;
    void typeText(const QString& text) const;

    /// Empties the field that has the keyboard.
    void clearField() const;

    /// Clicks a place of the screen with the left button, and takes the pointer away to the
    /// corner so that nothing looks hovered.
    void click(const QPoint& where) const;

    const QDBusConnection& connection() const { return *m_connection; }

private:
    std::unique_ptr<QDBusConnection> m_connection;
    QString m_connectionName;
};

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
