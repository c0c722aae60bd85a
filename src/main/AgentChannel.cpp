#include "main/AgentChannel.h"

#include "app/LocalServer.h"
#include "app/Platform.h"

#include <QLocalSocket>
#include <QTextStream>

AgentChannel::AgentChannel(LocalServer* server, QObject* parent) : QObject(parent), m_server(server)
{
    connect(server, &LocalServer::newConnection, this, &AgentChannel::onSingleSocketConnect);
}

void AgentChannel::onSingleSocketConnect()
{
    // A copy that was started while the login window was up has left its probe in the queue:
    // everything that waits is taken. What is read may end the program, and the server with it.
    while (QLocalSocket* const socket = m_server ? m_server->nextPendingConnection() : nullptr) {
        const QPointer<QLocalSocket> alive(socket);
        connect(socket, &QLocalSocket::readyRead, this, &AgentChannel::onSingleSocketRead);
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        if (socket->bytesAvailable() > 0)
            readFrom(*socket);
        if (alive && alive->state() == QLocalSocket::UnconnectedState)
            alive->deleteLater();
    }
}

void AgentChannel::onSingleSocketRead()
{
    if (auto* const socket = qobject_cast<QLocalSocket*>(sender()))
        readFrom(*socket);
}

void AgentChannel::readFrom(QLocalSocket& connection)
{
    const QByteArray bytes = connection.readAll();
    if (bytes.isEmpty())
        return; // taken by the server
    // UTF-8, or what a byte order mark says.
    QTextStream stream(bytes);
    stream.setCodec("UTF-8");
    const QString text = stream.readAll();
    const bool trusted = LocalServer::isTrusted(connection);
    const AgentText what = m_filter.admit(text, trusted, platform().clock());
    if (trusted || what.hasNotice())
        emit said(text, what);
}
