#include "sim/Credentials.h"

#include <cstdlib>

namespace sim {

namespace {

constexpr qint64 kClockToleranceMs = 60000;

Credential decryptCredential(const World& world, const QString& cipher, int rsaType)
{
    Credential credential;
    const auto plain = world.key.decrypt(cipher.toLatin1(), rsaType == 1);
    if (!plain) {
        credential.fault = "does not decrypt";
        return credential;
    }
    const int feed = plain->lastIndexOf('\n');
    bool number = false;
    const qint64 stamp = feed < 0 ? 0 : plain->mid(feed + 1).toLongLong(&number);
    if (!number) {
        credential.fault = "carries no time stamp";
        return credential;
    }
    credential.text = QString::fromUtf8(plain->left(feed));
    const qint64 off = std::llabs(stamp - QDateTime::currentMSecsSinceEpoch());
    if (off > kClockToleranceMs)
        credential.fault = QStringLiteral("carries a time stamp that is off by %1 ms").arg(off);
    credential.good = credential.fault.isEmpty();
    return credential;
}

} // namespace

Credential credentialOf(const Call& call, const World& world, const CredentialNames& names)
{
    if (!call.json.contains(names.encrypted))
        return {true, call.text(names.plain), {}};
    return decryptCredential(world, call.text(names.encrypted), call.json["rsaType"].toInt());
}

void checkCredentials(JsonCheck& body, const QVector<CredentialNames>& credentials)
{
    const World& world = body.world;
    const bool keyGiven = world.keyGivenTo.contains(body.call.customer());
    const int rsaType = world.scenario.rsaTypes.contains(1) ? 1 : 0;
    if (keyGiven)
        body.integer("rsaType", {rsaType});
    for (const CredentialNames& names : credentials) {
        if (!keyGiven) {
            body.filledText(names.plain);
            continue;
        }
        const Credential read = decryptCredential(world, body.text(names.encrypted), rsaType);
        if (!read.good)
            body.findings.add("%1 %2", names.encrypted, read.fault);
    }
}

} // namespace sim
