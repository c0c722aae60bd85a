#pragma once

#include <QList>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>

/// A server on loopback that answers whole HTTP requests with raw bytes, then closes; so a test
/// can also send what no proper server would.
class RawServer : public QTcpServer
{
public:
    struct Request
    {
        QByteArray head;
        QByteArray body;

        QByteArray path() const { return head.split(' ').value(1); }
        QByteArray header(const QByteArray& name) const
        {
            for (const QByteArray& line : head.split('\n')) {
                if (line.toLower().startsWith(name.toLower() + ':'))
                    return line.mid(name.size() + 1).trimmed();
            }
            return QByteArray();
        }
    };

    /// What to answer; empty bytes drop the connection without an answer.
    std::function<QByteArray(const Request&)> answer = [](const Request&) {
        return http(200, "{}");
    };
    /// While set, connections are kept open without an answer.
    bool silent = false;
    QList<Request> requests;

    RawServer()
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* socket = nextPendingConnection()) {
                connect(socket, &QTcpSocket::readyRead, this, [this, socket] { read(socket); });
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
    }

    QString url(const QString& path) const
    {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(serverPort()).arg(path);
    }

    static QByteArray http(int status, const QByteArray& body, const QByteArray& headers = {})
    {
        return "HTTP/1.1 " + QByteArray::number(status) +
               " Answer\r\nContent-Length: " + QByteArray::number(body.size()) +
               "\r\nConnection: close\r\n" + headers + "\r\n" + body;
    }

private:
    void read(QTcpSocket* socket)
    {
        const QByteArray received = socket->peek(1 << 20);
        const int end = received.indexOf("\r\n\r\n");
        const Request request{received.left(end), received.mid(end + 4)};
        if (end < 0 || request.body.size() < request.header("Content-Length").toInt())
            return;
        socket->readAll();
        requests.append(request);
        if (silent)
            return;
        const QByteArray bytes = answer(request);
        if (bytes.isEmpty())
            return socket->abort();
        socket->write(bytes);
        socket->disconnectFromHost();
    }
};
