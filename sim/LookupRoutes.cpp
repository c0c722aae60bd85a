#include "sim/Route.h"

namespace sim {

namespace {

using Rules = HeaderRules;

void checkLookup(const Call& call, const World&, Findings& findings)
{
    const auto values = checkForm(
        call, {{"customerId", {}}, {"sn", {call.header("sn")}}, {"model", {"linux"}}}, findings);
    if (values.value("customerId") != call.header("customerid"))
        findings.add("header and form name different customers");
}

HttpReply lookUp(const Call& call, World& world)
{
    const Account* account = world.anyAccountOf(QString::fromUtf8(call.header("customerid")));
    if (account == nullptr)
        return errorReply(1007, "No such customer");
    return jsonReply({{"code", 0},
                      {"orchDomain", world.orchestratorRoot()},
                      {"customerId", account->customerId}});
}

void checkNothing(const Call& call, const World&, Findings& findings)
{
    checkEmptyBody(call, findings);
}

HttpReply privacyVersion(const Call&, World& world)
{
    return jsonReply({{"veltaro_privacy_version", world.scenario.privacyVersion}});
}

} // namespace

std::vector<Route> lookupRoutes()
{
    return {
        {true,
         "POST",
         "/api/mobile/v1/orchinfo",
         {Rules::Content::Form, Rules::Customer::Typed, Rules::Token::None, false},
         checkLookup,
         lookUp},
        {true,
         "GET",
         "/static/version/privacyversion.json",
         {Rules::Content::None, Rules::Customer::None, Rules::Token::None, false},
         checkNothing,
         privacyVersion},
    };
}

} // namespace sim
