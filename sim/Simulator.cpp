#include "sim/Simulator.h"

#include "sim/Behaviour.h"
#include "sim/Route.h"
#include "sim/Totp.h"

#include <QJsonDocument>

#include <array>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace sim {

namespace {

constexpr char kLookupPath[] = "/api/mobile/v1/orchinfo";
constexpr char kAuthPath[] = "/api/mobile/v2/auth";
// A client that runs for days must not fill the simulator's memory.
constexpr int kRequestsKept = 5000;

HttpReply faultReply(const Fault& fault)
{
    HttpReply reply;
    reply.status = fault.status == 0 ? 200 : fault.status;
    reply.body = fault.body;
    reply.drop = fault.drop;
    reply.fillerBytes = fault.hugeBytes;
    reply.trickleMs = fault.trickleMs;
    if (!fault.redirect.isEmpty()) {
        reply.status = fault.status == 0 ? 302 : fault.status;
        reply.headers.append({"Location", fault.redirect.toUtf8()});
    }
    return reply;
}

Call parse(End end, const HttpCall& received)
{
    Call call;
    static_cast<HttpCall&>(call) = received;
    call.end = end;
    call.json = QJsonDocument::fromJson(received.body).object();
    return call;
}

std::vector<Route> orchestratorRoutes()
{
    std::vector<Route> all;
    for (const auto& group :
         {loginRoutes(), accountRoutes(), sessionRoutes(), resourceRoutes(), diagnosisRoutes()})
        all.insert(all.end(), group.begin(), group.end());
    return all;
}

} // namespace

QByteArray RequestRecord::header(const QByteArray& lowerCaseName) const
{
    for (const auto& [name, value] : headers) {
        if (name == lowerCaseName)
            return value;
    }
    return {};
}

QJsonObject RequestRecord::json() const
{
    return QJsonDocument::fromJson(body).object();
}

struct Simulator::Private
{
    mutable std::mutex mutex;     // guards everything below but the servers
    std::condition_variable wake; // ends the delays: a server stops or a fault is taken back
    std::array<bool, 3> stopping{};
    World world;
    QList<RequestRecord> requests;
    QString datapathDirectory;
    const std::vector<Route> lookups = lookupRoutes();
    const std::vector<Route> others = orchestratorRoutes();

    mutable std::recursive_mutex endsMutex; // guards the servers; never taken while serving
    std::array<HttpEnd, 3> ends;
    std::array<int, 3> ports{};

    HttpEnd& http(End end) { return ends.at(static_cast<size_t>(end)); }
    bool startEnd(End end);
    void stopEnd(End end);
    HttpReply serve(End end, const HttpCall& received);
    const Route* find(const Call& call);
    void note(const Call& call, const QString& reason);
    void check(const Call& call, const Route& route);
    QString faultKey(const Call& call) const;
    Fault takeFault(const QString& key);
    bool changesWhileWaiting(const Fault& fault, const QString& key, End end,
                             std::unique_lock<std::mutex>& lock);
    HttpReply answer(const Call& call, const Route& route);
};

bool Simulator::Private::startEnd(End end)
{
    const auto index = static_cast<size_t>(end);
    {
        const std::lock_guard lock(mutex);
        stopping.at(index) = false;
    }
    if (http(end).running())
        return true;
    if (!http(end).start(ports.at(index),
                         [this, end](const HttpCall& call) { return serve(end, call); }))
        return false;
    ports.at(index) = http(end).port();
    const std::lock_guard lock(mutex);
    world.roots.insert(end, QStringLiteral("http://127.0.0.1:%1").arg(http(end).port()));
    return true;
}

void Simulator::Private::stopEnd(End end)
{
    {
        const std::lock_guard lock(mutex);
        stopping.at(static_cast<size_t>(end)) = true;
    }
    wake.notify_all();
    http(end).stop();
}

HttpReply Simulator::Private::serve(End end, const HttpCall& received)
{
    const Call call = parse(end, received);
    std::unique_lock lock(mutex);
    requests.append({end, call.method, call.path(), call.query(), call.headers, call.body,
                     QDateTime::currentDateTime()});
    while (requests.size() > kRequestsKept)
        requests.removeFirst();
    const Route* route = find(call);
    if (route == nullptr) {
        HttpReply reply;
        reply.status = 404;
        return reply;
    }
    check(call, *route);
    const QString key = faultKey(call);
    Fault fault = takeFault(key);
    while (fault.delayMs > 0 && changesWhileWaiting(fault, key, end, lock))
        fault = takeFault(key);
    if (fault.replaces()) {
        if (route->onFault)
            route->onFault(call, world);
        return faultReply(fault);
    }
    return answer(call, *route);
}

const Route* Simulator::Private::find(const Call& call)
{
    QString wrong = QString("unknown path on the %1 server").arg(endName(call.end));
    for (const Route& route : call.end == End::Orchestrator ? others : lookups) {
        if (route.path != call.path())
            continue;
        if (route.method() == call.method)
            return &route;
        wrong = QString("the method is not %1").arg(QString(route.method()));
    }
    note(call, wrong);
    return nullptr;
}

void Simulator::Private::note(const Call& call, const QString& reason)
{
    world.violations.append(
        QStringLiteral("%1 %2: %3")
            .arg(QString::fromLatin1(call.method), QString::fromUtf8(call.path()), reason));
}

void Simulator::Private::check(const Call& call, const Route& route)
{
    Findings findings;
    checkHeaders(route.headers, call, world, findings);
    if (!route.takesQuery && call.target.contains('?'))
        findings.add("unexpected query \"%1\"", call.query());
    route.check(call, world, findings);
    for (const QString& reason : findings.reasons())
        note(call, reason);
}

QString Simulator::Private::faultKey(const Call& call) const
{
    const QString path = QString::fromUtf8(call.path());
    const QString key = endName(call.end) + ':' + path;
    return world.scenario.faults.contains(key) ? key : path;
}

/// Waits as long as the fault says; true as soon as the path has another fault, or none.
bool Simulator::Private::changesWhileWaiting(const Fault& fault, const QString& key, End end,
                                             std::unique_lock<std::mutex>& lock)
{
    bool changed = false;
    wake.wait_for(lock, std::chrono::milliseconds(fault.delayMs), [&] {
        changed = fault.times < 0 && world.scenario.faults.value(key).delayMs != fault.delayMs;
        return changed || stopping.at(static_cast<size_t>(end));
    });
    return changed;
}

Fault Simulator::Private::takeFault(const QString& key)
{
    auto& faults = world.scenario.faults;
    const auto it = faults.find(key);
    if (it == faults.end())
        return {};
    const Fault fault = *it;
    if (it->times > 0 && --it->times == 0)
        faults.erase(it);
    return fault;
}

HttpReply Simulator::Private::answer(const Call& call, const Route& route)
{
    Session* session = world.sessionOf(call);
    if (session != nullptr)
        session->lastSeen = QDateTime::currentDateTime();
    if (route.headers.token == RequiredToken && (session == nullptr || !session->valid))
        return refusal(session);
    return route.handle(call, world);
}

Simulator::Simulator() : d(std::make_unique<Private>()) {}

Simulator::~Simulator()
{
    stop();
}

bool Simulator::start()
{
    return start(Ports());
}

bool Simulator::start(const Ports& ports)
{
    const std::lock_guard lock(d->endsMutex);
    d->ports = {ports.primary, ports.backup, ports.orchestrator};
    return d->startEnd(End::Orchestrator) && d->startEnd(End::LookupPrimary) &&
           d->startEnd(End::LookupBackup);
}

void Simulator::stop()
{
    for (End end : {End::LookupPrimary, End::LookupBackup, End::Orchestrator})
        stopEnd(end);
}

void Simulator::stopEnd(End end)
{
    const std::lock_guard lock(d->endsMutex);
    d->stopEnd(end);
}

bool Simulator::startEnd(End end)
{
    const std::lock_guard lock(d->endsMutex);
    return d->startEnd(end);
}

bool Simulator::isRunning(End end) const
{
    const std::lock_guard lock(d->endsMutex);
    return d->http(end).running();
}

QString Simulator::primaryUrl() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.roots.value(End::LookupPrimary) + kLookupPath;
}

QString Simulator::backupUrl() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.roots.value(End::LookupBackup) + kLookupPath;
}

QString Simulator::orchRoot() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.orchestratorRoot();
}

QString Simulator::authUrl() const
{
    return orchRoot() + kAuthPath;
}

void Simulator::edit(const std::function<void(Scenario&)>& change)
{
    const std::lock_guard lock(d->mutex);
    change(d->world.scenario);
    d->wake.notify_all();
}

Scenario Simulator::scenario() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.scenario;
}

void Simulator::setFault(const QString& path, const Fault& fault)
{
    edit([&](Scenario& scenario) { scenario.faults.insert(path, fault); });
}

void Simulator::clearFaults()
{
    edit([](Scenario& scenario) { scenario.faults.clear(); });
}

void Simulator::revokeSessions(int reason)
{
    const std::lock_guard lock(d->mutex);
    for (Session& session : d->world.sessions) {
        if (!session.valid)
            continue;
        session.valid = false;
        session.connected = false;
        session.invalidReason = reason;
    }
}

void Simulator::order(const QJsonObject& members)
{
    const std::lock_guard lock(d->mutex);
    d->world.orders.append(members);
}

void Simulator::cancelOrders()
{
    const std::lock_guard lock(d->mutex);
    d->world.orders.clear();
}

QString Simulator::issueToken(const QString& username, const QString& serial)
{
    const std::lock_guard lock(d->mutex);
    for (const Account& account : qAsConst(d->world.scenario.accounts)) {
        if (account.username == username)
            return d->world.openSession(account, serial).token;
    }
    return {};
}

QList<Session> Simulator::sessions() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.sessions.values();
}

QString Simulator::sentCode(const QString& username) const
{
    const std::lock_guard lock(d->mutex);
    return d->world.challenges.value(username).code;
}

QString Simulator::totp(const QString& username) const
{
    const std::lock_guard lock(d->mutex);
    QString secret = d->world.challenges.value(username).otpSecret;
    for (const Account& account : qAsConst(d->world.scenario.accounts)) {
        if (account.username == username && account.otpBound)
            secret = account.otpSecret;
    }
    return secret.isEmpty() ? QString() : totpAt(secret, QDateTime::currentSecsSinceEpoch());
}

QStringList Simulator::deviceRequests() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.deviceRequests;
}

Bundle Simulator::bundle() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.bundle;
}

QList<RequestRecord> Simulator::requests() const
{
    const std::lock_guard lock(d->mutex);
    return d->requests;
}

RequestRecord Simulator::lastRequest(const QByteArray& path) const
{
    const std::lock_guard lock(d->mutex);
    for (auto it = d->requests.crbegin(); it != d->requests.crend(); ++it) {
        if (it->path == path)
            return *it;
    }
    return {};
}

int Simulator::count(const QByteArray& path) const
{
    const std::lock_guard lock(d->mutex);
    int number = 0;
    for (const RequestRecord& request : d->requests)
        number += request.path == path ? 1 : 0;
    return number;
}

QStringList Simulator::violations() const
{
    const std::lock_guard lock(d->mutex);
    return d->world.violations + datapathViolations(d->datapathDirectory);
}

void Simulator::clear()
{
    const std::lock_guard lock(d->mutex);
    d->world.violations.clear();
    d->requests.clear();
    clearDatapathViolations(d->datapathDirectory);
}

void Simulator::watchDatapath(const QString& directory)
{
    const std::lock_guard lock(d->mutex);
    d->datapathDirectory = directory;
}

QString Simulator::datapathDirectory() const
{
    const std::lock_guard lock(d->mutex);
    return d->datapathDirectory;
}

} // namespace sim
