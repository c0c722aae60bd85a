#pragma once

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QUrl>
#include <QVariant>

class QNetworkAccessManager;
class QNetworkReply;

/// One HTTP exchange with a lookup server or an orchestrator, described by values.
struct OrchRequest
{
    enum class Method { Get, Post, Put };

    Method method = Method::Get;
    QUrl url;
    /// In sending order, "Content-Type" included. An empty value is sent as an empty header.
    QList<QPair<QByteArray, QByteArray>> headers;
    QByteArray body; ///< ignored by Get
    /// Longest time without any data in either direction, in milliseconds; 0 for no bound.
    int timeoutMs = 40000;
    /// Longest time for the whole exchange, in milliseconds, so that a server that sends a byte
    /// now and then holds nobody up; 0 for none, as for a document of any size.
    int deadlineMs = 40000;
    /// The sender's own mark, not sent: comes back as QNetworkRequest::User of the reply.
    QVariant userData = {};
};

/// The longest body that is received.
constexpr qint64 kMostReplyBytes = 128 << 20;

/// Sends the request and returns its reply, which belongs to the manager until the receiver of
/// its finished signal releases it. Always finishes asynchronously: also an address that is
/// empty, malformed or neither http nor https only leads to a reply with a network error.
/// Redirects are not followed: a 3xx answer is the answer. A time-out, a passed deadline and more
/// than kMostReplyBytes finish the reply with QNetworkReply::OperationCanceledError. Call on the
/// manager's thread.
QNetworkReply* sendOrchRequest(QNetworkAccessManager& manager, const OrchRequest& request);
