#include "orch/OrchRequest.h"

#include <QCoreApplication>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>

namespace {

/// A line break in a value (a token is whatever a server once sent) would start another header.
QByteArray headerValue(const QByteArray& value)
{
    QByteArray line(""); // not null: a null value would remove the header
    for (const char c : value) {
        if (c != '\r' && c != '\n' && c != '\0')
            line += c;
    }
    return line;
}

/// Servers hand out addresses; "file" or "data" ones must not reach the manager's other backends.
QUrl httpUrl(const QUrl& url)
{
    const QString scheme = url.scheme();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https") ? url : QUrl();
}

QNetworkReply* start(QNetworkAccessManager& manager, const QNetworkRequest& network,
                     const OrchRequest& request, QIODevice* content)
{
    switch (request.method) {
    case OrchRequest::Method::Post:
        return manager.post(network, request.body);
    case OrchRequest::Method::Put:
        return content ? manager.put(network, content) : manager.put(network, request.body);
    case OrchRequest::Method::Get:
        break;
    }
    return manager.get(network);
}

} // namespace

QNetworkAccessManager* makeAccessManager(QObject* parent)
{
    // The first manager of the process looks for the engines, here where there are none.
    static const bool engineless = [] {
        const QStringList paths = QCoreApplication::libraryPaths();
        QCoreApplication::setLibraryPaths({});
        const QNetworkAccessManager first;
        QCoreApplication::setLibraryPaths(paths);
        return true;
    }();
    Q_UNUSED(engineless)
    return new QNetworkAccessManager(parent);
}

QNetworkReply* sendOrchRequest(QNetworkAccessManager& manager, const OrchRequest& request,
                               QIODevice* content)
{
    QNetworkRequest network(httpUrl(request.url));
    network.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::ManualRedirectPolicy);
    network.setAttribute(QNetworkRequest::User, request.userData);
    network.setTransferTimeout(request.timeoutMs);
    for (const auto& header : request.headers)
        network.setRawHeader(header.first, headerValue(header.second));

    QNetworkReply* const reply = start(manager, network, request, content);
    if (request.deadlineMs > 0) {
        auto* deadline = new QTimer(reply); // goes with the reply
        deadline->setSingleShot(true);
        QObject::connect(deadline, &QTimer::timeout, reply, &QNetworkReply::abort);
        deadline->start(request.deadlineMs);
    }
    // Nobody reads before the end: what is available is all that has come, unpacked.
    const qint64 most = request.mostBytes;
    QObject::connect(reply, &QNetworkReply::readyRead, reply, [reply, most] {
        if (reply->bytesAvailable() <= most)
            return;
        qWarning("A reply of more than %lld bytes is not taken", most);
        reply->setProperty(OrchReply::kTooLong, true);
        reply->abort();
    });
    return reply;
}

QNetworkReply* sendOrchRequest(QNetworkAccessManager& manager, const OrchRequest& request,
                               const OrchReplyFunc& done)
{
    QNetworkReply* const reply = sendOrchRequest(manager, request);
    QObject::connect(reply, &QNetworkReply::finished, reply, [reply, done] {
        reply->deleteLater();
        done(OrchReply::read(reply));
    });
    return reply;
}
