#include "sim/Route.h"

namespace sim {

namespace {

void checkLookup(const Call& call, const World&, Findings& findings)
{
    const auto values = checkForm(
        call, {{"customerId", {}}, {"sn", {call.header("sn")}}, {"model", {"linux"}}}, findings);
    if (values.value("customerId") != call.header("customerid"))
        findings.add("header and form name different customers");
}

HttpReply lookUp(const Call& call, World& world)
{
    const QString typed = call.header("customerid");
    const Account* account = world.find([&](const Account& any) {
        return any.customer == typed || QString::number(any.customerId) == typed;
    });
    if (account == nullptr)
        return errorReply(1007);
    return success({{"orchDomain", world.orchestratorRoot()}, {"customerId", account->customerId}});
}

HttpReply privacyVersion(const Call&, World& world)
{
    return jsonReply({{"veltaro_privacy_version", world.scenario.privacyVersion}});
}

} // namespace

std::vector<Route> lookupRoutes()
{
    return {
        {"/api/mobile/v1/orchinfo", {Form, Typed}, checkLookup, lookUp},
        {"/static/version/privacyversion.json", {}, nothing, privacyVersion},
    };
}

} // namespace sim
