#pragma once

#include "orch/OrchReply.h"

#include <QByteArray>
#include <QList>
#include <QPair>
#include <QUrl>
#include <QVariant>

class QIODevice;
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
    /// now and then does not hold its client up for ever; 0 for none, as for a document of any
    /// size. Far above what a slow line needs for an answer.
    int deadlineMs = 600000;
    /// The longest body that is received, in bytes.
    qint64 mostBytes = 128 << 20;
    /// The sender's own mark, not sent: comes back as QNetworkRequest::User of the reply.
    QVariant userData = {};
};

/// What sends requests; without a parent it is the caller's. All of the program are made here. Qt's
/// network engines are left out: loading them costs 10 ms, they ask the system's bus about every
/// change of the network, and while they hold the machine for offline no request would be sent.
/// Any thread, which the manager then belongs to.
QNetworkAccessManager* makeAccessManager(QObject* parent);

/// Sends the request and returns its reply, which belongs to the manager until the receiver of
/// its finished signal releases it. Always finishes asynchronously: also an address that is
/// empty, malformed or neither http nor https only leads to a reply with a network error.
/// Redirects are not followed: a 3xx answer is the answer. A time-out, a passed deadline and too
/// long a body finish the reply with QNetworkReply::OperationCanceledError; OrchReply tells the
/// last from the others. Call on the manager's thread.
///
/// `content`, where there is one, is what a Put sends in place of the body: an open device of a
/// known size that outlives the exchange.
QNetworkReply* sendOrchRequest(QNetworkAccessManager& manager, const OrchRequest& request,
                               QIODevice* content = nullptr);

/// The same; once it has finished, the reply is read, released, and handed to `done`. What is
/// returned is good for breaking the exchange off, which calls `done` at once.
QNetworkReply* sendOrchRequest(QNetworkAccessManager& manager, const OrchRequest& request,
                               const OrchReplyFunc& done);
