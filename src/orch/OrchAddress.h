#pragma once

#include <QString>

/// How addresses are derived from the authentication address, the login endpoint of a customer's
/// orchestrator (for example "https://orch.example/api/mobile/v2/auth"). Any thread.
namespace orchaddress {

/// The address before its first "/api" (the whole address when there is none), then `path`.
QString rootFirstApi(const QString& authUrl, const QString& path);

/// The address before its last "/api", then `path`. Without "/api" the address is returned
/// unchanged and `path` is not appended.
QString rootLastApi(const QString& authUrl, const QString& path);

/// The address before its last "/", then `path` (which begins with "/"). Without "/" the address
/// is returned unchanged.
QString sibling(const QString& authUrl, const QString& path);

/// The root before the first "/api" joined with a relative `path` by exactly one "/".
QString errorResource(const QString& authUrl, const QString& path);

} // namespace orchaddress
