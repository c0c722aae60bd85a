#pragma once

#include "orch/OrchIdentity.h"
#include "orch/OrchRequest.h"
#include "orch/OrchTypes.h"

#include <QJsonObject>
#include <QString>

/// One builder for each request that the client sends, whoever sends it. Pure: values in, request
/// out; no settings, no clock, no network. `authUrl` is the authentication address and
/// `lookupUrl` the full address of a lookup server. Any thread.
namespace orchrequest {

/// Which orchestrator serves the customer ID that the user typed.
OrchRequest verifyCustomer(const QString& lookupUrl, const OrchIdentity& identity);

/// Version of the privacy agreement, a document beside the lookup service.
OrchRequest privacyVersion(const QString& lookupUrl, const QString& serial);

/// The RSA key for credentials and the paddings that the orchestrator accepts.
OrchRequest publicKey(const QString& authUrl, const OrchIdentity& identity);

/// What the customer's orchestrator offers at login.
OrchRequest authConfig(const QString& authUrl, const OrchIdentity& identity);

/// A login. `clientInfo` is the object sent as "traceExtraInfo".
OrchRequest login(const QString& authUrl, const QString& serial, const ipc::LoginParams& params,
                  const QJsonObject& clientInfo);

/// Whether a login that waits for approval has been approved.
OrchRequest asyncAuthPoll(const QString& serial, const ipc::AsyncAuthPollParams& params);

/// The user has signed out. The reason is Normal or OrchNotify.
OrchRequest signout(const QString& authUrl, const QString& serial,
                    const ipc::SignoutParams& params);

/// Tunnel parameters for a new connection. The reason is Normal, OrchNotify or ModeChanged;
/// `internalIp` is the dotted address that faces the default gateway, or empty.
OrchRequest connectSession(const QString& authUrl, const OrchIdentity& identity,
                           ipc::DisconnectTypeReason reason, const QString& internalIp);

/// Whether there is a newer client for this distribution and processor.
OrchRequest upgradeCheck(const QString& authUrl, const OrchIdentity& identity,
                         const QString& distributionId, const QString& cpuArchitecture);

/// The current maintenance notice.
OrchRequest maintenanceNotice(const QString& authUrl, const OrchIdentity& identity);

/// Addresses of the customer's own logos.
OrchRequest customerLogo(const QString& authUrl, const OrchIdentity& identity);

/// One of these logos.
OrchRequest logoFile(const QString& url, const OrchIdentity& identity);

/// The connection has ended.
OrchRequest disconnectNotice(const QString& authUrl, const OrchIdentity& identity,
                             ipc::DisconnectTypeReason reason);

/// A sign of life during a connection, at the address of the connect reply.
OrchRequest heartbeat(const QString& heartbeatUrl, const OrchIdentity& identity, bool intranetMode);

/// The IP filter lists, at the address of the connect reply.
OrchRequest filterDocument(const QString& documentUrl, const OrchIdentity& identity);

/// Where the current error-text resource lies. `path` is relative, without a leading "/".
OrchRequest errorResourceAddress(const QString& authUrl, const QString& path,
                                 const OrchIdentity& identity);

/// The error-text resource itself.
OrchRequest errorResourceDocument(const QString& documentUrl, const QString& serial);

} // namespace orchrequest
