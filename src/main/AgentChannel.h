#pragma once

#include "main/AgentText.h"

#include <QObject>
#include <QPointer>

class LocalServer;
class QLocalSocket;

/// The datapath agent's notifications, read from the local server that also guards the single
/// instance. Each read is one text; there is no length prefix and no delimiter.
///
/// The socket is open to every local user. LocalServer bounds what connections may take; this
/// class bounds what their texts may do:
///  - only texts of root's and the own user's processes count for an attempt or a session: the
///    dispatch port, the ready notice, and the disconnect notice, which ends the session. The
///    agent runs as root, or as the user in a development set-up; what the own user's processes
///    say is taken, because they could end the client as well.
///  - another user's texts may bring the notices about the host firewall, which lead to a prompt
///    and a log line and to nothing else; they are not logged themselves.
///  - what is repeated is taken out (AgentTextFilter).
/// GUI thread.
class AgentChannel : public QObject
{
    Q_OBJECT

public:
    explicit AgentChannel(LocalServer* server, QObject* parent = nullptr);

public slots:
    /// Takes every connection that waits and reads what it already holds. Called once by the owner
    /// when it listens to said(), for those that came before; from then on by the server's signal.
    void onSingleSocketConnect();

signals:
    /// A text that was not dropped, and what it says.
    void said(const QString& text, const AgentText& what);

private slots:
    void onSingleSocketRead();

private:
    void readFrom(QLocalSocket& connection);

    QPointer<LocalServer> m_server;
    AgentTextFilter m_filter;
};
