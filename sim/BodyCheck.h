#pragma once

#include "sim/World.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPair>
#include <QSet>
#include <QVector>

namespace sim {

/// Collects what is wrong with one request.
class Findings
{
public:
    void add(const QString& reason) { m_reasons.append(reason); }
    const QStringList& reasons() const { return m_reasons; }

private:
    QStringList m_reasons;
};

/// What the headers of a request must be. Any header that is not named by these rules, nor one
/// that every HTTP client sends, is a finding.
struct HeaderRules
{
    enum class Content { None, Json, Form };
    enum class Customer { None, Typed, Numeric };
    /// An empty token cannot be told from none: the HTTP library drops headers without a value.
    enum class Token { None, Optional, Required };

    Content content = Content::None;
    Customer customer = Customer::None;
    Token token = Token::None;
    bool type = false;    ///< "type: linux"
    QByteArray also = {}; ///< one more header that may come; the route checks it
};

void checkHeaders(const HeaderRules& rules, const Call& call, const World& world,
                  Findings& findings);

/// Whether `serial` is a client serial: 32 characters from 0 to 9 and A to E.
bool isSerial(const QString& serial);

/// Checks the members of one JSON object, one call for each member that it may have. finish()
/// reports those that nobody asked about.
class JsonCheck
{
public:
    JsonCheck(const QJsonObject& object, Findings& findings, QString name = {});

    bool has(const char* member) const;
    QString text(const char* member);
    void text(const char* member, const QString& expected);
    /// A text that may be absent but not empty.
    QString optionalText(const char* member);
    int integer(const char* member);
    void integer(const char* member, const QVector<int>& allowed);
    bool flag(const char* member);
    void flag(const char* member, bool expected);
    /// A member that is either absent or true.
    void trueOrAbsent(const char* member);
    QJsonObject object(const char* member);
    QJsonArray array(const char* member);
    void finish();

private:
    QJsonValue take(const char* member);
    void wrong(const char* member, const QString& reason);

    QJsonObject m_object;
    Findings& m_findings;
    QString m_name;
    QSet<QString> m_seen;
};

/// The body of a request that must be one compact JSON object.
JsonCheck jsonBody(const Call& call, Findings& findings);

/// The body must be empty.
void checkEmptyBody(const Call& call, Findings& findings);

/// One field of a form and the values it may have; none means any.
struct FormField
{
    QByteArray name;
    QVector<QByteArray> allowed;
};

/// A form body with exactly these fields in this order. The values are returned by name.
QMap<QByteArray, QByteArray> checkForm(const Call& call, const QVector<FormField>& fields,
                                       Findings& findings);

/// The block of client information that some requests carry.
void checkClientInfo(const QJsonObject& info, const QString& serial, Findings& findings);

} // namespace sim
