#pragma once

#include <QDBusAbstractAdaptor>
#include <QMutex>
#include <QPair>
#include <QStringList>
#include <QThread>
#include <QVector>

#include <memory>

class QDBusArgument;
class QDBusConnection;

namespace support {

/// The part of a desktop that holds tray icons: a StatusNotifierItem watcher and host on a session
/// bus (the freedesktop.org draft of that name), whose only guest's menu can be used.
class TrayHost
{
public:
    /// Takes the watcher's name on the bus; see `isUp`.
    explicit TrayHost(const QString& sessionBus);
    ~TrayHost();
    TrayHost(const TrayHost&) = delete;
    TrayHost& operator=(const TrayHost&) = delete;

    bool isUp() const { return m_up; }

    /// The tool tip of the icon that registered last; empty while there is none.
    QString toolTip() const;

    /// The texts of its menu.
    QStringList menu() const;

    /// Chooses an entry of the menu by its text; false when it is not there.
    bool choose(const QString& text) const;

private:
    class Watcher;
    using Entries = QVector<QPair<int, QString>>; ///< identity and text, in order
    static void readNode(const QDBusArgument& node, Entries& entries);
    Entries entries() const;

    QThread m_thread; ///< answers programs at any time; they wait for it when they start
    std::unique_ptr<QObject> m_object;
    Watcher* m_watcher; ///< owned by m_object
    std::unique_ptr<QDBusConnection> m_connection;
    bool m_up = false;
};

/// The D-Bus face of the watcher.
class TrayHost::Watcher : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(QStringList RegisteredStatusNotifierItems READ items)
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hosts)
    Q_PROPERTY(int ProtocolVersion READ version)

public:
    explicit Watcher(QObject* object) : QDBusAbstractAdaptor(object) {}
    QStringList items() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_items;
    }
    bool hosts() const { return true; }
    int version() const { return 0; }

public slots:
    void RegisterStatusNotifierItem(const QString& service)
    {
        const QMutexLocker lock(&m_mutex);
        m_items.append(service);
    }

signals:
    void StatusNotifierItemRegistered(const QString& service);
    void StatusNotifierItemUnregistered(const QString& service);
    void StatusNotifierHostRegistered();

private:
    mutable QMutex m_mutex;
    QStringList m_items;
};

} // namespace support
