#pragma once

#include <QString>

/// What a QR code tells an authenticator app: the account and its secret, as an address
/// "otpauth://totp/...". `username` is what the user typed, `customer` the customer ID as the login
/// page shows it; both are shortened so that the code stays small. The address is a secret like
/// `otpKey`. Pure; any thread.
QString otpAuthUri(const QString& username, const QString& customer, const QString& otpKey);
