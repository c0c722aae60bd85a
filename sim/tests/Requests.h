#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QMap>
#include <QNetworkReply>
#include <QUrl>

#include <functional>

namespace sim {
class Simulator;
}

/// A request made by hand, as a client without fault would send it.
struct Request
{
    QByteArray method = "POST";
    QUrl url;
    QMap<QByteArray, QByteArray> headers;
    QByteArray body;

    QJsonObject json() const;
    void setJson(const QJsonObject& object);
};

struct Answer
{
    int status = 0; ///< 0 when no reply came
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QByteArray body;
    QByteArray location;

    QJsonObject json() const;
};

/// Sends a request and waits for its end.
Answer send(const Request& request);

/// RSA with the published key, made with another library than the client's.
QByteArray encrypt(const QByteArray& text, const QByteArray& publicKey, bool oaep);

/// A deliberate departure from the proper form.
using Change = std::function<void(Request&)>;

/// Sets a member of the JSON body, or removes it when `value` is undefined.
Change member(const QString& name, const QJsonValue& value);

/// Makes each request in its proper form. The token of the last login goes into those that need
/// one.
class Client
{
public:
    explicit Client(sim::Simulator& simulator, int customerId = 1001);

    Request request(const QString& name) const;
    /// Sends that request.
    Answer exchange(const QString& name) const { return send(request(name)); }

    Request login(const QByteArray& user, const QByteArray& password, bool oaep = true) const;
    Request poll(const QString& address) const;

    /// Key and login; false when no token came.
    bool logIn(const QByteArray& user, const QByteArray& password, bool oaep = true);
    bool logIn();

    QByteArray token;
    QByteArray key; ///< empty: credentials go in plain
    QByteArray typedCustomer = "acme";

private:
    Request make(const QByteArray& method, const QString& path,
                 const QByteArray& contentType) const;
    Request withToken(const QString& path, const QJsonObject& body) const;

    sim::Simulator& m_simulator;
    int m_customerId;
};
