#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

/// A body, as it may stand in the log: the values of secret JSON members (at any depth, whatever
/// their type, also in a body that is cut off or otherwise no valid JSON) are replaced by "***",
/// control characters by spaces, and all but the first kLogBodyLimit bytes by a note of the full
/// length. Time is linear in the bytes shown. Any thread.
QString maskSecrets(const QByteArray& body);

/// The most bytes of a body that are shown.
constexpr int kLogBodyLimit = 8192;

/// Names of the JSON members and request headers whose values are secret: tokens, passwords,
/// encrypted credentials and codes. Compared without regard to case.
const QList<QByteArray>& secretNames();
