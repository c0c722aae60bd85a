#pragma once

#include <QList>
#include <QLocalServer>

#include <optional>

#include <sys/types.h>

/// Whether what a peer on the local socket says may end a session or an attempt: it runs as root,
/// as the datapath's service does, or as the client's own user, who can end the client anyway. Any
/// other local user may connect, since the socket is open to all, but is not trusted; neither is a
/// peer that the system can not name.
bool isTrustedPeer(std::optional<uid_t> peer, uid_t own);

/// The local server of the program, bounded from the moment a connection is accepted, whether
/// anybody reads it already or not: any local user may connect. A connection holds at most
/// kReadBuffer bytes of what its peer has sent; the rest waits with the peer. Of more than
/// kMostConnections the oldest one of an untrusted peer is dropped, so that no other user can push
/// out the datapath's agent, and the oldest of all when none is untrusted; the log says so once.
/// Connections are children of the server. GUI thread.
///
/// A trusted peer whose only word is kShow is another copy of the program, which the user has
/// started to see this one: `showWanted` says so, and nobody else hears of the connection.
class LocalServer : public QLocalServer
{
    Q_OBJECT

public:
    static constexpr int kMostConnections = 32;
    static constexpr qint64 kReadBuffer = 65536; ///< more than any notification has

    static constexpr char kShow[] = "show";

    using QLocalServer::QLocalServer;

    bool hasPendingConnections() const override;

    /// The oldest connection that nobody has taken yet, or null. It may be closed already and
    /// still hold what its peer has said.
    QLocalSocket* nextPendingConnection() override;

    /// Whether the peer of a connection of this class is trusted, as it was when it connected
    /// (isTrustedPeer(); the user is platform().peerUser).
    static bool isTrusted(const QLocalSocket& connection);

signals:
    void showWanted();

protected:
    void incomingConnection(quintptr descriptor) override;

private:
    void dropSurplus();
    void lookForShow(QLocalSocket* connection);

    QList<QLocalSocket*> m_open;    ///< all, oldest first
    QList<QLocalSocket*> m_pending; ///< those of them that nobody has taken
    bool m_surplusLogged = false;
};
