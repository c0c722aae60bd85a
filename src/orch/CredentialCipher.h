#pragma once

#include <string>

/// How credentials travel. Any thread.
namespace Util {

/// Encrypts `plain`, a line feed and the current time (milliseconds since 1970-01-01 UTC, in
/// decimal) with the orchestrator's key: Base64, without armour lines, of a DER
/// SubjectPublicKeyInfo (RFC 5280) that holds an RSA key. `oaep` chooses RSAES-OAEP with
/// SHA-256 and MGF1-SHA-256, otherwise RSAES-PKCS1-v1_5 (RFC 8017). Returns the ciphertext in
/// Base64 on one line; "" when the message is too long for the key (more than 190 or 245
/// bytes with 2048 bits) or the key is unusable.
std::string TQRSAEncrypt(const std::string& plain, const std::string& publicKey, bool oaep);

} // namespace Util
