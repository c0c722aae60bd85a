#pragma once

#include <QByteArray>

#include <memory>
#include <optional>

namespace sim {

/// The orchestrator's key pair: RSA, 2048 bits, made anew for each process and shared
/// by all objects in it. Thread-safe.
class RsaKey
{
public:
    RsaKey();
    ~RsaKey();

    /// The public half as the orchestrator publishes it: DER SubjectPublicKeyInfo (RFC 5280,
    /// section 4.1) in Base64 without armour or line breaks.
    QByteArray publicKey() const;

    /// The plain text of a Base64 cipher text, RSAES-OAEP with SHA-256 and MGF1-SHA-256 or
    /// RSAES-PKCS1-v1_5 (RFC 8017, section 7); nothing when it is not canonical Base64 or does not
    /// decrypt.
    std::optional<QByteArray> decrypt(const QByteArray& base64, bool oaep) const;

private:
    struct Private;
    std::shared_ptr<const Private> d;
};

} // namespace sim
