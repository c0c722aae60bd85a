#include "app/SingleApp.h"
#include "main/DlgMain.h"
#include "orch/CredentialCipher.h"
#include "orch/HostIdentity.h"
#include "sim/Route.h"
#include "sim/Situations.h"
#include "window/login/LoginScene.h"

#include <QTcpSocket>

using sim::End;
using sim::Fault;

namespace {

/// Mutations that are no fault, and why: "path: mutation" for each path whose end fits.
const QVector<QPair<const char*, const char*>> kHarmless{
    {"(privacyversion.json|error-texts.json|(orvek-round|logo).png|obtain|config|"
     "getCustomerLogoUrl|resource/url|upgrade|smsStatus|"
     "rule|binddevice|forgotpassword|mode|recoverOtpKey|send): "
     "headers.sn.0 of another",
     "the request names the serial nowhere else"},
    {"(obtain|resource/url|smsStatus): headers.customerid.0 of another", "nor the customer"},
    {"signout: headers.x-tq-auth-header(.0)? (dropped|empty)", "whose token was refused has none"},
    {"auth: json.agreeToPrivacy dropped", "who agreed before does not say it again"},
    {"auth: json.requestIdForPoll dropped", "a login that asks for another approval"},
    {"auth: json.(accountName|password) longer", "mistyped: refused, which is no violation"},
    {".*: json.((verification|supportOtpCode|recoverCode) longer|recoverCode empty)",
     "so are codes"},
    {"send: json.(accountName|phoneNumber) longer", "whom the token names"},
    {"binddevice: json.traceExtraInfo.deviceId longer", "any device"},
    {"forgotpassword: json.resetTimes larger", "another try"},
    {"auth: json.(automaticLogin|otpLogin) inverted", "the service does not know these settings"},
    {"auth: json.traceExtraInfo.(device(Name|Type)|hostName|opsType) (longer|empty|of another)",
     "any text"},
    {"url: json.(cpeId (dropped|larger)|fileSize larger)", "one of many, of any size"},
    {"result: json.uploadedTime larger", "a minute later"},
    {"(auth: json.(deviceId|privacyVersion|.*internalIp)|connect: json.internalIp) empty",
     "not known to the client"},
};

/// A request in pieces that can be spoilt one by one; noticed() puts them together again. What the
/// HTTP library beneath the client adds is no piece of it.
QJsonObject described(const sim::RequestRecord& request)
{
    QJsonObject headers;
    for (const char* name : {"sn", "customerid", "type", "x-tq-auth-header", "content-type",
                             "middletoken", "x-tq-auth-device-bind"}) {
        const QString value = request.header(name);
        headers.insert(name, value.isEmpty() ? QJsonArray() : QJsonArray{value});
    }
    const QStringList target =
        QString(request.path + '?' + request.query).split('?', Qt::SkipEmptyParts);
    QJsonObject pieces{{"orchestrator", request.end == End::Orchestrator},
                       {"method", QString(request.method)},
                       {"target", QJsonArray::fromStringList(target)},
                       {"headers", headers}};
    if (request.path.endsWith("heartbeat") || request.path.endsWith("ip-filter.json"))
        pieces.insert("unconnected", false);
    const QString body = request.body;
    if (request.method == "PUT") {
        pieces.insert("file", QString::fromLatin1(request.body, request.body.size()));
    } else if (body.startsWith('{')) {
        pieces.insert("json", request.json());
        pieces.insert("indented", false);
    } else {
        pieces.insert("form", QJsonArray::fromStringList(body.split('&', Qt::SkipEmptyParts)));
    }
    return pieces;
}

using Made = std::function<void(const QString&, const QJsonValue&)>;

/// A credential of the client as another padding and other clocks would have made it.
void encryptAnew(const QString& name, const QByteArray& cipher, const Made& made)
{
    const sim::RsaKey key;
    const bool oaep = key.decrypt(cipher, true).has_value();
    const QByteArray plain = key.decrypt(cipher, oaep).value_or(QByteArray());
    const std::string text = plain.left(plain.lastIndexOf('\n')).toStdString();
    for (const int minutes : {-2, 0, 2}) {
        platform().clock = [=] { return QDateTime::currentMSecsSinceEpoch() + minutes * 60000; };
        made(QStringLiteral("%1 encrypted anew, %2").arg(name).arg(minutes),
             QString::fromStdString(
                 Util::TQRSAEncrypt(text, key.publicKey().toStdString(), oaep != (minutes == 0))));
    }
    platform().clock = Platform().clock;
}

void spoilText(const QString& name, const QString& text, const Made& made)
{
    made(name + " longer", text + 'x');
    if (!text.isEmpty())
        made(name + " empty", QString());
    const QString serial = Util::getSerial();
    QString another = text;
    another.replace(serial, serial.mid(1) + serial.left(1));
    another.replace(QRegularExpression("\\b1001\\b"), "2002");
    if (another != text)
        made(name + " of another", another);
    if (name.contains("encrypt"))
        encryptAnew(name, text.toLatin1(), made);
}

/// Every way to spoil a value that holds no others, and to change the type of any. Only JSON has
/// types.
void spoilLeaf(const QString& name, const QJsonValue& value, const Made& made)
{
    const QVariant as = value.toVariant();
    const QVector<QJsonValue> types{QJsonValue(), as.toString(), as.toDouble(), as.toBool(),
                                    QJsonObject()};
    for (const QJsonValue& other : types) {
        if (name.startsWith("json") && other.type() != value.type())
            made(name + " of another type", other);
    }
    if (value.isString())
        spoilText(name, value.toString(), made);
    if (value.isBool())
        made(name + " inverted", !value.toBool());
    if (value.isDouble()) {
        made(name + " larger", value.toDouble() + 77);
        made(name + " broken", value.toDouble() + 0.5);
    }
}

/// Every way to spoil a value and whatever it holds.
void spoil(const QString& name, const QJsonValue& value, const Made& made)
{
    spoilLeaf(name, value, made);
    QVariantMap members = value.toObject().toVariantMap();
    for (const QVariant& element : value.toArray().toVariantList())
        members.insert(QString::number(members.size()), element);
    const auto whole = [&](const QVariantMap& all) {
        return value.isArray() ? QJsonValue(QJsonArray::fromVariantList(all.values()))
                               : QJsonObject::fromVariantMap(all);
    };
    for (const QString& member : members.keys()) {
        const auto with = [&](const QString& how, const QJsonValue& spoilt) {
            QVariantMap changed = members;
            changed.insert(member, spoilt.toVariant());
            made(how, whole(changed));
        };
        const QString path = name + '.' + member;
        spoil(path, QJsonValue::fromVariant(members.value(member)), with);
        QVariantMap without = members;
        if (without.take(member) != QVariantList())
            made(path + " dropped", whole(without));
    }
    QVariantList reversed = value.toArray().toVariantList();
    std::reverse(reversed.begin(), reversed.end());
    if (reversed.size() > 1)
        made(name + " reversed", QJsonArray::fromVariantList(reversed));
    members.insert("more", value.isObject() ? QVariantList{"1"} : members.value("0", "linux"));
    if (value.isArray() || value.isObject())
        made(name + " with one more", whole(members));
}

} // namespace

/// The service notices everything that could be wrong with a request: whatever the client really
/// sends is recorded, spoilt in every single place, and sent again.
class MutationTest : public LoginScene
{
    Q_OBJECT

public slots:
    // One scene serves all kinds of requests.
    void init() override {}
    void cleanup() override {}

private slots:
    void initTestCase()
    {
        LoginScene::init();
        scene().stageDatapath();
        beAhead(kAhead);
        SingleApp::instance()->startInstance();
        service().edit([](sim::Scenario& scenario) {
            scenario.apply(sim::situationCommand("Wide logo").value("scenario").toObject());
        });
        scene().logIn(); // what an earlier run has left: the login sends its token
        open();
        QTRY_VERIFY(accepted());
        session(false);
        platform().arguments = [] { return QStringList{"veltaro", "-logout", "-byuser"}; };
        open();
        QTRY_COMPARE(service().count("/api/mobile/v2/signout"), 1);
        platform().arguments = [] { return QStringList{"veltaro"}; };

        logIn("acme", "alice@acme.example", "Wonder-land1");
        session(true);
        service().edit([](sim::Scenario& scenario) { scenario.rsaTypes = {0}; });
        logIn("acme", "alice@acme.example", "Wonder-land1");
        service().stopEnd(End::LookupPrimary);
        logIn("2002", "bob", "Plain-text2");
        service().startEnd(End::LookupPrimary);
        // An approval that has been given, and for ever waits for the login that tells.
        logIn("acme", "carol@acme.example", "Wait-a-bit3");
        service().setFault(kLogin, Fault::withStatus(500));
        timer("m_approvalTimer")->start(0);
        QTRY_VERIFY(service().lastRequest(kLogin).json().contains("requestIdForPoll"));
        furtherSteps();
        passwords();
        window.reset();

        QCOMPARE(service().violations().join('\n'), QString());
        for (const sim::RequestRecord& request : service().requests()) {
            const QJsonObject json = request.json();
            m_recorded.insert(request.path + ' ' + json.keys().join(' ') +
                                  (json["rsaType"] == 1 ? " OAEP" : ""),
                              described(request));
        }
        // What a request finds must not change with the requests before it, so none is really
        // served.
        for (const auto& table :
             {sim::lookupRoutes(), sim::loginRoutes(), sim::accountRoutes(), sim::sessionRoutes(),
              sim::resourceRoutes(), sim::diagnosisRoutes()}) {
            for (const sim::Route& route : table) {
                QVERIFY2(service().count(route.path) > 0, route.path);
                if (!route.onFault)
                    service().setFault(route.path, Fault::withBody("{}"));
            }
        }
    }

    void cleanupTestCase() { endScene(); }

    void everyFaultIsNoticed_data()
    {
        QTest::addColumn<QString>("kind");
        for (const QString& kind : m_recorded.keys())
            QTest::newRow(qPrintable(kind)) << kind;
    }

    void everyFaultIsNoticed()
    {
        QFETCH(QString, kind);
        const QJsonObject pieces = m_recorded.value(kind);
        const bool oaep = kind.endsWith("OAEP");
        service().edit([oaep](sim::Scenario& scenario) {
            scenario.rsaTypes = oaep ? QVector<int>{0, 1} : QVector<int>{0};
        });
        QVERIFY2(!noticed(pieces), qPrintable(service().violations().join('\n')));
        QStringList wrong;
        for (const QString& piece : pieces.keys()) {
            spoil(piece, pieces.value(piece), [&](const QString& how, const QJsonValue& spoilt) {
                QJsonObject whole = pieces;
                whole.insert(piece, spoilt);
                const QString name = pieces.value("target")[0].toString() + ": " + how;
                const bool harmless =
                    std::any_of(kHarmless.begin(), kHarmless.end(), [&](const auto& row) {
                        return name.contains(
                            QRegularExpression(QStringLiteral("/%1$").arg(row.first)));
                    });
                if (noticed(whole) == harmless)
                    wrong << name + (harmless ? " is noticed" : " is not noticed");
            });
        }
        QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join('\n')));
    }

private:
    // The service takes credentials of a minute around now, and on a slow machine it is longer
    // until the last is sent again: what is recorded comes from a clock that is ahead.
    static constexpr int kAhead = 50; // seconds
    static void beAhead(int seconds)
    {
        platform().clock = [=] { return QDateTime::currentMSecsSinceEpoch() + seconds * 1000; };
    }

    // A session from the connection to the end of the program, with a heartbeat.
    void session(bool intranet)
    {
        service().edit([intranet](sim::Scenario& scenario) {
            scenario.connectReply.insert(QStringLiteral("mobileDetect"), intranet);
        });
        window = std::make_unique<DlgMain>(nullptr);
        window->show();
        QTRY_COMPARE_WITH_TIMEOUT(button("btnConnect")->text(), "Stop", 15000);
        const int before = service().count("/api/mobile/v2/heartbeat");
        beAhead(kAhead + 60);
        fire("m_StatCountTimer");
        QTRY_VERIFY(service().count("/api/mobile/v2/heartbeat") > before);
        beAhead(kAhead);
        if (!intranet)
            button("m_startBtn")->click();
        QTRY_VERIFY(button("m_startBtn")->text() == "Start");
        child<QAction>("m_ActExit")->trigger();
        QTRY_COMPARE(scene().quits, intranet ? 2 : 1);
        window.reset();
    }

    // Somebody who has just agreed to the newest privacy agreement logs in.
    void logIn(const char* customer, const char* username, const char* password)
    {
        for (const QString& key : {ConfigUtil::USERNAME, ConfigUtil::AGREE_PRIVACY})
            ConfigUtil::writeValue(key, QString());
        ModalGuard privacy("DialogPrivacy", [](QDialog* dialog) { dialog->accept(); });
        open();
        QTRY_VERIFY(privacy.seen());
        continueWith(customer);
        awaitLoginPage();
        logInWith(username, password);
        QTRY_VERIFY(accepted() || timer("m_approvalTimer")->isActive());
    }

    // A code by SMS, a device and an authenticator, none of which lets anybody in: what the service
    // has handed out stays good.
    void furtherSteps()
    {
        service().clearFaults();
        toLoginPage();
        ModalGuard phone("DlgPhoneAuth", [this](QDialog* dialog) {
            QTRY_COMPARE(service().count("/api/mobile/smsStatus"), 1);
            part<QLineEdit>(dialog, "lineEditCode")->setText("000000");
            part<QPushButton>(dialog, "btnOk")->click();
            QTRY_VERIFY(service().lastRequest(kLogin).json().contains("verification"));
            dialog->reject();
        });
        logInWith("sara@acme.example", "Sms-code-44");
        QTRY_VERIFY(canLogIn());
        ModalGuard result("DlgBindResult");
        ModalGuard device("DlgDeviceBind",
                          [](QDialog* dialog) { part<QPushButton>(dialog, "btnYes")->click(); });
        toLoginPage();
        logInWith("dave@acme.example", "Device-ask-77");
        QTRY_VERIFY(result.seen());
        QTRY_VERIFY(canLogIn());
        toLoginPage();
        logInWith("olga@acme.example", "Otp-code-66");
        QTRY_COMPARE(page(), DlgLogin::DLG_OTP_VERIFY_PAGE);
        ModalGuard lost("OtpResetOtpTipDlg", [this](QDialog* dialog) {
            part<QLineEdit>(dialog, "m_recoveryLineEdit")->setText("wrong");
            part<QPushButton>(dialog, "btnReset")->click();
            QTRY_COMPARE(service().count("/api/mobile/v2/recoverOtpKey"), 1);
            dialog->reject();
        });
        button("m_lostPhoneBtn")->click();
        QTest::keyClicks(child<QWidget>("m_verifyNumber"), "000000");
        button("m_verifyBtn")->click();
        QTRY_VERIFY(service().lastRequest(kLogin).json().contains("supportOtpCode"));
    }

    // A forgotten one, and one that must be changed.
    void passwords()
    {
        const char reset[] = "/api/mobile/v2/forgotpassword";
        answer(reset, 500);
        toLoginPage();
        button("btnForgetPasswd")->click();
        field("m_usernameEdit")->setText(scene().username);
        button("m_submit")->setEnabled(true);
        button("m_submit")->click();
        QTRY_COMPARE(page(), DlgLogin::DLG_RESETPASSWORD_PAGE);
        button("m_sendBtn")->click();
        QTRY_VERIFY(timer("m_phoneVerifyTimer")->isActive());
        fillIn("resetPasswordPage", {"m_authCodeEdit", "m_passwordEdit", "m_passwordRepeatEdit"},
               {"000000", "Fresh-start-9", "Fresh-start-9"});
        QTRY_COMPARE(service().count(reset), 1);
        toLoginPage();
        logInWith("fred@acme.example", "First-pass-1");
        QTRY_COMPARE(page(), DlgLogin::DLG_FORCERESETPASSWORD_PAGE);
        fillIn("forceResetPasswordPage",
               {"m_oldPasswordEdit", "m_newPasswordEdit", "m_repeatPasswordEdit"},
               {"wrong", "Fresh-start-9", "Fresh-start-9"});
        QTRY_COMPARE(service().count("/api/mobile/v2/resetpassword"), 1);
    }

    void fillIn(const char* name, const QVector<const char*>& fields, const QStringList& texts)
    {
        const auto* shown = child<QWidget>(name);
        for (int i = 0; i < fields.size(); ++i)
            QTest::keyClicks(part<QLineEdit>(shown, fields[i]), texts[i]);
        part<QPushButton>(shown, "m_confirmBtn")->click();
    }

    // Sends a request; whether the service finds a violation, or that it is no HTTP.
    bool noticed(const QJsonObject& pieces)
    {
        const auto joined = [&](const char* piece, const char* by) {
            return pieces.value(piece).toVariant().toStringList().join(by).toUtf8();
        };
        const QJsonDocument json(pieces.value("json").toObject());
        QByteArray body = joined("form", "&") + pieces.value("file").toString().toLatin1();
        if (pieces.value("json").isObject())
            body = json.toJson(pieces.value("indented").toBool() ? QJsonDocument::Indented
                                                                 : QJsonDocument::Compact);
        const QByteArray method = joined("method", "");
        QByteArray head = method + ' ' + joined("target", "?") + " HTTP/1.1\r\n";
        QVariantMap headers = pieces.value("headers").toObject().toVariantMap();
        if (pieces.value("unconnected").toBool())
            headers["x-tq-auth-header"] =
                QVariantList{service().issueToken(scene().username, Util::getSerial())};
        for (auto header = headers.begin(); header != headers.end(); ++header) {
            for (const QString& value : header->toStringList())
                head += (header.key() + ": " + value + "\r\n").toUtf8();
        }
        if (method != "GET" || !body.isEmpty())
            head += "content-length: " + QByteArray::number(body.size()) + "\r\n";
        service().clear();
        const bool lookup = !pieces.value("orchestrator").toBool();
        QTcpSocket socket;
        socket.connectToHost(
            "127.0.0.1",
            quint16(QUrl(lookup ? service().primaryUrl() : service().orchRoot()).port()));
        socket.write(head + "\r\n" + body);
        while (socket.waitForReadyRead()) {
        }
        return socket.readAll().startsWith("HTTP/1.1 400") || !service().violations().isEmpty();
    }

    QMap<QString, QJsonObject> m_recorded; // the last of those with the same members
};

QTEST_MAIN(MutationTest)
#include "MutationTest.moc"
