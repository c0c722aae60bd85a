#pragma once

#include <QByteArray>
#include <QString>

/// A body, as it may stand in the log: the values of JSON members with a secret name
/// (app/SecretNames.h; at any depth, whatever their type, also in a body that is cut off or
/// otherwise no valid JSON) are replaced by "***", and all but the first kLogBodyLimit bytes by a
/// note of the full length. Time is linear in the bytes shown. Any thread.
QString maskSecrets(const QByteArray& body);

/// A login request's body without its member "password", for the log. Any thread.
QByteArray withoutPassword(const QByteArray& body);

/// The most bytes of a body that are shown.
constexpr int kLogBodyLimit = 8192;
