#include "support/AccessibleNode.h"

#include "support/AccessibilityBus.h"
#include "support/Wait.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

namespace support {

namespace {

constexpr char kAccessible[] = "org.a11y.atspi.Accessible";
constexpr char kText[] = "org.a11y.atspi.Text";

// Role and state numbers of atspi-constants.h.
enum Role : uint {
    RoleCheckBox = 7,
    RoleLabel = 29,
    RoleList = 31,
    RolePasswordText = 40,
    RolePushButton = 43,
    RoleRadioButton = 44,
    RoleText = 61,
    RoleToggleButton = 62,
    RoleEntry = 79
};
enum StateBit { StateChecked = 4, StateEnabled = 8, StateFocused = 12, StateShowing = 25 };

constexpr int kFieldTimeoutMs = 2000;

} // namespace

QVariant AccessibleNode::ask(const char* interface, const char* method,
                             const QVariantList& arguments) const
{
    return isValid() ? m_bus->call(m_service, m_path, interface, method, arguments) : QVariant();
}

QVariant AccessibleNode::read(const char* interface, const char* property) const
{
    return isValid() ? m_bus->property(m_service, m_path, interface, property) : QVariant();
}

QString AccessibleNode::name() const
{
    return read(kAccessible, "Name").toString();
}

QString AccessibleNode::description() const
{
    return read(kAccessible, "Description").toString();
}

uint AccessibleNode::role() const
{
    return ask(kAccessible, "GetRole").toUInt();
}

bool AccessibleNode::is(Kind kind) const
{
    if (kind == Kind::Any)
        return isValid();
    switch (role()) {
    case RolePushButton:
    case RoleToggleButton:
    case RoleRadioButton:
        return kind == Kind::Button;
    case RoleList:
        return kind == Kind::List;
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
    const QVariant list = ask(kAccessible, "GetChildren");
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
    const QList<uint> words = qdbus_cast<QList<uint>>(ask(kAccessible, "GetState"));
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

bool AccessibleNode::isFocused() const
{
    return hasState(StateFocused);
}

QString AccessibleNode::text() const
{
    constexpr int kToTheEnd = -1;
    return ask(kText, "GetText", {0, kToTheEnd}).toString();
}

int AccessibleNode::length() const
{
    return read(kText, "CharacterCount").toInt();
}

QRect AccessibleNode::extents() const
{
    constexpr uint kOfTheScreen = 0;
    const QVariant reply = ask("org.a11y.atspi.Component", "GetExtents", {kOfTheScreen});
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
    // The first action of a button that stays down changes its state, which is not a press.
    if (role() == RoleCheckBox) {
        m_bus->click(extents().center());
        return true;
    }
    constexpr int kFirstAction = 0;
    return ask("org.a11y.atspi.Action", "DoAction", {kFirstAction}).toBool();
}

bool AccessibleNode::type(const QString& text) const
{
    if (!isValid())
        return false;
    m_bus->click(extents().center());
    if (!waitFor([this] { return isFocused(); }, kFieldTimeoutMs))
        return false;
    m_bus->clearField();
    if (!waitFor([this] { return length() == 0; }, kFieldTimeoutMs))
        return false;
    m_bus->typeText(text);
    // A password field tells no more than its length.
    const bool masked = role() == RolePasswordText;
    return waitFor([&] { return length() == text.size() && (masked || this->text() == text); });
}

} // namespace support
