#include "sim/ControlPage.h"

#include "sim/Behaviour.h"
#include "sim/Commands.h"
#include "sim/Situations.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QUrlQuery>

#include <algorithm>

namespace sim {

namespace {

constexpr int kRequestsListed = 500;

QJsonArray accountsJson(const Simulator& simulator, const Scenario& scenario)
{
    QJsonArray accounts;
    for (const Account& account : scenario.accounts)
        accounts.append(
            QJsonObject{{QStringLiteral("customer"), account.customer},
                        {QStringLiteral("customerId"), account.customerId},
                        {QStringLiteral("username"), account.username},
                        {QStringLiteral("password"), account.password},
                        {QStringLiteral("remark"), account.remark()},
                        {QStringLiteral("sentCode"), simulator.sentCode(account.username)},
                        {QStringLiteral("totp"), simulator.totp(account.username)},
                        {QStringLiteral("asksForDevice"),
                         simulator.deviceRequests().contains(account.username)}});
    return accounts;
}

QJsonArray sessionsJson(const Simulator& simulator)
{
    QJsonArray sessions;
    for (const Session& session : simulator.sessions())
        sessions.append(QJsonObject{
            {QStringLiteral("username"), session.username},
            {QStringLiteral("customerId"), session.customerId},
            {QStringLiteral("serial"), session.serial},
            {QStringLiteral("token"), session.token},
            {QStringLiteral("valid"), session.valid},
            {QStringLiteral("connected"), session.connected},
            {QStringLiteral("heartbeats"), session.heartbeats},
            {QStringLiteral("lastSeen"), session.lastSeen.toString(Qt::ISODateWithMs)}});
    return sessions;
}

QJsonArray situationsJson()
{
    QJsonArray names;
    for (const Situation& situation : situations())
        names.append(QJsonObject{{QStringLiteral("group"), situation.group},
                                 {QStringLiteral("name"), situation.name}});
    return names;
}

QJsonObject requestJson(const RequestRecord& request)
{
    QJsonObject headers;
    for (const auto& [name, value] : request.headers)
        headers.insert(QString::fromLatin1(name), QString::fromUtf8(value));
    return {{QStringLiteral("server"), endName(request.end)},
            {QStringLiteral("method"), QString::fromLatin1(request.method)},
            {QStringLiteral("path"), QString::fromUtf8(request.path)},
            {QStringLiteral("query"), QString::fromUtf8(request.query)},
            {QStringLiteral("headers"), headers},
            {QStringLiteral("body"), QString::fromUtf8(request.body)},
            {QStringLiteral("time"), request.time.toString(Qt::ISODateWithMs)}};
}

QJsonObject behaviourJson(const QString& directory)
{
    QJsonObject json;
    const Behaviour behaviour = readBehaviour(directory);
    for (auto it = behaviour.begin(); it != behaviour.end(); ++it)
        json.insert(it.key(), it.value());
    return json;
}

QJsonObject faultsJson(const Scenario& scenario)
{
    QJsonObject json;
    for (auto it = scenario.faults.begin(); it != scenario.faults.end(); ++it)
        json.insert(it.key(), it->toJson());
    return json;
}

HttpReply refused(const QStringList& names)
{
    HttpReply reply = jsonReply({{QStringLiteral("ok"), false},
                                 {QStringLiteral("refused"), QJsonArray::fromStringList(names)}});
    reply.status = 400;
    return reply;
}

} // namespace

ControlPage::ControlPage(Simulator& simulator) : m_simulator(simulator) {}

ControlPage::~ControlPage()
{
    stop();
}

bool ControlPage::start(int port)
{
    return m_http.start(port, [this](const HttpCall& call) { return serve(call); });
}

void ControlPage::stop()
{
    m_http.stop();
}

QString ControlPage::url() const
{
    return QStringLiteral("http://127.0.0.1:%1/").arg(m_http.port());
}

QJsonObject ControlPage::state(int lastRequests) const
{
    const Scenario scenario = m_simulator.scenario();
    const QList<RequestRecord> requests = m_simulator.requests();
    QJsonArray shown;
    for (int i = std::max(0, requests.size() - lastRequests); i < requests.size(); ++i)
        shown.append(requestJson(requests.at(i)));
    QJsonObject counts;
    for (const RequestRecord& request : requests) {
        const QString path = QString::fromUtf8(request.path);
        counts.insert(path, counts.value(path).toInt() + 1);
    }
    const QString directory = m_simulator.datapathDirectory();
    return {{QStringLiteral("lookupPrimary"), m_simulator.primaryUrl()},
            {QStringLiteral("lookupBackup"), m_simulator.backupUrl()},
            {QStringLiteral("orchestrator"), m_simulator.orchRoot()},
            {QStringLiteral("accounts"), accountsJson(m_simulator, scenario)},
            {QStringLiteral("clients"), sessionsJson(m_simulator)},
            {QStringLiteral("violations"), QJsonArray::fromStringList(m_simulator.violations())},
            {QStringLiteral("requests"), shown},
            {QStringLiteral("counts"), counts},
            {QStringLiteral("situations"), situationsJson()},
            {QStringLiteral("faults"), faultsJson(scenario)},
            {QStringLiteral("scenario"), scenario.toJson()},
            {QStringLiteral("datapath"), behaviourJson(directory)},
            {QStringLiteral("scriptCalls"), QJsonArray::fromStringList(scriptCalls(directory))}};
}

QStringList ControlPage::carryOut(const QJsonObject& command)
{
    return sim::carryOut(m_simulator, command);
}

HttpReply ControlPage::serve(const HttpCall& call)
{
    if (call.method == "GET" && call.path() == "/") {
        HttpReply page;
        page.body = controlHtml();
        page.contentType = "text/html; charset=utf-8";
        return page;
    }
    if (call.method == "GET" && call.path() == "/sim/state") {
        const QUrlQuery query(QString::fromLatin1(call.query()));
        const QString last = query.queryItemValue(QStringLiteral("last"));
        return jsonReply(state(last.isEmpty() ? kRequestsListed : last.toInt()));
    }
    if (call.method == "POST" && call.path() == "/sim/switch") {
        const QJsonDocument command = QJsonDocument::fromJson(call.body);
        if (!command.isObject())
            return refused({QStringLiteral("body")});
        const QStringList notDone = carryOut(command.object());
        return notDone.isEmpty() ? jsonReply({{QStringLiteral("ok"), true}}) : refused(notDone);
    }
    HttpReply missing;
    missing.status = 404;
    return missing;
}

} // namespace sim
