#include "sim/BodyCheck.h"

#include <QJsonDocument>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace sim {

namespace {

constexpr char kToken[] = "x-tq-auth-header";

const QSet<QByteArray>& transportHeaders()
{
    static const QSet<QByteArray> names{"host",       "connection",      "accept-encoding",
                                        "user-agent", "accept-language", "content-length"};
    return names;
}

void checkContent(HeaderRules::Content content, const Call& call, Findings& findings)
{
    const QByteArray value = call.header("content-type");
    const QByteArray expected =
        content == HeaderRules::Content::Json   ? QByteArray("application/json")
        : content == HeaderRules::Content::Form ? QByteArray("application/x-www-form-urlencoded")
                                                : QByteArray();
    if (value != expected)
        findings.add(QStringLiteral("content type is \"%1\", expected \"%2\"")
                         .arg(QString::fromLatin1(value), QString::fromLatin1(expected)));
    // The HTTP library does not hand over the body of a request that should have none.
    if (content == HeaderRules::Content::None && call.header("content-length").toLongLong() > 0)
        findings.add("body where none belongs");
}

void checkCustomer(HeaderRules::Customer rule, const Call& call, const World& world,
                   Findings& findings)
{
    const QByteArray value = call.header("customerid");
    if (rule == HeaderRules::Customer::None) {
        if (!value.isNull())
            findings.add("unexpected header customerId");
        return;
    }
    if (value.isEmpty()) {
        findings.add("header customerId is missing");
        return;
    }
    bool number = false;
    const int id = value.toInt(&number);
    if (rule == HeaderRules::Customer::Numeric && (!number || world.anyAccountOf(id) == nullptr))
        findings.add(QStringLiteral("header customerId \"%1\" is no customer's number")
                         .arg(QString::fromUtf8(value)));
}

void checkToken(HeaderRules::Token rule, const Call& call, const World& world, Findings& findings)
{
    using Token = HeaderRules::Token;
    const QByteArray value = call.header(kToken);
    if (rule == Token::None) {
        if (!value.isNull())
            findings.add("unexpected header X-TQ-AUTH-HEADER");
        return;
    }
    if (value.isEmpty()) {
        if (rule == Token::Required)
            findings.add("header X-TQ-AUTH-HEADER is missing or empty");
        return;
    }
    const auto session = world.sessions.constFind(QString::fromUtf8(value));
    if (session == world.sessions.constEnd()) {
        findings.add("header X-TQ-AUTH-HEADER holds a token never issued");
        return;
    }
    if (session->serial != QString::fromUtf8(call.header("sn")))
        findings.add("the token was issued to another serial");
    if (session->customerId != call.header("customerid").toInt())
        findings.add("the token was issued to another customer");
}

/// White space between tokens, which a compact document does not have.
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
    QSet<QByteArray> seen;
    for (const auto& [name, value] : call.headers) {
        Q_UNUSED(value)
        const bool known = name == "sn" || name == "customerid" || name == "type" ||
                           name == kToken || name == "content-type" || name == rules.also;
        if (!known && !transportHeaders().contains(name))
            findings.add(QStringLiteral("unexpected header %1").arg(QString::fromLatin1(name)));
        if (seen.contains(name))
            findings.add(QStringLiteral("header %1 is repeated").arg(QString::fromLatin1(name)));
        seen.insert(name);
    }
    const QByteArray serial = call.header("sn");
    if (!isSerial(QString::fromUtf8(serial)))
        findings.add(
            QStringLiteral("header sn \"%1\" is no serial").arg(QString::fromUtf8(serial)));
    const QByteArray expectedType = rules.type ? QByteArray("linux") : QByteArray();
    if (call.header("type") != expectedType)
        findings.add(
            QStringLiteral("header type is \"%1\", expected \"%2\"")
                .arg(QString::fromUtf8(call.header("type")), QString::fromLatin1(expectedType)));
    checkContent(rules.content, call, findings);
    checkCustomer(rules.customer, call, world, findings);
    checkToken(rules.token, call, world, findings);
}

JsonCheck::JsonCheck(const QJsonObject& object, Findings& findings, QString name)
    : m_object(object), m_findings(findings), m_name(std::move(name))
{
}

bool JsonCheck::has(const char* member) const
{
    return m_object.contains(QLatin1String(member));
}

QJsonValue JsonCheck::take(const char* member)
{
    m_seen.insert(QLatin1String(member));
    const QJsonValue value = m_object.value(QLatin1String(member));
    if (value.isUndefined())
        wrong(member, "is missing");
    return value;
}

void JsonCheck::wrong(const char* member, const QString& reason)
{
    m_findings.add(QStringLiteral("member %1%2 %3").arg(m_name, QLatin1String(member), reason));
}

QString JsonCheck::text(const char* member)
{
    const QJsonValue value = take(member);
    if (!value.isUndefined() && !value.isString())
        wrong(member, "is no text");
    return value.toString();
}

void JsonCheck::text(const char* member, const QString& expected)
{
    const QString value = text(member);
    if (value != expected)
        wrong(member, QStringLiteral("is \"%1\", expected \"%2\"").arg(value, expected));
}

QString JsonCheck::optionalText(const char* member)
{
    if (!has(member))
        return {};
    const QString value = text(member);
    if (value.isEmpty())
        wrong(member, "is present but empty");
    return value;
}

int JsonCheck::integer(const char* member)
{
    const QJsonValue value = take(member);
    if (value.isUndefined())
        return 0;
    double whole = 0;
    if (!value.isDouble() || std::modf(value.toDouble(), &whole) != 0.0)
        wrong(member, "is no integer");
    return value.toInt();
}

void JsonCheck::integer(const char* member, const QVector<int>& allowed)
{
    const int value = integer(member);
    if (!allowed.contains(value))
        wrong(member, QStringLiteral("has the unexpected value %1").arg(value));
}

bool JsonCheck::flag(const char* member)
{
    const QJsonValue value = take(member);
    if (!value.isUndefined() && !value.isBool())
        wrong(member, "is no boolean");
    return value.toBool();
}

void JsonCheck::flag(const char* member, bool expected)
{
    if (flag(member) != expected)
        wrong(member, "has the wrong value");
}

void JsonCheck::trueOrAbsent(const char* member)
{
    if (has(member))
        flag(member, true);
}

QJsonObject JsonCheck::object(const char* member)
{
    const QJsonValue value = take(member);
    if (!value.isUndefined() && !value.isObject())
        wrong(member, "is no object");
    return value.toObject();
}

QJsonArray JsonCheck::array(const char* member)
{
    const QJsonValue value = take(member);
    if (!value.isUndefined() && !value.isArray())
        wrong(member, "is no array");
    return value.toArray();
}

void JsonCheck::finish()
{
    for (auto it = m_object.begin(); it != m_object.end(); ++it) {
        if (!m_seen.contains(it.key()))
            m_findings.add(QStringLiteral("unexpected member %1%2").arg(m_name, it.key()));
    }
}

JsonCheck jsonBody(const Call& call, Findings& findings)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(call.body, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        findings.add("body is no JSON object");
    else if (!isCompact(call.body))
        findings.add("body is not compact");
    return JsonCheck(document.object(), findings);
}

void checkEmptyBody(const Call& call, Findings& findings)
{
    if (!call.body.isEmpty())
        findings.add(QStringLiteral("body of %1 bytes where none belongs").arg(call.body.size()));
}

QMap<QByteArray, QByteArray> checkForm(const Call& call, const QVector<FormField>& fields,
                                       Findings& findings)
{
    QMap<QByteArray, QByteArray> values;
    QList<QByteArray> expectedNames;
    for (const FormField& field : fields)
        expectedNames.append(field.name);
    QList<QByteArray> names;
    for (const QByteArray& pair : call.body.split('&')) {
        const int equals = pair.indexOf('=');
        names.append(pair.left(equals));
        values.insert(names.last(), equals < 0
                                        ? QByteArray()
                                        : QByteArray::fromPercentEncoding(pair.mid(equals + 1)));
    }
    if (names != expectedNames)
        findings.add(QStringLiteral("form fields are \"%1\", expected \"%2\"")
                         .arg(QString::fromUtf8(names.join(' ')),
                              QString::fromLatin1(expectedNames.join(' '))));
    for (const FormField& field : fields) {
        if (!field.allowed.isEmpty() && !field.allowed.contains(values.value(field.name)))
            findings.add(QStringLiteral("form field %1 has the unexpected value \"%2\"")
                             .arg(QString::fromLatin1(field.name),
                                  QString::fromUtf8(values.value(field.name))));
    }
    return values;
}

void checkClientInfo(const QJsonObject& info, const QString& serial, Findings& findings)
{
    static const QRegularExpression addresses(
        QStringLiteral("\\A(%1(,%1)*)?\\z").arg("\\d+(\\.\\d+){3}(/\\d+)?"));
    static const QRegularExpression system("\\A.*\\(kernel .+\\)\\z");
    JsonCheck check(info, findings, "traceExtraInfo.");
    const QString ip = check.text("internalIp");
    if (!addresses.match(ip).hasMatch())
        findings.add(QStringLiteral("internalIp \"%1\" is no list of addresses").arg(ip));
    const QString version = check.text("opsVersion");
    if (!system.match(version).hasMatch())
        findings.add(QStringLiteral("opsVersion \"%1\" names no kernel").arg(version));
    const QString architecture = check.text("osArchitecture");
    if (!QStringList{"X86", "ARM", "unknown"}.contains(architecture))
        findings.add(QStringLiteral("osArchitecture \"%1\" is unknown").arg(architecture));
    for (const char* name : {"deviceName", "deviceType", "opsType", "hostName"})
        check.text(name);
    check.text("sn", serial);
    check.text("clientType", "Veltaro");
    check.finish();
}

} // namespace sim
