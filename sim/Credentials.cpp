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

bool expectsOaep(const World& world)
{
    return world.scenario.rsaTypes.contains(1);
}

} // namespace

QString textOf(const Call& call, const char* member)
{
    return call.json.value(QLatin1String(member)).toString();
}

int customerOf(const Call& call)
{
    return call.header("customerid").toInt();
}

Credential credentialOf(const Call& call, const World& world, const char* encrypted,
                        const char* plain)
{
    if (!call.json.contains(QLatin1String(encrypted)))
        return {true, textOf(call, plain), {}};
    const int rsaType = call.json.value("rsaType").toInt();
    return decryptCredential(world, textOf(call, encrypted), rsaType);
}

void checkCredential(JsonCheck& body, const World& world, bool encrypted, const char* cipher,
                     const char* plain, Findings& findings)
{
    if (!encrypted) {
        if (body.text(plain).isEmpty())
            findings.add(QLatin1String(plain) + " is empty");
        return;
    }
    const Credential read = decryptCredential(world, body.text(cipher), expectsOaep(world));
    if (!read.good)
        findings.add(QLatin1String(cipher) + ' ' + read.fault);
}

void checkPadding(JsonCheck& body, const World& world)
{
    body.integer("rsaType", {expectsOaep(world) ? 1 : 0});
}

bool isKeyGiven(const Call& call, const World& world)
{
    return world.keyGivenTo.contains(customerOf(call));
}

} // namespace sim
