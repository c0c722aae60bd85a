#pragma once

#include <QByteArray>

class QNetworkReply;

/// The HTTP status of a finished reply; 0 when there is none, as after a network error.
int httpStatus(const QNetworkReply* reply);

/// Everything a reply holds, empty when it is no longer open.
QByteArray replyBody(QNetworkReply* reply);
