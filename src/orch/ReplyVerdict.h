#pragma once

#include <QByteArray>
#include <QNetworkReply>

/// Whether a finished request succeeded: it was transferred without network error, its HTTP
/// status is 200, and its body names neither a "code" other than 0 nor a non-empty "errorInfo"
/// object. A body that is not JSON names neither. Pure; parses the body once, and only when the
/// transfer and the status leave the question open.
bool replySucceeded(QNetworkReply::NetworkError error, int status, const QByteArray& body);
