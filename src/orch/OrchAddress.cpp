#include "orch/OrchAddress.h"

namespace {

constexpr char kApi[] = "/api";

} // namespace

namespace orchaddress {

QString rootFirstApi(const QString& authUrl, const QString& path)
{
    // left(-1), for an address without "/api", is the whole text.
    return authUrl.left(authUrl.indexOf(QLatin1String(kApi))) + path;
}

QString rootLastApi(const QString& authUrl, const QString& path)
{
    const int at = authUrl.lastIndexOf(QLatin1String(kApi));
    return at < 0 ? authUrl : authUrl.left(at) + path;
}

QString sibling(const QString& authUrl, const QString& path)
{
    const int at = authUrl.lastIndexOf(QLatin1Char('/'));
    return at < 0 ? authUrl : authUrl.left(at) + path;
}

QString errorResource(const QString& authUrl, const QString& path)
{
    QString root = rootFirstApi(authUrl, QString());
    if (!root.endsWith(QLatin1Char('/')))
        root += QLatin1Char('/');
    return root + path;
}

} // namespace orchaddress
