#include "support/AccessibleApp.h"

#include "support/Wait.h"

namespace support {

/// What of a node is looked at. The entries of a list are not: none of them is a control, and a log
/// has thousands.
static QVector<AccessibleNode> parts(const AccessibleNode& parent)
{
    return parent.is(Kind::List) ? QVector<AccessibleNode>() : parent.children();
}

static AccessibleNode search(const AccessibleNode& parent,
                             const std::function<bool(const AccessibleNode&)>& matches)
{
    const QVector<AccessibleNode> children = parts(parent);
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
    const QVector<AccessibleNode> children = parts(parent);
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
