#include "app/LocalServer.h"

#include "app/Platform.h"

#include <QLocalSocket>

#include <algorithm>
#include <utility>

#include <unistd.h>

namespace {

constexpr char kTrusted[] = "trusted"; // property of a connection

} // namespace

bool isTrustedPeer(std::optional<uid_t> peer, uid_t own)
{
    return peer && (*peer == 0 || *peer == own);
}

bool LocalServer::hasPendingConnections() const
{
    return !m_pending.isEmpty();
}

QLocalSocket* LocalServer::nextPendingConnection()
{
    return m_pending.isEmpty() ? nullptr : m_pending.takeFirst();
}

bool LocalServer::isTrusted(const QLocalSocket& connection)
{
    return connection.property(kTrusted).toBool();
}

void LocalServer::incomingConnection(quintptr descriptor)
{
    auto* const connection = new QLocalSocket(this);
    connection->setReadBufferSize(kReadBuffer);
    connection->setProperty(kTrusted,
                            isTrustedPeer(platform().peerUser(int(descriptor)), ::getuid()));
    connection->setSocketDescriptor(qintptr(descriptor));
    connect(connection, &QObject::destroyed, this, [this, connection] {
        m_open.removeOne(connection);
        m_pending.removeOne(connection);
    });
    if (isTrusted(*connection))
        connect(connection, &QLocalSocket::readyRead, this,
                [this, connection] { lookForShow(connection); });
    m_open.append(connection);
    m_pending.append(connection);
    dropSurplus();
    if (m_pending.contains(connection))
        emit newConnection();
}

void LocalServer::lookForShow(QLocalSocket* connection)
{
    const QByteArray show(kShow);
    if (connection->bytesAvailable() != show.size() || connection->peek(show.size()) != show)
        return;
    connection->readAll();
    emit showWanted();
}

void LocalServer::dropSurplus()
{
    while (m_open.size() > kMostConnections) {
        if (!std::exchange(m_surplusLogged, true))
            qWarning("Too many connections on the local socket, the oldest are dropped");
        const auto untrusted = std::find_if(m_open.cbegin(), m_open.cend(),
                                            [](QLocalSocket* one) { return !isTrusted(*one); });
        QLocalSocket* const dropped = untrusted == m_open.cend() ? m_open.constFirst() : *untrusted;
        m_open.removeOne(dropped);
        m_pending.removeOne(dropped);
        dropped->abort();
        dropped->deleteLater(); // its reader may be at work further up
    }
}
