#pragma once

#include <QByteArray>
#include <QString>

namespace sim {

/// The six-digit code of RFC 6238 (HMAC-SHA-1, steps of 30 s) for a Base32 secret (RFC 4648) at a
/// time in seconds since 1970.
QString totpAt(const QString& base32Secret, qint64 seconds);

/// Whether `code` is the one of now, of the step before, or of the one after.
bool isTotp(const QString& base32Secret, const QString& code);

/// A new secret of 160 bits.
QString randomSecret();

} // namespace sim
