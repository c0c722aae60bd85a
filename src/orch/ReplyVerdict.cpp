#include "orch/ReplyVerdict.h"

#include "orch/JsonUtil.h"

bool replySucceeded(QNetworkReply::NetworkError error, int status, const QByteArray& body)
{
    // A connection that is lost in mid-body leaves status 200 behind, with half an answer.
    if (error != QNetworkReply::NoError || status != 200)
        return false;
    const QJsonObject object = JsonUtil::object(body);
    return JsonUtil::getInt(object, QStringLiteral("code"), 0) == 0 &&
           JsonUtil::getObject(object, QStringLiteral("errorInfo")).isEmpty();
}
