#pragma once

#include "sim/World.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QSet>
#include <QVector>

#include <functional>

namespace sim {

constexpr char kClientVersion[] = VELTARO_VERSION;

/// Collects what is wrong with one request.
class Findings
{
public:
    void add(const QString& reason) { m_reasons.append(reason); }
    /// A reason with the values of its place markers.
    template <typename First, typename... More>
    void add(const char* reason, const First& first, const More&... more)
    {
        m_reasons.append(QString(reason).arg(QString(first), QString(more)...));
    }
    const QStringList& reasons() const { return m_reasons; }

private:
    QStringList m_reasons;
};

enum Content { NoContent, Json, Form, Gzip };
enum Customer { NoCustomer, Typed, Numeric };
/// An empty token cannot be told from none: the HTTP library drops headers without a value.
enum Token { NoToken, OptionalToken, RequiredToken };

/// What the headers of a request must be. A file tells nothing of who sends it. Any header that is
/// not named by these rules, nor one that every HTTP client sends, is a finding.
struct HeaderRules
{
    Content content = NoContent;
    Customer customer = NoCustomer;
    Token token = NoToken;
    bool type = false;    ///< "type: linux"
    QByteArray also = {}; ///< one more header that may come; the route checks it
};

void checkHeaders(const HeaderRules& rules, const Call& call, const World& world,
                  Findings& findings);

/// Whether `serial` is a client serial: 32 characters from 0 to 9 and A to E.
bool isSerial(const QString& serial);

/// Checks the members of one JSON object, one call for each member that it may have. Those that
/// nobody has asked about are reported at the end.
class JsonCheck
{
public:
    /// The body of a request, which must be one compact object.
    JsonCheck(const Call& call, const World& world, Findings& findings);
    /// An object within another one.
    JsonCheck(const JsonCheck& outer, const QString& name, const QJsonValue& value);
    ~JsonCheck();
    Q_DISABLE_COPY(JsonCheck)

    bool has(const char* member) const { return m_object.contains(member); }
    QString text(const char* member) { return take(member, QJsonValue::String).toString(); }
    void text(const char* member, const QString& expected);
    /// A text that as a whole matches a regular expression.
    QString matches(const char* member, const QString& pattern);
    QString filledText(const char* member);
    /// A text that may be absent but not empty.
    QString optionalText(const char* member);
    /// A text that the service itself has handed out.
    void handedOut(const char* member, QString Challenge::*token);
    int integer(const char* member);
    void integer(const char* member, const QVector<int>& allowed);
    bool flag(const char* member) { return take(member, QJsonValue::Bool).toBool(); }
    void flag(const char* member, bool expected);
    JsonCheck object(const char* member)
    {
        return {*this, member, take(member, QJsonValue::Object)};
    }
    QJsonArray array(const char* member) { return take(member, QJsonValue::Array).toArray(); }
    /// The members that say as a number or as a text what a header says, too.
    void customerNumber() { integer("customerId", {call.customer()}); }
    void customerText() { text("customerId", call.header("customerid")); }
    void serial() { text("sn", call.serial()); }

    const Call& call;
    const World& world;
    Findings& findings;

private:
    QJsonValue take(const char* member, QJsonValue::Type type);
    void wrong(const char* member, const QString& reason);

    QJsonObject m_object;
    QString m_name;
    QSet<QString> m_seen;
};

/// Looks at what a request carries.
using Check = std::function<void(const Call&, const World&, Findings&)>;

/// The body is a JSON object with these members.
Check json(void (*checkMembers)(JsonCheck& body));

/// The body is empty.
void nothing(const Call& call, const World& world, Findings& findings);

/// One field of a form and the values it may have; none means any.
struct FormField
{
    QByteArray name;
    QVector<QByteArray> allowed;
};

/// A form body with exactly these fields in this order. The values are returned by name.
QMap<QByteArray, QByteArray> checkForm(const Call& call, const QVector<FormField>& fields,
                                       Findings& findings);

} // namespace sim
