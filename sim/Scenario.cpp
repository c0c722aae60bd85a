#include "sim/Scenario.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

namespace sim {

namespace {

QJsonObject object(const char* text)
{
    return QJsonDocument::fromJson(text).object();
}

/// One account of the same customer for each further step of a login.
QVector<Account> factorAccounts(const Account& base)
{
    const auto named = [&base](const char* name, const char* password) {
        Account account = base;
        account.username = QLatin1String(name) + "@acme.example";
        account.password = QLatin1String(password);
        return account;
    };
    Account sara = named("sara", "Sms-code-44");
    sara.factor = Account::Factor::Sms;
    sara.phone = "+8613800138000";
    Account otto = named("otto", "Otp-bind-55");
    otto.factor = Account::Factor::Authenticator;
    Account olga = named("olga", "Otp-code-66");
    olga.factor = Account::Factor::Authenticator;
    olga.otpBound = true;
    olga.otpSecret = "JBSWY3DPEHPK3PXP";
    olga.recoveryCodes = QStringList{"ABCD1234EFGH5678", "IJKL9012MNOP3456"};
    Account dave = named("dave", "Device-ask-77");
    dave.deviceRule = Account::DeviceRule::AskWithToken;
    Account dora = named("dora", "Device-copy-88");
    dora.deviceRule = Account::DeviceRule::AskWithoutToken;
    Account fred = named("fred", "First-pass-1");
    fred.mustChangePassword = true;
    fred.changeReasonEn = "Your password was set by the administrator.";
    fred.changeReasonCn = "您的密码由管理员设置。";
    return {sara, otto, olga, dave, dora, fred};
}

QVector<Account> defaultAccounts()
{
    QVector<Account> accounts;
    Account account;
    account.customer = "acme";
    account.customerId = 1001;
    account.username = "alice@acme.example";
    account.password = "Wonder-land1";
    account.phone = "13912345678";
    account.mailbox = "alice@mail.example";
    accounts.append(account);
    accounts += factorAccounts(account);
    account.phone.clear();
    account.mailbox.clear();

    account.username = "carol@acme.example";
    account.password = "Wait-a-bit3";
    account.approvalPolls = 2;
    accounts.append(account);

    account = {};
    account.customer = "2002";
    account.customerId = 2002;
    account.username = "bob";
    account.password = "Plain-text2";
    account.offersKey = false;
    accounts.append(account);
    return accounts;
}

constexpr char kErrorResource[] = R"({
    "wrongPassword": {"error_Code": 1001, "clientVersionLow": false, "error_Desc": {
        "en": "The username or the password is wrong.", "cn": "用户名或密码错误。"}},
    "locked": {"error_Code": 1019, "clientVersionLow": false, "error_Desc": {
        "en": "The account is locked. Please try again in 30 minutes.",
        "cn": "账号已锁定，请30分钟后重试。"}},
    "outdated": {"error_Code": 1090, "clientVersionLow": true, "error_Desc": {
        "en": "This version of the client is no longer supported.",
        "cn": "不再支持此版本的客户端。"}}})";

QStringList mergeObject(QJsonObject& target, const QString& name, const QJsonValue& value)
{
    if (!value.isObject())
        return {name};
    const QJsonObject changes = value.toObject();
    for (auto it = changes.begin(); it != changes.end(); ++it) {
        if (it.value().isNull())
            target.remove(it.key());
        else
            target.insert(it.key(), it.value());
    }
    return {};
}

const QMap<QString, QJsonObject Scenario::*>& replyObjects()
{
    static const QMap<QString, QJsonObject Scenario::*> all{
        {"authConfigReply", &Scenario::authConfigReply},
        {"upgradeReply", &Scenario::upgradeReply},
        {"noticeReply", &Scenario::noticeReply},
        {"connectReply", &Scenario::connectReply},
        {"heartbeatReply", &Scenario::heartbeatReply},
        {"logos", &Scenario::logos},
        {"resetModeReply", &Scenario::resetModeReply},
        {"passwordRules", &Scenario::passwordRules},
        {"errorResource", &Scenario::errorResource}};
    return all;
}

QString address(int number)
{
    return QStringLiteral("%1.%2.%3.%4")
        .arg(number >> 24)
        .arg((number >> 16) & 0xff)
        .arg((number >> 8) & 0xff)
        .arg(number & 0xff);
}

} // namespace

QString Account::remark() const
{
    QStringList ways;
    if (factor == Factor::Sms)
        ways << "with a code by SMS";
    else if (factor == Factor::Authenticator)
        ways << QStringLiteral("with an authenticator%1, recovery %2")
                    .arg(otpBound ? " of secret " + otpSecret : " to be bound",
                         recoveryCodes.value(0, "-"));
    if (deviceRule == DeviceRule::AskWithToken)
        ways << "from an associated device, which can be asked for";
    else if (deviceRule == DeviceRule::AskWithoutToken)
        ways << "from an associated device, asked for by hand";
    if (approvalPolls > 0)
        ways << "once it has been approved";
    if (mustChangePassword)
        ways << "after a change of the password";
    if (!offersKey)
        ways << "without encryption";
    return ways.join(", ");
}

Fault Fault::withStatus(int status, const QByteArray& body)
{
    Fault fault;
    fault.status = status;
    fault.replaceBody = true;
    fault.body = body;
    return fault;
}

Fault Fault::withBody(const QByteArray& body)
{
    return withStatus(200, body);
}

Fault Fault::withDelay(int ms)
{
    Fault fault;
    fault.delayMs = ms;
    return fault;
}

Fault Fault::trickled(int ms, const QByteArray& body)
{
    Fault fault = withBody(body);
    fault.trickleMs = ms;
    return fault;
}

Fault Fault::dropped()
{
    Fault fault;
    fault.drop = true;
    return fault;
}

Fault Fault::fromJson(const QJsonObject& json)
{
    Fault fault;
    fault.status = json.value("status").toInt();
    fault.delayMs = json.value("delayMs").toInt();
    fault.trickleMs = json.value("trickleMs").toInt();
    fault.drop = json.value("drop").toBool();
    fault.redirect = json.value("redirect").toString();
    fault.hugeBytes = static_cast<qint64>(json.value("hugeBytes").toDouble());
    fault.times = json.value("times").toInt(-1);
    const QJsonValue body = json.value("body");
    const QJsonValue base64 = json.value("bodyBase64");
    fault.replaceBody = body.isString() || base64.isString() || fault.status != 0;
    fault.body = base64.isString() ? QByteArray::fromBase64(base64.toString().toLatin1())
                                   : body.toString().toUtf8();
    return fault;
}

QJsonObject Fault::toJson() const
{
    QJsonObject json{{"status", status},       {"delayMs", delayMs},
                     {"trickleMs", trickleMs}, {"drop", drop},
                     {"redirect", redirect},   {"hugeBytes", static_cast<double>(hugeBytes)},
                     {"times", times}};
    if (replaceBody)
        json.insert("bodyBase64", QString::fromLatin1(body.toBase64()));
    return json;
}

bool Fault::replaces() const
{
    return status != 0 || drop || replaceBody || !redirect.isEmpty() || hugeBytes > 0;
}

Scenario::Scenario()
    : accounts(defaultAccounts()), privacyVersion("20250115"), rsaTypes{0, 1},
      errorResourceVersion("7")
{
    authConfigReply =
        object(R"({"code": 0, "enableForgetPassword": true, "supportCusResource": false})");
    upgradeReply = object(R"({"code": 0, "version": "6.1.20", "minVersion": "6.0.0",
        "checkingPeriod": 600, "ignore": false, "url": "", "releaseNote": "",
        "releaseNoteEn": ""})");
    noticeReply = object(R"({"code": 0, "type": "none", "noticeTime": 60})");
    connectReply = object(R"({"code": 0, "heartbeatInterval": 10, "lanAssignIp": "10.8.0.2",
        "orchDomains": ["orch1.veltaro.example", "orch2.veltaro.example"], "cpeId": 4711,
        "orchId": 12, "commuServerAddr": "comm1.veltaro.example:4500",
        "candidateCommServers": ["comm1.veltaro.example:4501", "comm2.veltaro.example"],
        "siteTemplateId": "T-31", "mobileTrafficVersion": 5, "mobileDetect": false,
        "mobileDetectFailed": "", "mobileDetectFailedEn": "", "enableQuantum": false,
        "enablePQC": false})");
    heartbeatReply = object(R"({"code": 0, "success": true, "actionDataList": []})");
    passwordRules = object(R"({"code": 0, "confirmPwdSame": "The two passwords differ.",
        "firstPwdRule": [
            {"pwdRegularStr": ".{8,64}", "clientName": "8 to 64 characters are needed."},
            {"pwdRegularStr": ".*[0-9].*", "clientName": "At least one digit is needed."},
            {"pwdRegularStr": ".*[A-Z].*", "clientName": "At least one capital is needed."}]})");
    errorResource = object(kErrorResource);
    filterDocument = makeFilterDocument(2, 3);
}

QStringList Scenario::apply(const QJsonObject& json)
{
    QStringList refused;
    for (auto it = json.begin(); it != json.end(); ++it) {
        const QString& name = it.key();
        const QJsonValue value = it.value();
        if (const auto member = replyObjects().value(name)) {
            refused += mergeObject(this->*member, name, value);
        } else if (name == "privacyVersion" && value.isString()) {
            privacyVersion = value.toString();
        } else if (name == "errorResourceVersion" && value.isString()) {
            errorResourceVersion = value.toString();
        } else if (name == "filterDocument" && value.isString()) {
            filterDocument = value.toString().toUtf8();
        } else if (name == "rsaTypes" && value.isArray()) {
            rsaTypes.clear();
            for (const QJsonValue type : value.toArray())
                rsaTypes.append(type.toInt());
        } else {
            refused.append(name);
        }
    }
    return refused;
}

QJsonObject Scenario::toJson() const
{
    QJsonArray types;
    for (int type : rsaTypes)
        types.append(type);
    QJsonObject json{{"privacyVersion", privacyVersion},
                     {"errorResourceVersion", errorResourceVersion},
                     {"rsaTypes", types}};
    for (auto it = replyObjects().begin(); it != replyObjects().end(); ++it)
        json.insert(it.key(), this->*it.value());
    return json;
}

QByteArray makeFilterDocument(int inclusive, int exclusive, int duplicates)
{
    QJsonArray white;
    QJsonArray black;
    for (int i = 0; i < inclusive; ++i)
        white.append(address(10 * (1 << 24) + i) + "/32");
    for (int i = 0; i < exclusive; ++i)
        black.append(address(100 * (1 << 24) + i) + "/32");
    for (int i = 0; i < duplicates && exclusive > 0; ++i)
        black.append(black.at(i % exclusive));
    const QJsonObject document{
        {"code", 0}, {"ipSetMode", 0}, {"whiteIpSet", white}, {"blackIpSet", black}};
    return QJsonDocument(document).toJson(QJsonDocument::Compact);
}

} // namespace sim
