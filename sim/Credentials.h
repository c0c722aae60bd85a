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

/// The two names of one credential, of which a request has one.
struct CredentialNames
{
    const char* encrypted;
    const char* plain;
};

constexpr CredentialNames kAccountName{"encryptAccountName", "accountName"};
constexpr CredentialNames kPassword{"encryptPassword", "password"};

Credential credentialOf(const Call& call, const World& world, const CredentialNames& names);

/// Checks that credentials stand under the names that fit: encrypted and with "rsaType" once the
/// customer has been given a key, plain otherwise.
void checkCredentials(JsonCheck& body, const QVector<CredentialNames>& credentials);

} // namespace sim
