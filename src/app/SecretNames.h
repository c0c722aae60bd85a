#pragma once

#include <QByteArray>

/// Whether a value of this name is kept out of the log: tokens, passwords, codes, encrypted
/// credentials, and what names a person. The one table for members of bodies, request headers and
/// settings: compared without regard to case and underscores, so that a stored setting and the
/// member of the wire that it comes from are one name. Any thread.
bool isSecretName(const QByteArray& name);
