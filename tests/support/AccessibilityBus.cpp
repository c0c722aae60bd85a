#include "support/AccessibilityBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

namespace support {

namespace {

constexpr char kRegistry[] = "org.a11y.atspi.Registry";
constexpr char kRootPath[] = "/org/a11y/atspi/accessible/root";
constexpr char kControllerPath[] = "/org/a11y/atspi/registry/deviceeventcontroller";
constexpr char kController[] = "org.a11y.atspi.DeviceEventController";
constexpr char kBus[] = "org.freedesktop.DBus";

constexpr int kCallTimeoutMs = 2000;

// The kinds of AtspiKeySynthType; a press and a release take a key code, the others a symbol
// (X11/keysymdef.h) or a text.
enum KeyEvent : uint { KeyPress = 0, KeyRelease = 1, KeySymbol = 3, KeyText = 4 };
constexpr int kControlKeyCode = 37; // of the X server's default keyboard
constexpr int kDeleteKey = 0xffff;

} // namespace

AccessibilityBus::AccessibilityBus(const QString& address)
    : m_connection(std::make_unique<QDBusConnection>(
          QDBusConnection::connectToBus(address, QStringLiteral("accessibility ") + address)))
{
}

AccessibilityBus::~AccessibilityBus()
{
    const QString name = m_connection->name();
    m_connection.reset();
    QDBusConnection::disconnectFromBus(name);
}

QVariant AccessibilityBus::call(const QString& service, const QString& path, const char* interface,
                                const char* method, const QVariantList& arguments) const
{
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, QLatin1String(interface),
                                                          QLatin1String(method));
    message.setArguments(arguments);
    const QDBusMessage reply = m_connection->call(message, QDBus::Block, kCallTimeoutMs);
    const bool answered =
        reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty();
    return answered ? reply.arguments().first() : QVariant();
}

QVariant AccessibilityBus::property(const QString& service, const QString& path,
                                    const char* interface, const char* name) const
{
    return call(service, path, "org.freedesktop.DBus.Properties", "Get",
                {QLatin1String(interface), QLatin1String(name)})
        .value<QDBusVariant>()
        .variant();
}

AccessibleNode AccessibilityBus::program(qint64 pid) const
{
    const AccessibleNode desktop(this, QLatin1String(kRegistry), QLatin1String(kRootPath));
    const QVector<AccessibleNode> programs = desktop.children();
    for (const AccessibleNode& candidate : programs) {
        const QVariant owner = call(QLatin1String(kBus), QStringLiteral("/org/freedesktop/DBus"),
                                    kBus, "GetConnectionUnixProcessID", {candidate.service()});
        if (owner.toLongLong() == pid)
            return candidate;
    }
    return AccessibleNode();
}

void AccessibilityBus::generateKey(int key, const QString& text, uint kind) const
{
    call(QLatin1String(kRegistry), QLatin1String(kControllerPath), kController,
         "GenerateKeyboardEvent", {key, text, kind});
}

void AccessibilityBus::typeText(const QString& text) const
{
    generateKey(0, text, KeyText);
}

void AccessibilityBus::clearField() const
{
    generateKey(kControlKeyCode, QString(), KeyPress);
    generateKey('a', QString(), KeySymbol);
    generateKey(kControlKeyCode, QString(), KeyRelease);
    generateKey(kDeleteKey, QString(), KeySymbol);
}

void AccessibilityBus::generatePointer(const QPoint& place, const char* event) const
{
    call(QLatin1String(kRegistry), QLatin1String(kControllerPath), kController,
         "GenerateMouseEvent", {place.x(), place.y(), QLatin1String(event)});
}

void AccessibilityBus::click(const QPoint& where) const
{
    generatePointer(where, "abs");
    generatePointer(where, "b1c");
    parkPointer();
}

void AccessibilityBus::parkPointer() const
{
    generatePointer(QPoint(), "abs");
}

} // namespace support
