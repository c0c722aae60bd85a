#pragma once

#include "support/AccessibleNode.h"

#include <memory>

#include <QPoint>
#include <QVariantList>

class QDBusConnection;

namespace support {

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

    /// Types into what has the keyboard.
    void typeText(const QString& text) const;

    /// Empties the field that has the keyboard.
    void clearField() const;

    /// Clicks a place of the screen with the left button and takes the pointer away again.
    void click(const QPoint& where) const;

    /// Puts the pointer into the corner, where nothing looks hovered.
    void parkPointer() const;

    /// Calls a method of an object: what it returns first; invalid when it fails, returns
    /// nothing, or does not answer within two seconds.
    QVariant call(const QString& service, const QString& path, const char* interface,
                  const char* method, const QVariantList& arguments = {}) const;

    /// One property of an object, likewise.
    QVariant property(const QString& service, const QString& path, const char* interface,
                      const char* name) const;

private:
    void generateKey(int key, const QString& text, uint kind) const;
    void generatePointer(const QPoint& place, const char* event) const;

    std::unique_ptr<QDBusConnection> m_connection;
};

} // namespace support
