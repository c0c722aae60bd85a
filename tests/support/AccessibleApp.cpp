#include "support/AccessibleApp.h"

#include "support/Wait.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>

namespace support {

namespace {

// Role and state numbers of the assistive technology service provider interface
// (atspi-constants.h).
enum Role {
    RoleCheckBox = 7,
    RoleDialog = 16,
    RoleFrame = 23,
    RoleLabel = 29,
    RolePasswordText = 40,
    RolePushButton = 43,
    RoleRadioButton = 44,
    RoleText = 61,
    RoleToggleButton = 62,
    RoleWindow = 69,
    RoleEntry = 79
};
enum StateBit {
    StateActive = 1,
    StateChecked = 4,
    StateEnabled = 8,
    StateFocused = 12,
    StateSensitive = 24,
    StateShowing = 25,
    StateVisible = 30
};

constexpr int kCallTimeoutMs = 2000;
constexpr char kRegistry[] = "org.a11y.atspi.Registry";
constexpr char kEventController[] = "/org/a11y/atspi/registry/deviceeventcontroller";
constexpr char kRootPath[] = "/org/a11y/atspi/accessible/root";
constexpr uint kSelectAllKey = 'a';
constexpr uint kDeleteKey = 0xffff;
constexpr int kControlKeyCode = 37; // of the X server's default keyboard

QString interfaceName(const char* shortName)
{
    return QStringLiteral("org.a11y.atspi.") + QLatin1String(shortName);
}

QVariantList ask(const QDBusConnection& bus, const QString& service, const QString& path,
                 const QString& interface, const QString& method, const QVariantList& arguments)
{
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    const QDBusMessage reply = bus.call(call, QDBus::Block, kCallTimeoutMs);
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
}

QVariant first(const QVariantList& values)
{
    return values.isEmpty() ? QVariant() : values.first();
}

} // namespace

// ---- nodes

static QVariant property(const AccessibilityBus* bus, const QString& service, const QString& path,
                         const char* interface, const QString& name)
{
    if (bus == nullptr)
        return QVariant();
    const QVariantList reply =
        ask(bus->connection(), service, path, QStringLiteral("org.freedesktop.DBus.Properties"),
            QStringLiteral("Get"), {interfaceName(interface), name});
    return first(reply).value<QDBusVariant>().variant();
}

QString AccessibleNode::name() const
{
    return property(m_bus, m_service, m_path, "Accessible", QStringLiteral("Name")).toString();
}

QString AccessibleNode::description() const
{
    return property(m_bus, m_service, m_path, "Accessible", QStringLiteral("Description"))
        .toString();
}

uint AccessibleNode::role() const
{
    if (!isValid())
        return 0;
    return first(ask(m_bus->connection(), m_service, m_path, interfaceName("Accessible"),
                     QStringLiteral("GetRole"), {}))
        .toUInt();
}

bool AccessibleNode::is(Kind kind) const
{
    if (kind == Kind::Any)
        return isValid();
    switch (role()) {
    case RoleDialog:
    case RoleFrame:
    case RoleWindow:
        return kind == Kind::Window;
    case RolePushButton:
    case RoleToggleButton:
    case RoleRadioButton:
        return kind == Kind::Button;
    case RoleCheckBox: // also a tool button that can be checked
        return kind == Kind::CheckBox || kind == Kind::Button;
    case RoleText:
    case RolePasswordText:
    case RoleEntry:
        return kind == Kind::Field;
    case RoleLabel:
        return kind == Kind::Label;
    default:
        return false;
    }
}

QVector<AccessibleNode> AccessibleNode::children() const
{
    QVector<AccessibleNode> result;
    if (!isValid())
        return result;
    const QVariant list =
        first(ask(m_bus->connection(), m_service, m_path, interfaceName("Accessible"),
                  QStringLiteral("GetChildren"), {}));
    if (!list.canConvert<QDBusArgument>())
        return result;
    const auto argument = list.value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString service;
        QDBusObjectPath path;
        argument.beginStructure();
        argument >> service >> path;
        argument.endStructure();
        result.append(AccessibleNode(m_bus, service, path.path()));
    }
    argument.endArray();
    return result;
}

bool AccessibleNode::hasState(int bit) const
{
    if (!isValid())
        return false;
    const QVariant reply = first(ask(m_bus->connection(), m_service, m_path,
                                     interfaceName("Accessible"), QStringLiteral("GetState"), {}));
    const QList<uint> words = qdbus_cast<QList<uint>>(reply);
    return words.size() > bit / 32 && ((words.at(bit / 32) >> (bit % 32)) & 1U) != 0;
}

bool AccessibleNode::isShowing() const
{
    return hasState(StateShowing);
}

bool AccessibleNode::isEnabled() const
{
    return hasState(StateEnabled);
}

bool AccessibleNode::isChecked() const
{
    return hasState(StateChecked);
}

bool AccessibleNode::isActive() const
{
    return hasState(StateActive);
}

bool AccessibleNode::isFocused() const
{
    return hasState(StateFocused);
}

QString AccessibleNode::text() const
{
    if (!isValid())
        return QString();
    constexpr int kToTheEnd = -1;
    return first(ask(m_bus->connection(), m_service, m_path, interfaceName("Text"),
                     QStringLiteral("GetText"), {0, kToTheEnd}))
        .toString();
}

int AccessibleNode::length() const
{
    return property(m_bus, m_service, m_path, "Text", QStringLiteral("CharacterCount")).toInt();
}

QRect AccessibleNode::extents() const
{
    if (!isValid())
        return QRect();
    constexpr uint kOfTheScreen = 0;
    const QVariant reply =
        first(ask(m_bus->connection(), m_service, m_path, interfaceName("Component"),
                  QStringLiteral("GetExtents"), {kOfTheScreen}));
    if (!reply.canConvert<QDBusArgument>())
        return QRect();
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    const auto argument = reply.value<QDBusArgument>();
    argument.beginStructure();
    argument >> x >> y >> width >> height;
    argument.endStructure();
    return QRect(x, y, width, height);
}

bool AccessibleNode::press() const
{
    if (!isValid())
        return false;
    if (role() == RoleCheckBox) {
        // The first action of a button that stays down is to change its state, which is not a
        // press.
        m_bus->click(extents().center());
        return true;
    }
    constexpr int kFirstAction = 0;
    return first(ask(m_bus->connection(), m_service, m_path, interfaceName("Action"),
                     QStringLiteral("DoAction"), {kFirstAction}))
        .toBool();
}

bool AccessibleNode::type(const QString& text) const
{
    if (!isValid())
        return false;
    m_bus->click(extents().center());
    if (!waitFor([this] { return isFocused(); }, kCallTimeoutMs))
        return false;
    m_bus->clearField();
    if (!waitFor([this] { return length() == 0; }, kCallTimeoutMs))
        return false;
    m_bus->typeText(text);
    // A password field tells no more than its length.
    const bool masked = role() == RolePasswordText;
    return waitFor([&] { return length() == text.size() && (masked || this->text() == text); });
}

// ---- the bus

AccessibilityBus::AccessibilityBus(const QString& address)
    : m_connectionName(QStringLiteral("accessibility ") + address)
{
    m_connection =
        std::make_unique<QDBusConnection>(QDBusConnection::connectToBus(address, m_connectionName));
}

AccessibilityBus::~AccessibilityBus()
{
    m_connection.reset();
    QDBusConnection::disconnectFromBus(m_connectionName);
}

AccessibleNode AccessibilityBus::program(qint64 pid) const
{
    const QString busName = QStringLiteral("org.freedesktop.DBus");
    const AccessibleNode desktop(this, QLatin1String(kRegistry), QLatin1String(kRootPath));
    const QVector<AccessibleNode> programs = desktop.children();
    for (const AccessibleNode& candidate : programs) {
        const QVariantList owner =
            ask(*m_connection, busName, QStringLiteral("/org/freedesktop/DBus"), busName,
                QStringLiteral("GetConnectionUnixProcessID"), {candidate.service()});
        if (first(owner).toLongLong() == pid)
            return candidate;
    }
    return AccessibleNode();
}

static void generateKey(const QDBusConnection& bus, int symbol, const QString& text, uint kind)
{
    ask(bus, QLatin1String(kRegistry), QLatin1String(kEventController),
        interfaceName("DeviceEventController"), QStringLiteral("GenerateKeyboardEvent"),
        {symbol, text, kind});
}

enum KeyEvent : uint { KeyPress = 0, KeyRelease = 1, KeySymbol = 3, KeyText = 4 };

void AccessibilityBus::key(uint symbol) const
{
    generateKey(*m_connection, static_cast<int>(symbol), QString(), KeySymbol);
}

void AccessibilityBus::typeText(const QString& text) const
{
    generateKey(*m_connection, 0, text, KeyText);
}

void AccessibilityBus::clearField() const
{
    generateKey(*m_connection, kControlKeyCode, QString(), KeyPress);
    key(kSelectAllKey);
    generateKey(*m_connection, kControlKeyCode, QString(), KeyRelease);
    key(kDeleteKey);
}

void AccessibilityBus::click(const QPoint& where) const
{
    const auto generate = [this](const QPoint& place, const char* event) {
        ask(*m_connection, QLatin1String(kRegistry), QLatin1String(kEventController),
            interfaceName("DeviceEventController"), QStringLiteral("GenerateMouseEvent"),
            {place.x(), place.y(), QLatin1String(event)});
    };
    generate(where, "abs");
    generate(where, "b1c");
    generate(QPoint(), "abs");
}

// ---- a program

static AccessibleNode search(const AccessibleNode& parent,
                             const std::function<bool(const AccessibleNode&)>& matches)
{
    const QVector<AccessibleNode> children = parent.children();
    for (const AccessibleNode& child : children) {
        if (!child.isShowing())
            continue;
        if (matches(child))
            return child;
        const AccessibleNode found = search(child, matches);
        if (found.isValid())
            return found;
    }
    return AccessibleNode();
}

AccessibleNode
AccessibleApp::findIf(const std::function<bool(const AccessibleNode&)>& matches) const
{
    return search(m_bus.program(m_pid()), matches);
}

AccessibleNode AccessibleApp::find(Kind kind, const QString& name) const
{
    return findIf([&](const AccessibleNode& node) {
        return (name.isEmpty() || node.name() == name) && node.is(kind);
    });
}

AccessibleNode AccessibleApp::findDescribed(Kind kind, const QString& description) const
{
    return findIf([&](const AccessibleNode& node) {
        return node.description() == description && node.is(kind);
    });
}

AccessibleNode AccessibleApp::await(Kind kind, const QString& name, int timeoutMs) const
{
    AccessibleNode found;
    waitFor(
        [&] {
            found = find(kind, name);
            return found.isValid();
        },
        timeoutMs);
    return found;
}

bool AccessibleApp::press(const QString& button, int timeoutMs) const
{
    AccessibleNode found;
    const bool ready = waitFor(
        [&] {
            found = find(Kind::Button, button);
            return found.isValid() && found.isEnabled();
        },
        timeoutMs);
    return ready && found.press();
}

bool AccessibleApp::type(const QString& field, const QString& text, int timeoutMs) const
{
    return await(Kind::Field, field, timeoutMs).type(text);
}

static void visit(const AccessibleNode& parent, int depth,
                  const std::function<void(const AccessibleNode&, int)>& visitor)
{
    const QVector<AccessibleNode> children = parent.children();
    for (const AccessibleNode& child : children) {
        if (!child.isShowing())
            continue;
        visitor(child, depth);
        visit(child, depth + 1, visitor);
    }
}

QStringList AccessibleApp::labels() const
{
    QStringList result;
    visit(m_bus.program(m_pid()), 0, [&](const AccessibleNode& node, int) {
        if (node.is(Kind::Label))
            result.append(node.name());
    });
    return result;
}

QVector<AccessibleNode> AccessibleApp::windows() const
{
    QVector<AccessibleNode> result;
    const QVector<AccessibleNode> children = m_bus.program(m_pid()).children();
    for (const AccessibleNode& child : children) {
        if (child.isShowing())
            result.append(child);
    }
    return result;
}

QString AccessibleApp::dump() const
{
    QString result;
    visit(m_bus.program(m_pid()), 0, [&](const AccessibleNode& node, int depth) {
        result += QString(depth * 2, QLatin1Char(' ')) +
                  QStringLiteral("%1 \"%2\" \"%3\"%4%5 %6\n")
                      .arg(node.role())
                      .arg(node.name(), node.description(),
                           node.isEnabled() ? QString() : QStringLiteral(" disabled"),
                           node.isFocused() ? QStringLiteral(" focused") : QString(), node.text());
    });
    return result;
}

} // namespace support
