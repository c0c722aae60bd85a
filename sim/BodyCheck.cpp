#include "sim/BodyCheck.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

const QSet<QByteArray>& transportHeaders()
{
    static const QSet<QByteArray> names{"host",       "connection",      "accept-encoding",
                                        "user-agent", "accept-language", "content-length"};
    return names;
}

void checkContent(Content content, const Call& call, Findings& findings)
{
    const QByteArray value = call.header("content-type");
    const QByteArray expected = content == Json   ? "application/json"
                                : content == Form ? "application/x-www-form-urlencoded"
                                : content == Gzip ? "application/gzip"
                                                  : "";
    if (value != expected)
        findings.add("content type is \"%1\", expected \"%2\"", value, expected);
    // The HTTP library does not hand over the body of a request that should have none.
    if (content == NoContent && call.header("content-length").toLongLong() > 0)
        findings.add("body where none belongs");
}

void checkCustomer(Customer rule, const Call& call, const World& world, Findings& findings)
{
    const QByteArray value = call.header("customerid");
    bool number = false;
    const int id = value.toInt(&number);
    if (rule == NoCustomer && !value.isNull())
        findings.add("unexpected header customerId");
    else if (rule != NoCustomer && value.isEmpty())
        findings.add("header customerId is missing");
    else if (rule == Numeric && (!number || world.find(ofCustomer(id)) == nullptr))
        findings.add("header customerId \"%1\" is no customer's number", value);
}

void checkToken(Token rule, const Call& call, const World& world, Findings& findings)
{
    const QString token = call.token();
    const Session session = world.sessions.value(token);
    if (rule == NoToken && !call.header(kTokenHeader).isNull())
        findings.add("unexpected header X-TQ-AUTH-HEADER");
    else if (rule == RequiredToken && token.isEmpty())
        findings.add("header X-TQ-AUTH-HEADER is missing or empty");
    if (rule == NoToken || token.isEmpty())
        return;
    if (session.token.isEmpty()) {
        findings.add("header X-TQ-AUTH-HEADER holds a token never issued");
        return;
    }
    if (session.serial != call.serial())
        findings.add("the token was issued to another serial");
    if (session.customerId != call.customer())
        findings.add("the token was issued to another customer");
}

/// Without white space between tokens.
bool isCompact(const QByteArray& json)
{
    bool inText = false;
    for (int i = 0; i < json.size(); ++i) {
        const char c = json.at(i);
        if (inText && c == '\\')
            ++i;
        else if (c == '"')
            inText = !inText;
        else if (!inText && (c == ' ' || c == '\n' || c == '\r' || c == '\t'))
            return false;
    }
    return true;
}

} // namespace

bool isSerial(const QString& serial)
{
    static const QRegularExpression pattern("\\A[0-9A-E]{32}\\z");
    return pattern.match(serial).hasMatch();
}

void checkHeaders(const HeaderRules& rules, const Call& call, const World& world,
                  Findings& findings)
{
    static const QSet<QByteArray> ours{"sn", "customerid", "type", kTokenHeader, "content-type"};
    QSet<QByteArray> seen;
    for (const auto& header : call.headers) {
        const QByteArray& name = header.first;
        if (!ours.contains(name) && name != rules.also && !transportHeaders().contains(name))
            findings.add("unexpected header %1", name);
        if (seen.contains(name))
            findings.add("header %1 is repeated", name);
        seen.insert(name);
    }
    if (rules.content == Gzip && !call.serial().isEmpty())
        findings.add("unexpected header sn");
    if (rules.content != Gzip && !isSerial(call.serial()))
        findings.add("header sn \"%1\" is no serial", call.serial());
    const QByteArray expectedType = rules.type ? "linux" : "";
    if (call.header("type") != expectedType)
        findings.add("header type is \"%1\", expected \"%2\"", call.header("type"), expectedType);
    checkContent(rules.content, call, findings);
    checkCustomer(rules.customer, call, world, findings);
    checkToken(rules.token, call, world, findings);
}

JsonCheck::JsonCheck(const Call& theCall, const World& theWorld, Findings& theFindings)
    : call(theCall), world(theWorld), findings(theFindings), m_object(theCall.json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(call.body, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        findings.add("body is no JSON object");
    else if (!isCompact(call.body))
        findings.add("body is not compact");
}

JsonCheck::JsonCheck(const JsonCheck& outer, const QString& name, const QJsonValue& value)
    : call(outer.call), world(outer.world), findings(outer.findings), m_object(value.toObject()),
      m_name(outer.m_name + name + '.')
{
}

JsonCheck::~JsonCheck()
{
    for (auto it = m_object.begin(); it != m_object.end(); ++it) {
        if (!m_seen.contains(it.key()))
            findings.add("unexpected member %1%2", m_name, it.key());
    }
}

QJsonValue JsonCheck::take(const char* member, QJsonValue::Type type)
{
    m_seen.insert(member);
    const QJsonValue value = m_object.value(member);
    if (value.isUndefined())
        wrong(member, "is missing");
    else if (value.type() != type)
        wrong(member, "is of another type");
    return value;
}

void JsonCheck::wrong(const char* member, const QString& reason)
{
    findings.add("member %1%2 %3", m_name, member, reason);
}

void JsonCheck::text(const char* member, const QString& expected)
{
    const QString value = text(member);
    if (value != expected)
        wrong(member, QString("is \"%1\", expected \"%2\"").arg(value, expected));
}

QString JsonCheck::matches(const char* member, const QString& pattern)
{
    const QString value = text(member);
    const QRegularExpression whole(QRegularExpression::anchoredPattern(pattern));
    if (!whole.match(value).hasMatch())
        wrong(member, QString("is \"%1\", expected %2").arg(value, pattern));
    return value;
}

QString JsonCheck::filledText(const char* member)
{
    const QString value = text(member);
    if (value.isEmpty())
        wrong(member, "is empty");
    return value;
}

QString JsonCheck::optionalText(const char* member)
{
    return has(member) ? filledText(member) : QString();
}

void JsonCheck::handedOut(const char* member, QString Challenge::*token)
{
    if (!world.hasToken(token, text(member)))
        wrong(member, "was never handed out");
}

int JsonCheck::integer(const char* member)
{
    const double value = take(member, QJsonValue::Double).toDouble();
    double whole = 0;
    if (std::modf(value, &whole) != 0.0)
        wrong(member, "is no integer");
    return static_cast<int>(value);
}

void JsonCheck::integer(const char* member, const QVector<int>& allowed)
{
    const int value = integer(member);
    if (!allowed.contains(value))
        wrong(member, QString("has the unexpected value %1").arg(value));
}

void JsonCheck::flag(const char* member, bool expected)
{
    if (flag(member) != expected)
        wrong(member, "has the wrong value");
}

Check json(void (*checkMembers)(JsonCheck& body))
{
    return [checkMembers](const Call& call, const World& world, Findings& findings) {
        JsonCheck body(call, world, findings);
        checkMembers(body);
    };
}

void nothing(const Call& call, const World&, Findings& findings)
{
    if (!call.body.isEmpty())
        findings.add("body of %1 bytes where none belongs", QString::number(call.body.size()));
}

QMap<QByteArray, QByteArray> checkForm(const Call& call, const QVector<FormField>& fields,
                                       Findings& findings)
{
    QMap<QByteArray, QByteArray> values;
    QList<QByteArray> names;
    for (const QByteArray& pair : call.body.split('&')) {
        const int equals = pair.indexOf('=');
        names.append(pair.left(equals));
        values.insert(names.last(), equals < 0
                                        ? QByteArray()
                                        : QByteArray::fromPercentEncoding(pair.mid(equals + 1)));
    }
    QList<QByteArray> expectedNames;
    for (const FormField& field : fields) {
        const QByteArray value = values.value(field.name);
        expectedNames.append(field.name);
        if (!field.allowed.isEmpty() && !field.allowed.contains(value))
            findings.add("form field %1 has the unexpected value \"%2\"", field.name, value);
    }
    if (names != expectedNames)
        findings.add("form fields are \"%1\", expected \"%2\"", names.join(' '),
                     expectedNames.join(' '));
    return values;
}

} // namespace sim
