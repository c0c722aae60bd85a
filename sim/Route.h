#pragma once

#include "sim/BodyCheck.h"
#include "sim/World.h"

#include <functional>
#include <vector>

namespace sim {

/// One request of the service: where it arrives, what it must look like, and what answers it.
/// A further request or situation is a further row in one of the tables below.
struct Route
{
    QByteArray path;
    HeaderRules headers; ///< a file is PUT, whatever else has content is POSTed

    /// Checks the body and, where the route takes one, the query. Runs for every request, also
    /// when a fault replaces the reply.
    Check check;

    /// Makes the reply and changes the world. Not called for a request with a token that is not
    /// good, nor when a fault replaces the reply.
    std::function<HttpReply(const Call&, World&)> handle;

    bool takesQuery = false;

    /// Runs in place of `handle` when a fault replaces the reply; usually nothing.
    std::function<void(const Call&, World&)> onFault = {};

    QByteArray method() const
    {
        return headers.content == NoContent ? "GET" : headers.content == Gzip ? "PUT" : "POST";
    }
};

/// Answers with a part of the scenario as it stands.
template <QJsonObject Scenario::*Reply>
HttpReply reply(const Call&, World& world)
{
    return jsonReply(world.scenario.*Reply);
}

/// The requests that both lookup servers answer, and those of the orchestrator.
std::vector<Route> lookupRoutes();
std::vector<Route> loginRoutes();
std::vector<Route> accountRoutes();
std::vector<Route> sessionRoutes();
std::vector<Route> resourceRoutes();
std::vector<Route> diagnosisRoutes();

} // namespace sim
