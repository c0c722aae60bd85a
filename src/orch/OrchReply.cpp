#include "orch/OrchReply.h"

#include "orch/JsonUtil.h"
#include "orch/MaskSecrets.h"
#include "orch/TextUtil.h"

#include <QCoreApplication>

OrchReply::OrchReply(const QByteArray& received, int httpStatus,
                     QNetworkReply::NetworkError networkError, const QString& errorText)
    : body(received), status(httpStatus), error(networkError), errorString(errorText)
{
}

OrchReply OrchReply::read(QNetworkReply* reply)
{
    OrchReply result;
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.userData = reply->request().attribute(QNetworkRequest::User);
    if (reply->property(kTooLong).toBool()) {
        result.error = QNetworkReply::UnknownContentError;
        result.errorString =
            QCoreApplication::translate("OrchReply", "The server's reply is too large.");
        return result;
    }
    if (reply->isOpen())
        result.body = reply->readAll();
    result.error = reply->error();
    // The error string names the address, and a query may carry an identifier.
    QString text = reply->errorString();
    if (reply->url().hasQuery())
        text.replace(reply->url().toString(), reply->url().toString(QUrl::RemoveQuery));
    result.errorString = Util::oneLine(text);
    result.logfileWanted = !reply->rawHeader("orch-logfile").isEmpty();
    return result;
}

const QJsonObject& OrchReply::json() const
{
    if (!m_json)
        m_json = JsonUtil::object(body);
    return *m_json;
}

int OrchReply::code() const
{
    return JsonUtil::getInt(json(), QStringLiteral("code"), 0);
}

bool OrchReply::answered() const
{
    // A connection that is lost in mid-body leaves status 200 behind, with half an answer.
    return error == QNetworkReply::NoError && status == 200;
}

bool OrchReply::succeeded() const
{
    return answered() && code() == 0 &&
           JsonUtil::getObject(json(), QStringLiteral("errorInfo")).isEmpty();
}

QString OrchReply::logText() const
{
    return errorString + QStringLiteral(" statuscode ") + QString::number(status) +
           QStringLiteral(" orch return text ") + maskSecrets(body);
}
