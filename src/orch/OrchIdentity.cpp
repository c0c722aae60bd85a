#include "orch/OrchIdentity.h"

#include "app/ConfigUtil.h"
#include "orch/Util.h"

OrchIdentity storedIdentity()
{
    return storedIdentity(ConfigUtil::getvalue(ConfigUtil::CUSTOMERID, QString()).toString());
}

OrchIdentity storedIdentity(const QString& customerId)
{
    return {Util::getSerial(), customerId,
            ConfigUtil::getvalue(ConfigUtil::TOKEN, QString()).toString()};
}
