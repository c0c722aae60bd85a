#include "orch/KeyRequest.h"

#include "app/Attempt.h"
#include "orch/OrchIpc.h"

namespace ipc {

void requestKey(const QString& customerId, const Attempt& visit,
                const std::function<void(const CredentialKey&)>& received,
                const OrchReplyFunc& failed)
{
    const auto read = [received](const OrchReply& reply) {
        received(CredentialKey::fromJson(reply.json()));
    };
    OrchIpc::instance()->obtainPubKey(customerId, visit.step(read), visit.step(failed));
}

} // namespace ipc
