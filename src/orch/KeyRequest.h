#pragma once

#include "orch/CredentialKey.h"
#include "orch/OrchReply.h"

#include <functional>

class Attempt;

namespace ipc {

/// Asks for the key that a customer's credentials are encrypted with and calls one of the two, or
/// neither when `visit` has ended meanwhile. GUI thread.
void requestKey(const QString& customerId, const Attempt& visit,
                const std::function<void(const CredentialKey&)>& received,
                const OrchReplyFunc& failed);

} // namespace ipc
