#pragma once

#include "sim/BodyCheck.h"
#include "sim/World.h"

namespace sim {

/// A credential as the orchestrator reads it: decrypted, without its time stamp.
struct Credential
{
    bool good = false;
    QString text;
    QString fault;
};

QString textOf(const Call& call, const char* member);
int customerOf(const Call& call);

/// What the body carries under one of two names.
Credential credentialOf(const Call& call, const World& world, const char* encrypted,
                        const char* plain);

/// Checks that a credential stands under the name that fits: encrypted once the customer has been
/// given a key, plain otherwise. rsaType goes with the former; checkPadding() is called once.
void checkCredential(JsonCheck& body, const World& world, bool encrypted, const char* cipher,
                     const char* plain, Findings& findings);
void checkPadding(JsonCheck& body, const World& world);

/// Whether credentials of the request's customer are to be encrypted.
bool isKeyGiven(const Call& call, const World& world);

} // namespace sim
