#pragma once

#include "orch/OrchIdentity.h"
#include "orch/OrchRequest.h"

#include <QJsonObject>
#include <QList>
#include <QPair>
#include <QString>

/// What the builders of requests are made of. Pure; any thread.
namespace requestparts {

using Fields = QList<QPair<QString, QString>>;

/// The client's version and model, as they travel.
QString version();
QString model();

/// A request with the serial's header alone.
OrchRequest makeRequest(OrchRequest::Method method, const QString& url, const QString& serial);

void addCustomer(OrchRequest& request, const QString& customerId);
void addType(OrchRequest& request);
void addToken(OrchRequest& request, const QString& token);
void setJson(OrchRequest& request, const QJsonObject& body);

/// JSON, compact; emptyPost() says that it is JSON and sends nothing.
OrchRequest jsonPost(const QString& url, const OrchIdentity& identity, const QJsonObject& body);
OrchRequest emptyPost(const QString& url, const OrchIdentity& identity);

/// JSON on behalf of a logged-in user.
OrchRequest sessionPost(const QString& url, const OrchIdentity& identity, const QJsonObject& body);

/// A form in the given order, every value percent-encoded ("+" too, which a form reads as a space).
OrchRequest formPost(const QString& url, const OrchIdentity& identity, const Fields& fields);

/// A customer ID as most bodies carry it; 0 when the text is no number.
qint64 numericId(const QString& customerId);

void setUnlessEmpty(QJsonObject& body, const char* key, const QString& value);

} // namespace requestparts
