#include "settings/PasswordChange.h"

#include "app/ConfigUtil.h"
#include "orch/AccountRequests.h"
#include "orch/KeyRequest.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequest.h"

#include <QNetworkAccessManager>

namespace {

constexpr int kKeyStatus = 200; // of an answer that brings a key

} // namespace

PasswordChange::PasswordChange(QObject* parent) : QObject(parent) {}

void PasswordChange::start(const QString& oldPass, const QString& newPass)
{
    m_change.begin();
    m_customerId = ConfigUtil::savedText(ConfigUtil::CUSTOMERID);
    m_oldPass = oldPass;
    m_newPass = newPass;
    const auto refused = [this](const OrchReply& reply) {
        m_oldPass.clear();
        m_newPass.clear();
        emit keyRefused(reply);
    };
    ipc::requestKey(
        m_customerId, m_change, [this](const CredentialKey& key) { send(key); }, refused);
}

void PasswordChange::send(const CredentialKey& key)
{
    ipc::ResetPasswordParams params;
    params.customerId = m_customerId;
    params.oldPassword.swap(m_oldPass);
    params.newPassword.swap(m_newPass);
    params.oldEncPassword = key.encrypted(params.oldPassword);
    params.newEncPassword = key.encrypted(params.newPassword);
    params.rsaType = key.rsaType();
    // Where there is a key, no password travels as it is.
    const bool complete = !params.oldEncPassword.isEmpty() && !params.newEncPassword.isEmpty();
    if (!key.key.isEmpty() && !complete)
        return emit keyUnusable(kKeyStatus);
    if (!m_NetMgr)
        m_NetMgr = makeAccessManager(this);
    sendOrchRequest(*m_NetMgr,
                    orchrequest::changePassword(ConfigUtil::savedText(ConfigUtil::AUTHURL),
                                                storedIdentity(m_customerId), params),
                    m_change.step([this](const OrchReply& reply) { emit answered(reply); }));
}
