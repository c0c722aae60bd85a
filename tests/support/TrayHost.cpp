#include "support/TrayHost.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include <algorithm>

namespace support {

namespace {

constexpr char kItem[] = "/StatusNotifierItem";
constexpr char kMenu[] = "/MenuBar";
constexpr char kMenuInterface[] = "com.canonical.dbusmenu";

} // namespace

TrayHost::TrayHost(const QString& sessionBus)
    : m_object(std::make_unique<QObject>()), m_watcher(new Watcher(m_object.get())),
      m_connection(std::make_unique<QDBusConnection>(
          QDBusConnection::connectToBus(sessionBus, QStringLiteral("tray host"))))
{
    m_object->moveToThread(&m_thread);
    m_thread.start();
    m_up = m_connection->registerObject(QStringLiteral("/StatusNotifierWatcher"), m_object.get()) &&
           m_connection->registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
}

TrayHost::~TrayHost()
{
    m_thread.quit();
    m_thread.wait();
    QDBusConnection::disconnectFromBus(QStringLiteral("tray host"));
}

QString TrayHost::toolTip() const
{
    if (m_watcher->items().isEmpty())
        return {};
    QDBusMessage get = QDBusMessage::createMethodCall(
        m_watcher->items().constLast(), QLatin1String(kItem),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << QStringLiteral("org.kde.StatusNotifierItem") << QStringLiteral("ToolTip");
    const QDBusMessage answer = m_connection->call(get, QDBus::Block, 2000);
    const auto value = answer.arguments().value(0).value<QDBusVariant>().variant();
    // "(sa(iiay)ss)": icon, pictures, title, text.
    const auto argument = value.value<QDBusArgument>();
    QString icon;
    QString title;
    argument.beginStructure();
    argument >> icon;
    argument.beginArray();
    while (!argument.atEnd()) {
        int width = 0;
        int height = 0;
        QByteArray bytes;
        argument.beginStructure();
        argument >> width >> height >> bytes;
        argument.endStructure();
    }
    argument.endArray();
    argument >> title;
    return title;
}

/// Reads one node of a menu, "(ia{sv}av)", and what is below it.
void TrayHost::readNode(const QDBusArgument& argument, Entries& entries)
{
    int id = 0;
    QVariantMap properties;
    argument.beginStructure();
    argument >> id >> properties;
    const QString text = properties.value(QStringLiteral("label")).toString();
    if (!text.isEmpty())
        entries.append({id, text});
    argument.beginArray();
    while (!argument.atEnd()) {
        QDBusVariant child;
        argument >> child;
        readNode(child.variant().value<QDBusArgument>(), entries);
    }
    argument.endArray();
    argument.endStructure();
}

TrayHost::Entries TrayHost::entries() const
{
    Entries found;
    if (m_watcher->items().isEmpty())
        return found;
    QDBusMessage ask =
        QDBusMessage::createMethodCall(m_watcher->items().constLast(), QLatin1String(kMenu),
                                       QLatin1String(kMenuInterface), QStringLiteral("GetLayout"));
    ask << 0 << -1 << QStringList();
    const QDBusMessage answer = m_connection->call(ask, QDBus::Block, 2000);
    if (answer.type() == QDBusMessage::ReplyMessage)
        readNode(answer.arguments().value(1).value<QDBusArgument>(), found);
    return found;
}

QStringList TrayHost::menu() const
{
    QStringList texts;
    for (const auto& entry : entries())
        texts.append(entry.second);
    return texts;
}

bool TrayHost::choose(const QString& text) const
{
    const Entries all = entries();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const auto& entry) { return entry.second == text; });
    if (found == all.end())
        return false;
    QDBusMessage event =
        QDBusMessage::createMethodCall(m_watcher->items().constLast(), QLatin1String(kMenu),
                                       QLatin1String(kMenuInterface), QStringLiteral("Event"));
    event << found->first << QStringLiteral("clicked")
          << QVariant::fromValue(QDBusVariant(QString())) << uint(0);
    return m_connection->call(event, QDBus::Block, 2000).type() == QDBusMessage::ReplyMessage;
}

} // namespace support
