#include "orch/ErrorCatalogue.h"
#include "orch/HttpErrorText.h"
#include "orch/OrchErrRes.h"

#include <QJsonDocument>
#include <QRegularExpression>
#include <QtTest>

using Error = QNetworkReply::NetworkError;
using Notice = LoginFailure::Notice;
using Action = LoginFailure::Action;
Q_DECLARE_METATYPE(LoginFailure::Notice)
Q_DECLARE_METATYPE(LoginFailure::Action)
Q_DECLARE_METATYPE(SessionEnd)

namespace {

/// The code that begins a text of the client's own catalogue, otherwise the text.
QString brief(const QString& text)
{
    return text.startsWith(QLatin1String("60")) ? text.left(4) : text;
}

OrchTexts texts(bool chinese = false)
{
    return {chinese,
            [](const QByteArray& body) {
                const QJsonObject object = QJsonDocument::fromJson(body).object();
                return renderOrchError(object, QString(), false, false);
            },
            [](int code) { return code == 1500; }};
}

HttpFailure transfer(Error error, int status)
{
    return {QByteArray(), error, QStringLiteral("reply's text"), status};
}

HttpFailure answered(const char* body, int status = 200)
{
    return {body, QNetworkReply::NoError, QString(), status};
}

} // namespace

class FailuresTest : public QObject
{
    Q_OBJECT

private slots:
    void catalogueCarriesItsCodes()
    {
        const QRegularExpression coded(QStringLiteral("\\A60(0[2-9]|[1-4]\\d|50) \\S"));
        std::size_t count = 0;
        const ErrorCatalogueEntry* entries = errorCatalogue(&count);
        for (std::size_t i = 0; i < count; ++i) {
            const QString text = errorText(entries[i].id);
            QVERIFY2(coded.match(text).hasMatch(), qPrintable(text));
        }
        QCOMPARE(
            errorText(ErrorText::SmsNotSent, 495),
            QStringLiteral("6026 Failed to send SMS authentication code, please try again.(495)."));
    }

    void transfers_data()
    {
        QTest::addColumn<int>("error");
        QTest::addColumn<int>("status");
        QTest::addColumn<QString>("lookup");
        QTest::addColumn<QString>("orch");
        const auto row = [](const char* name, Error error, int status, const char* lookup,
                            const char* orch) {
            QTest::newRow(name) << int(error) << status << QString::fromLatin1(lookup)
                                << QString::fromLatin1(orch);
        };
        row("time-out", QNetworkReply::OperationCanceledError, 0, "6029", "6002");
        row("host", QNetworkReply::HostNotFoundError, 0, "6030", "6003");
        row("bad gateway", QNetworkReply::UnknownServerError, 502, "6038", "6038");
        row("other unknown server error", QNetworkReply::UnknownServerError, 504, "reply's text",
            "reply's text");
        row("502 of another kind", QNetworkReply::ProxyTimeoutError, 502, "reply's text",
            "reply's text");
        row("refused", QNetworkReply::ConnectionRefusedError, 0, "reply's text", "reply's text");
        row("no network error", QNetworkReply::NoError, 302, "6009", "6009");
    }

    void transfers()
    {
        QFETCH(int, error);
        QFETCH(int, status);
        const HttpFailure failure = transfer(static_cast<Error>(error), status);
        QTEST(brief(loginFailure(failure, true, texts()).text), "lookup");
        QTEST(brief(loginFailure(failure, false, texts()).text), "orch");
        QTEST(brief(mainFailure(failure, false, texts()).text), "orch");

        // A body that is no error body changes nothing.
        HttpFailure withPage = failure;
        withPage.body = "<html>Bad</html>";
        QTEST(brief(loginFailure(withPage, false, texts()).text), "orch");
    }

    void systemErrorWordings()
    {
        QCOMPARE(
            loginFailure(answered("", 302), false, texts()).text,
            QStringLiteral("6009 System error(302). Please contact your network administrator"));
        QCOMPARE(
            mainFailure(answered("", 302), false, texts()).text,
            QStringLiteral("6009 System error (302). Please contact your network administrator"));
        QCOMPARE(
            mainFailure(answered("message", 500), false, texts()).text,
            QStringLiteral("6009 System error (500). Please contact your network administrator."));
    }

    void loginAnswers_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("forget");
        QTest::addColumn<Notice>("notice");
        QTest::addColumn<Action>("action");
        const auto row = [](const char* name, const QByteArray& body, const char* text,
                            bool forget = false, Notice notice = Notice::None,
                            Action action = Action::ShowText) {
            QTest::newRow(name) << body << QString::fromLatin1(text) << forget << notice << action;
        };
        for (const int code : {425, 426, 495}) {
            const QByteArray number = QByteArray::number(code);
            QTest::newRow(number.constData())
                << "{\"message\":\"m\",\"code\":" + number + "}" << QStringLiteral("6026") << false
                << Notice::None << Action::ShowText;
        }
        row("422", R"({"message":"m","code":422})", "6023");
        row("423", R"({"message":"m","code":423})", "6024");
        row("424", R"({"message":"m","code":424})", "6025");
        row("427", R"({"message":"m","code":427})", "6045");
        row("other code", R"({"message":"m","code":1001})", "1001 m");
        row("both messages", R"({"message":"m","code":422,"parameters":{"message_cn":"c"}})",
            "422 m");
        row("both messages of a 401",
            R"({"message":"m","code":401,"parameters":{"message_cn":"c"}})", "401 m");
        row("401", R"({"message":"m","code":401})", "6027", true);
        row("401 after a reset",
            R"({"message":"m","code":401,"parameters":{"invalidReasonCode":1}})", "6047", true);
        row("401 otherwise", R"({"message":"m","code":401,"parameters":{"invalidReasonCode":3}})",
            "6027", true);
        row("1025", R"({"message":"m","code":1025})", "1025 m", true);
        row("1127", R"({"message":"m","code":1127})", "1127 m", false, Notice::BindingInProgress,
            Action::Nothing);
        row("1128", R"({"message":"m","code":1128})", "1128 m", false, Notice::DeviceDisabled,
            Action::Nothing);
        row("client too old", R"({"message":"m","code":1500})", "1500 m", false, Notice::None,
            Action::OpenUpgrade);
        row("no code", R"({"message":"m"})", "6009");
        row("no JSON", "a message", "6009");
        row("code -1", R"({"message":"m","code":-1})", "6009");
    }

    void loginAnswers()
    {
        QFETCH(QByteArray, body);
        const LoginFailure result = loginFailure(answered(body.constData()), false, texts());
        QTEST(brief(result.text), "text");
        QTEST(result.forgetCredentials, "forget");
        QTEST(result.notice, "notice");
        QTEST(result.action, "action");
    }

    void loginLanguage()
    {
        const HttpFailure failure = answered(
            "{\"message\":\"m\",\"code\":5,\"parameters\":{\"message_cn\":\"\xe4\xb8\xad\"}}");
        QCOMPARE(loginFailure(failure, false, texts(false)).text, QStringLiteral("5 m"));
        QCOMPARE(loginFailure(failure, false, texts(true)).text, QStringLiteral("5 中"));
    }

    void mainAnswers_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<bool>("settingsPage");
        QTest::addColumn<SessionEnd>("end");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const QByteArray& body, SessionEnd end,
                            const char* text = "", bool settingsPage = false) {
            QTest::newRow(name) << body << settingsPage << end << QString::fromLatin1(text);
        };
        const auto rejected = [](const char* parameters) {
            return QByteArray(R"({"message":"m","code":401,"parameters":{)") + parameters + "}}";
        };
        row("other code", R"({"message":"m","code":1001})", SessionEnd::None, "1001 m");
        row("no code", R"({"message":"m"})", SessionEnd::None, "6009");
        row("401 in the text", R"({"message":"status 401","code":7})", SessionEnd::InvalidToken);
        row("401 alone", rejected(""), SessionEnd::InvalidToken);
        row("401 naming the password", R"({"message":"password changed","code":401})",
            SessionEnd::KeepToken);
        row("401 while the page changes it", rejected(""), SessionEnd::LeftToSettings, "", true);
        row("forced", rejected(R"("invalidReasonCode":3)"), SessionEnd::ForcedLogout);
        row("account", rejected(R"("invalidReasonCode":5)"), SessionEnd::AccountChanged);
        row("password", rejected(R"("invalidReasonCode":1)"), SessionEnd::PasswordChanged, "",
            true);
        row("default", rejected(R"("invalidReasonCode":2)"), SessionEnd::InvalidToken);
        row("reason as text", rejected(R"("invalidReasonCode":"3")"), SessionEnd::InvalidToken);
    }

    void mainAnswers()
    {
        QFETCH(QByteArray, body);
        QFETCH(bool, settingsPage);
        const MainFailure result = mainFailure(answered(body.constData()), settingsPage, texts());
        QTEST(result.end, "end");
        QTEST(brief(result.text), "text");
    }

    void orchTexts_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("resource");
        QTest::addColumn<bool>("versionLow");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const char* body, const char* resource, bool low,
                            const char* text) {
            QTest::newRow(name) << QByteArray(body) << QString::fromLatin1(resource) << low
                                << QString::fromLatin1(text);
        };
        row("resource", R"({"code":7,"message":"m"})", "r %1", false, "7 r %1");
        row("message", R"({"code":7,"message":"m"})", "", false, "7 m");
        row("neither", R"({"code":7})", "", false, "7 ");
        row("too old", R"({"code":7})", "Upgrade now", true, "Upgrade now");
        row("no code", R"({"message":"m"})", "r", false, "");
        row("empty", "", "r", false, "");
        row("customer", R"({"code":1007,"message":"m"})", "r", false,
            "1007 Invalid Customer ID. Please enter again or contact your network administrator.");
        row("duration", R"({"code":1019,"duration":15})", "Locked 30 minutes (30)", false,
            "1019 Locked 15 minutes (15)");
        row("default duration", R"({"code":1019})", "Locked 30 minutes", false,
            "1019 Locked 30 minutes");
        row("duration in a message stays", R"({"code":1019,"duration":15,"message":"30"})", "",
            false, "1019 30");
    }

    void orchTexts()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, resource);
        QFETCH(bool, versionLow);
        const QJsonObject object = QJsonDocument::fromJson(body).object();
        QTEST(renderOrchError(object, resource, versionLow, false), "text");
    }

    void logTextMasksSecrets()
    {
        const HttpFailure failure{R"({"deviceBindMiddleToken":"SECRET"})",
                                  QNetworkReply::HostNotFoundError, QStringLiteral("Host gone"), 0};
        QCOMPARE(failureLogText(failure, QStringLiteral("Error Info: ")),
                 QStringLiteral("Error code: HostNotFoundErrorError Info: Host gone statuscode 0"
                                " orch return text {\"deviceBindMiddleToken\":\"***\"}"));
    }
};

QTEST_GUILESS_MAIN(FailuresTest)
#include "tst_failures.moc"
