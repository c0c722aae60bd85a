#include "orch/OrchIdentity.h"

#include "app/ConfigUtil.h"
#include "orch/HostIdentity.h"

OrchIdentity storedIdentity()
{
    return storedIdentity(ConfigUtil::savedText(ConfigUtil::CUSTOMERID));
}

OrchIdentity storedIdentity(const QString& customerId)
{
    return {Util::getSerial(), customerId, ConfigUtil::savedText(ConfigUtil::TOKEN)};
}
