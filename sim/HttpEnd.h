#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>

#include <functional>
#include <memory>

namespace sim {

/// One request as it came over the wire.
struct HttpCall
{
    QByteArray method;
    QByteArray target;                            ///< path and query, still percent-encoded
    QList<QPair<QByteArray, QByteArray>> headers; ///< names in lower case
    QByteArray body;

    /// The part of the target before "?".
    QByteArray path() const;
    /// The part of the target after "?"; empty when there is none.
    QByteArray query() const;
    /// The value of a header, null when it is absent.
    QByteArray header(const QByteArray& lowerCaseName) const;
};

/// What goes back.
struct HttpReply
{
    int status = 200;
    QByteArray body;
    QByteArray contentType = "application/json";
    QList<QPair<QByteArray, QByteArray>> headers;
    int trickleMs = 0;      ///< when above 0, the wait after each byte of the body
    qint64 fillerBytes = 0; ///< when above 0, this many bytes of filler replace the body
    bool drop = false;      ///< close the connection without a single byte
};

/// One HTTP server on 127.0.0.1 with its own threads. It closes each connection after one
/// exchange, so that stopping is immediate and no request ever meets a connection that has just
/// gone stale.
class HttpEnd
{
public:
    using Handler = std::function<HttpReply(const HttpCall&)>;

    HttpEnd();
    ~HttpEnd();

    /// Listens on `port`, or on a free one when it is 0, and serves every method and path with
    /// `handler`, which runs on several threads at once. False when the port is taken.
    bool start(int port, const Handler& handler);

    /// Stops serving and waits for the requests under way. The port is free afterwards.
    void stop();

    bool running() const;

    /// The port last listened on, 0 before the first start.
    int port() const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace sim
