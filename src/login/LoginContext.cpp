#include "login/LoginContext.h"

#include "orch/OrchErrRes.h"

#include <utility>

LoginContext::LoginContext(std::function<LoginFields()> readFields)
    : fields(std::move(readFields)), m_OrchErrRes(OrchErrRes::getInstance())
{
}

void LoginContext::loadErrorResource(const QString& authUrl) const
{
    m_OrchErrRes->setCustomerId(m_CustomerID);
    m_OrchErrRes->loadRes(QStringLiteral("s/mobile/error/resource/url"), authUrl);
}
