#include "orch/ReplyFacts.h"

#include <QNetworkReply>

int httpStatus(const QNetworkReply* reply)
{
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

QByteArray replyBody(QNetworkReply* reply)
{
    return reply->isOpen() ? reply->readAll() : QByteArray();
}
