#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QNetworkReply>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

/// A finished exchange with a lookup server or an orchestrator, read once: what handlers, texts
/// and the log go by instead of the network reply itself.
class OrchReply
{
public:
    OrchReply() = default;
    explicit OrchReply(const QByteArray& received, int httpStatus = 200,
                       QNetworkReply::NetworkError networkError = QNetworkReply::NoError,
                       const QString& errorText = {});

    /// Reads a finished reply, which stays its owner's. One that was broken off because its body is
    /// longer than OrchRequest::mostBytes has no body, and is an UnknownContentError with a text of
    /// its own: to the network layer it looks like a time-out.
    static OrchReply read(QNetworkReply* reply);

    /// The reply's property that says so.
    static constexpr char kTooLong[] = "tooLong";

    QByteArray body; ///< everything that has arrived, possibly nothing
    int status = 0;  ///< HTTP status, 0 when none has arrived
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QString errorString;        ///< in one line; an address in it has lost its query
    QVariant userData;          ///< OrchRequest::userData of the request
    bool logfileWanted = false; ///< the header "orch-logfile" asks for a diagnosis bundle

    /// The body's top-level object, empty when there is none. Parsed when first asked for.
    const QJsonObject& json() const;

    /// The body's "code", 0 when it names none.
    int code() const;

    /// The exchange came to its end with HTTP status 200.
    bool answered() const;

    /// answered(), and the body names neither a "code" other than 0 nor a non-empty "errorInfo"
    /// object. A body that is not JSON names neither.
    bool succeeded() const;

    /// Error string, status and body in one line for the log, secrets masked.
    QString logText() const;

private:
    mutable std::optional<QJsonObject> m_json;
};

/// Receives a finished exchange.
using OrchReplyFunc = std::function<void(const OrchReply&)>;
