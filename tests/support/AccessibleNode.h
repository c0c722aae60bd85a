#pragma once

#include <QRect>
#include <QString>
#include <QVariant>
#include <QVector>

namespace support {

class AccessibilityBus;

/// What kind of control a node is, as far as a driver cares.
enum class Kind { Any, Button, Field, CheckBox, Label, List };

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
    QVariant ask(const char* interface, const char* method,
                 const QVariantList& arguments = {}) const;
    QVariant read(const char* interface, const char* property) const;

    const AccessibilityBus* m_bus = nullptr;
    QString m_service;
    QString m_path;
};

} // namespace support
