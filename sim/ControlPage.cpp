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
            QJsonObject{{"customer", account.customer},
                        {"customerId", account.customerId},
                        {"username", account.username},
                        {"password", account.password},
                        {"remark", account.remark()},
                        {"sentCode", simulator.sentCode(account.username)},
                        {"totp", simulator.totp(account.username)},
                        {"asksForDevice", simulator.deviceRequests().contains(account.username)}});
    return accounts;
}

QJsonArray sessionsJson(const Simulator& simulator)
{
    QJsonArray sessions;
    for (const Session& session : simulator.sessions())
        sessions.append(QJsonObject{{"username", session.username},
                                    {"customerId", session.customerId},
                                    {"serial", session.serial},
                                    {"token", session.token},
                                    {"valid", session.valid},
                                    {"connected", session.connected},
                                    {"heartbeats", session.heartbeats},
                                    {"lastSeen", session.lastSeen.toString(Qt::ISODateWithMs)}});
    return sessions;
}

QJsonArray situationsJson()
{
    QJsonArray names;
    for (const Situation& situation : situations())
        names.append(QJsonObject{{"group", situation.group}, {"name", situation.name}});
    return names;
}

QJsonObject requestJson(const RequestRecord& request)
{
    QJsonObject headers;
    for (const auto& [name, value] : request.headers)
        headers.insert(QString::fromLatin1(name), QString::fromUtf8(value));
    return {{"server", endName(request.end)},
            {"method", QString::fromLatin1(request.method)},
            {"path", QString::fromUtf8(request.path)},
            {"query", QString::fromUtf8(request.query)},
            {"headers", headers},
            {"body", request.method == "PUT" ? QString("(%1 bytes)").arg(request.body.size())
                                             : QString::fromUtf8(request.body)},
            {"time", request.time.toString(Qt::ISODateWithMs)}};
}

QJsonObject bundleJson(const Bundle& bundle)
{
    return {{"name", bundle.name},
            {"bytes", bundle.content.size()},
            {"trigger", bundle.trigger},
            {"files", QJsonArray::fromStringList(bundle.files)},
            {"report", bundle.report}};
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
    HttpReply reply = jsonReply({{"ok", false}, {"refused", QJsonArray::fromStringList(names)}});
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
    return {{"lookupPrimary", m_simulator.primaryUrl()},
            {"lookupBackup", m_simulator.backupUrl()},
            {"orchestrator", m_simulator.orchRoot()},
            {"accounts", accountsJson(m_simulator, scenario)},
            {"clients", sessionsJson(m_simulator)},
            {"violations", QJsonArray::fromStringList(m_simulator.violations())},
            {"requests", shown},
            {"counts", counts},
            {"bundle", bundleJson(m_simulator.bundle())},
            {"situations", situationsJson()},
            {"faults", faultsJson(scenario)},
            {"scenario", scenario.toJson()},
            {"datapath", behaviourJson(directory)},
            {"scriptCalls", QJsonArray::fromStringList(scriptCalls(directory))}};
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
    if (call.method == "GET" && call.path() == "/sim/bundle") {
        const Bundle bundle = m_simulator.bundle();
        HttpReply file;
        file.body = bundle.content;
        file.contentType = "application/gzip";
        const QString disposition = "attachment; filename=" + bundle.name;
        file.headers.append({"Content-Disposition", disposition.toUtf8()});
        return file;
    }
    if (call.method == "GET" && call.path() == "/sim/state") {
        const QUrlQuery query(QString::fromLatin1(call.query()));
        const QString last = query.queryItemValue("last");
        return jsonReply(state(last.isEmpty() ? kRequestsListed : last.toInt()));
    }
    if (call.method == "POST" && call.path() == "/sim/switch") {
        const QJsonDocument command = QJsonDocument::fromJson(call.body);
        if (!command.isObject())
            return refused({"body"});
        const QStringList notDone = carryOut(command.object());
        return notDone.isEmpty() ? jsonReply({{"ok", true}}) : refused(notDone);
    }
    HttpReply missing;
    missing.status = 404;
    return missing;
}

} // namespace sim
