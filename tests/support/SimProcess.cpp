#include "support/SimProcess.h"

#include "support/Wait.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>

namespace support {

SimProcess::~SimProcess()
{
    if (m_process)
        m_process->end(true);
}

bool SimProcess::start(const QString& programFolder)
{
    QFile ready(programFolder + QStringLiteral("/simulator.json"));
    ready.remove();
    m_process = std::make_unique<ChildProcess>();
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process->start(QStringLiteral(VELTARO_BUILT_SIMULATOR),
                     {QStringLiteral("--port-file"), ready.fileName(),
                      QStringLiteral("--datapath-dir"), programFolder});
    // The file appears at once and whole.
    if (!waitFor([&] {
            return ready.open(QIODevice::ReadOnly) || m_process->state() == QProcess::NotRunning;
        }))
        return false;
    m_addresses = QJsonDocument::fromJson(ready.readAll()).object();
    return !m_addresses.isEmpty();
}

QProcessEnvironment SimProcess::clientVariables() const
{
    QProcessEnvironment variables;
    variables.insert(QStringLiteral("VELTARO_LOOKUP_PRIMARY"),
                     m_addresses.value(QLatin1String("lookupPrimary")).toString());
    variables.insert(QStringLiteral("VELTARO_LOOKUP_BACKUP"),
                     m_addresses.value(QLatin1String("lookupBackup")).toString());
    return variables;
}

QString SimProcess::controlPage() const
{
    return m_addresses.value(QLatin1String("control")).toString();
}

QByteArray SimProcess::exchange(const QByteArray& verb, const QString& path, const QByteArray& body)
{
    QNetworkRequest request(QUrl(controlPage() + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    const std::unique_ptr<QNetworkReply> reply(m_network.sendCustomRequest(request, verb, body));
    const bool answered =
        waitFor([&] { return reply->isFinished(); }) && reply->error() == QNetworkReply::NoError;
    return answered ? reply->readAll() : QByteArray();
}

QJsonObject SimProcess::state()
{
    return QJsonDocument::fromJson(exchange("GET", QStringLiteral("sim/state"), QByteArray()))
        .object();
}

bool SimProcess::command(const QJsonObject& members)
{
    const QByteArray body = QJsonDocument(members).toJson(QJsonDocument::Compact);
    const QByteArray answer = exchange("POST", QStringLiteral("sim/switch"), body);
    return QJsonDocument::fromJson(answer).object().value(QLatin1String("ok")).toBool();
}

bool SimProcess::replaceBody(const QString& path, const QByteArray& body)
{
    const QJsonObject fault{{QStringLiteral("path"), path},
                            {QStringLiteral("bodyBase64"), QString::fromLatin1(body.toBase64())}};
    return command({{QStringLiteral("fault"), fault}});
}

bool SimProcess::reset()
{
    return command({{QStringLiteral("clearFaults"), true},
                    {QStringLiteral("resetDatapath"), true},
                    {QStringLiteral("clear"), true}});
}

bool SimProcess::enter(const QString& situation)
{
    return command({{QStringLiteral("situation"), situation}});
}

SimAccount SimProcess::account()
{
    const QJsonObject first = state().value(QLatin1String("accounts")).toArray().first().toObject();
    return {first.value(QLatin1String("customer")).toString(),
            first.value(QLatin1String("username")).toString(),
            first.value(QLatin1String("password")).toString()};
}

QStringList SimProcess::violations()
{
    const QJsonValue list = state().value(QLatin1String("violations"));
    if (!list.isArray())
        return {QStringLiteral("the simulated service does not answer")};
    QStringList result;
    const QJsonArray texts = list.toArray();
    for (const QJsonValue& text : texts)
        result.append(text.toString());
    return result;
}

QList<QJsonObject> SimProcess::requests(const QString& path)
{
    QList<QJsonObject> result;
    const QJsonArray all = state().value(QLatin1String("requests")).toArray();
    for (const QJsonValue& request : all) {
        if (request.toObject().value(QLatin1String("path")).toString() == path)
            result.append(request.toObject());
    }
    return result;
}

} // namespace support
