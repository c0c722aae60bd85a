#include "sim/Commands.h"

#include "sim/Behaviour.h"
#include "sim/Situations.h"

#include <QHash>
#include <QJsonArray>

#include <optional>

namespace sim {

namespace {

/// What a member of a command does with its value; false when it cannot.
using Action = bool (*)(Simulator& simulator, const QJsonValue& value);

template <void (Simulator::*Member)()>
bool call(Simulator& simulator, const QJsonValue&)
{
    (simulator.*Member)();
    return true;
}

bool resetDatapath(Simulator& simulator, const QJsonValue&)
{
    const QString directory = simulator.datapathDirectory();
    return !directory.isEmpty() && writeBehaviour(directory, {});
}

bool beWell(Simulator& simulator, const QJsonValue&)
{
    simulator.clearFaults();
    simulator.cancelOrders();
    simulator.edit([](Scenario& scenario) {
        const QVector<Account> accounts = scenario.accounts;
        const QByteArray filter = scenario.filterDocument;
        scenario = Scenario();
        scenario.accounts = accounts;
        scenario.filterDocument = filter;
    });
    resetDatapath(simulator, {});
    for (End end : {End::LookupPrimary, End::LookupBackup, End::Orchestrator}) {
        if (!simulator.isRunning(end))
            simulator.startEnd(end);
    }
    return true;
}

// A situation replaces the one before; sessions stay.
bool enter(Simulator& simulator, const QJsonValue& situation)
{
    const QJsonObject command = situationCommand(situation.toString());
    return !command.isEmpty() && beWell(simulator, {}) && carryOut(simulator, command).isEmpty();
}

bool setFault(Simulator& simulator, const QJsonValue& fault)
{
    const QString path = fault["path"].toString();
    simulator.setFault(path, Fault::fromJson(fault.toObject()));
    return !path.isEmpty();
}

bool setFaults(Simulator& simulator, const QJsonValue& faults)
{
    bool done = faults.isArray();
    for (const QJsonValue fault : faults.toArray())
        done = setFault(simulator, fault) && done;
    return done;
}

/// What the login of one account wants from now on.
bool changeAccount(Simulator& simulator, const QJsonValue& change)
{
    using Factor = Account::Factor;
    using DeviceRule = Account::DeviceRule;
    static const QHash<QString, Factor> factors{
        {"none", Factor::None}, {"sms", Factor::Sms}, {"authenticator", Factor::Authenticator}};
    static const QHash<QString, DeviceRule> rules{{"any", DeviceRule::Any},
                                                  {"ask", DeviceRule::AskWithToken},
                                                  {"hand", DeviceRule::AskWithoutToken}};
    bool found = false;
    simulator.edit([&](Scenario& scenario) {
        for (Account& account : scenario.accounts) {
            if (account.username != change["username"].toString())
                continue;
            found = true;
            account.otpBound = account.otpBound && !change.toObject().contains("factor");
            account.factor = factors.value(change["factor"].toString(), account.factor);
            account.deviceRule = rules.value(change["device"].toString(), account.deviceRule);
            account.mustChangePassword = change["mustChange"].toBool(account.mustChangePassword);
            account.approvalPolls = change["approval"].toInt(account.approvalPolls);
        }
    });
    return found;
}

bool generateFilter(Simulator& simulator, const QJsonValue& size)
{
    const QByteArray document = makeFilterDocument(
        size["inclusive"].toInt(), size["exclusive"].toInt(), size["duplicates"].toInt());
    simulator.edit([&](Scenario& scenario) { scenario.filterDocument = document; });
    return true;
}

bool order(Simulator& simulator, const QJsonValue& members)
{
    simulator.order(members.toObject());
    return members.isObject();
}

bool revoke(Simulator& simulator, const QJsonValue& reason)
{
    simulator.revokeSessions(reason.toInt(-1));
    return reason.isDouble();
}

bool changeDatapath(Simulator& simulator, const QJsonValue& value)
{
    const QString directory = simulator.datapathDirectory();
    if (directory.isEmpty())
        return false;
    const QJsonObject changes = value.toObject();
    Behaviour behaviour = readBehaviour(directory);
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        if (it.value().isNull())
            behaviour.remove(it.key());
        else
            behaviour.insert(it.key(), it.value().toVariant().toString());
    }
    return writeBehaviour(directory, behaviour);
}

bool killDatapath(Simulator& simulator, const QJsonValue&)
{
    return crashDatapath(simulator.datapathDirectory());
}

std::optional<End> endNamed(const QJsonValue& name)
{
    for (End end : {End::LookupPrimary, End::LookupBackup, End::Orchestrator}) {
        if (name == endName(end))
            return end;
    }
    return {};
}

bool stop(Simulator& simulator, const QJsonValue& name)
{
    const std::optional<End> end = endNamed(name);
    if (end)
        simulator.stopEnd(*end);
    return end.has_value();
}

bool start(Simulator& simulator, const QJsonValue& name)
{
    const std::optional<End> end = endNamed(name);
    return end && simulator.startEnd(*end);
}

const QHash<QString, Action>& actions()
{
    static const QHash<QString, Action> table{
        {"situation", enter},
        {"well", beWell},
        {"fault", setFault},
        {"faults", setFaults},
        {"clearFaults", call<&Simulator::clearFaults>},
        {"filterSize", generateFilter},
        {"order", order},
        {"revoke", revoke},
        {"datapath", changeDatapath},
        {"resetDatapath", resetDatapath},
        {"crashDatapath", killDatapath},
        {"stop", stop},
        {"start", start},
        {"account", changeAccount},
        {"clear", call<&Simulator::clear>},
    };
    return table;
}

} // namespace

QStringList carryOut(Simulator& simulator, const QJsonObject& command)
{
    QStringList notDone;
    for (auto it = command.begin(); it != command.end(); ++it) {
        const Action action = actions().value(it.key());
        if (it.key() == "scenario")
            simulator.edit([&](Scenario& s) { notDone += s.apply(it.value().toObject()); });
        else if (!action || !action(simulator, it.value()))
            notDone.append(it.key());
    }
    return notDone;
}

} // namespace sim
