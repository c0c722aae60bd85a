#include "orch/ErrorCatalogue.h"
#include "orch/HttpErrorText.h"
#include "orch/OrchErrRes.h"
#include "support/Rows.h"

using Error = QNetworkReply::NetworkError;
using Notice = LoginFailure::Notice;
using Action = LoginFailure::Action;

namespace {

/// The code that begins a text of the client's own catalogue, otherwise the text.
QString brief(const QString& text)
{
    return text.startsWith(QLatin1String("60")) ? text.left(4) : text;
}

OrchTexts texts(bool chinese = false)
{
    return {chinese,
            [](const OrchReply& reply) {
                return renderOrchError(reply.json(), QString(), false, false);
            },
            [](int code) { return code == 1500; }};
}

OrchReply answered(const QByteArray& body, int status = 200)
{
    return OrchReply(json(body), status);
}

} // namespace

class FailuresTest : public QObject
{
    Q_OBJECT

private slots:
    void catalogueCarriesItsCodes()
    {
        std::size_t count = 0;
        const ErrorCatalogueEntry* entries = errorCatalogue(&count);
        for (std::size_t i = 0; i < count; ++i) {
            const QString text = errorText(entries[i].id);
            QVERIFY2(text.contains(QRegularExpression("^60(0[2-9]|[1-4]\\d|50) \\S")),
                     qPrintable(text));
        }
        QCOMPARE(errorText(ErrorText::SmsNotSent, 495),
                 "6026 Failed to send SMS authentication code, please try again.(495).");
    }

    void dialogsOfTheirOwn()
    {
        const auto check = [](const OrchReply& reply, const char* text) {
            QCOMPARE(requestFailureText(reply, texts()), QString(text));
        };
        const OrchReply lost({}, 0, Error::ConnectionRefusedError, "Connection refused");
        const QString system = errorText(ErrorText::SystemErrorNoErrorText, 500);
        check(lost, "Connection refused");
        check(answered("<html>", 500), qPrintable(system));
        check(OrchReply(json("{'code':88,'message':'Not you'}"), 400,
                        Error::ProtocolInvalidOperationError, "x"),
              "88 Not you");
    }

    void transfers()
    {
        const auto check = [](Error error, int status, const char* lookup, const char* orch) {
            // A body that is no error body changes nothing.
            for (const char* body : {"", "<html>Bad</html>"}) {
                const OrchReply failure(body, status, error, "reply's text");
                QCOMPARE(brief(loginFailure(failure, true, texts()).text), QString(lookup));
                QCOMPARE(brief(loginFailure(failure, false, texts()).text), QString(orch));
                QCOMPARE(brief(mainFailure(failure, false, texts()).text), QString(orch));
            }
        };
        check(QNetworkReply::OperationCanceledError, 0, "6029", "6002");
        check(QNetworkReply::HostNotFoundError, 0, "6030", "6003");
        check(QNetworkReply::UnknownServerError, 502, "6038", "6038");
        check(QNetworkReply::UnknownServerError, 504, "reply's text", "reply's text");
        check(QNetworkReply::ProxyTimeoutError, 502, "reply's text", "reply's text");
        check(QNetworkReply::ConnectionRefusedError, 0, "reply's text", "reply's text");
        check(QNetworkReply::NoError, 302, "6009", "6009");
    }

    void systemErrorWordings()
    {
        QCOMPARE(loginFailure(answered("", 302), false, texts()).text,
                 QString("6009 System error(302). Please contact your network administrator"));
        QCOMPARE(mainFailure(answered("", 302), false, texts()).text,
                 QString("6009 System error (302). Please contact your network administrator"));
        QCOMPARE(mainFailure(answered("message", 500), false, texts()).text,
                 QString("6009 System error (500). Please contact your network administrator."));
    }

    void loginAnswers()
    {
        const auto row = checked([](const QByteArray& body, const QString& text, bool forget,
                                    Notice notice, Action action) {
            const LoginFailure result = loginFailure(answered(body), false, texts());
            QCOMPARE(brief(result.text), text);
            QCOMPARE(result.forgetCredentials, forget);
            QCOMPARE(result.notice, notice);
            QCOMPARE(result.action, action);
        });
        const auto shown = [row](const QByteArray& code, const QString& text,
                                 const QByteArray& more = {}, bool forget = false) {
            row((code + more).constData(), "{'message':'m','code':" + code + more + "}", text,
                forget, Notice::None, Action::ShowText);
        };
        for (const char* code : {"425", "426", "495"})
            shown(code, "6026");
        shown("422", "6023");
        shown("423", "6024");
        shown("424", "6025");
        shown("427", "6045");
        shown("1001", "1001 m");
        shown("422", "422 m", ",'parameters':{'message_cn':'c'}");
        shown("401", "401 m", ",'parameters':{'message_cn':'c'}");
        shown("401", "6027", "", true);
        shown("401", "6047", ",'parameters':{'invalidReasonCode':1}", true);
        shown("401", "6027", ",'parameters':{'invalidReasonCode':3}", true);
        shown("1025", "1025 m", "", true);
        shown("-1", "6009");
        const auto acts = [row](const QByteArray& code, Notice notice, Action action) {
            row(code.constData(), "{'message':'m','code':" + code + "}", code + " m", false, notice,
                action);
        };
        acts("1127", Notice::BindingInProgress, Action::Nothing);
        acts("1128", Notice::DeviceDisabled, Action::Nothing);
        acts("1500", Notice::None, Action::OpenUpgrade); // by the resource: the client is too old
        row("no code", "{'message':'m'}", "6009", false, Notice::None, Action::ShowText);
        row("no JSON", "a message", "6009", false, Notice::None, Action::ShowText);
    }

    void loginLanguage()
    {
        const auto failure = answered("{'message':'m','code':5,'parameters':{'message_cn':'中'}}");
        QCOMPARE(loginFailure(failure, false, texts(false)).text, QString("5 m"));
        QCOMPARE(loginFailure(failure, false, texts(true)).text, QString("5 中"));
    }

    void mainAnswers()
    {
        using End = SessionEnd;
        const auto row =
            checked([](const QByteArray& body, bool settingsPage, End end, const QString& text) {
                const MainFailure result = mainFailure(answered(body), settingsPage, texts());
                QCOMPARE(result.end, end);
                QCOMPARE(brief(result.text), text);
            });
        row("other code", "{'message':'m','code':1001}", false, End::None, "1001 m");
        row("no code", "{'message':'m'}", false, End::None, "6009");
        row("401 in the text", "{'message':'status 401','code':7}", false, End::InvalidToken, "");
        row("401 naming the password", "{'message':'password changed','code':401}", false,
            End::KeepToken, "");
        const auto rejected = [row](const QByteArray& parameters, bool settingsPage, End end) {
            row("401 " + parameters, "{'message':'m','code':401,'parameters':{" + parameters + "}}",
                settingsPage, end, "");
        };
        rejected("", false, End::InvalidToken);
        rejected("", true, End::LeftToSettings); // the page changes the password itself
        rejected("'invalidReasonCode':3", false, End::ForcedLogout);
        rejected("'invalidReasonCode':5", false, End::AccountChanged);
        rejected("'invalidReasonCode':1", true, End::PasswordChanged);
        rejected("'invalidReasonCode':2", false, End::InvalidToken);
        rejected("'invalidReasonCode':'3'", false, End::InvalidToken);
    }

    void orchTexts()
    {
        const auto text = [](const char* body, const char* resource, bool versionLow = false) {
            return renderOrchError(answered(body).json(), resource, versionLow, false);
        };
        QCOMPARE(text("{'code':7,'message':'m'}", "r %1"), "7 r %1");
        QCOMPARE(text("{'code':7,'message':'m'}", ""), "7 m");
        QCOMPARE(text("{'code':7}", ""), "7 ");
        QCOMPARE(text("{'code':7}", "Upgrade now", true), "Upgrade now");
        QCOMPARE(text("{'message':'m'}", "r"), "");
        QCOMPARE(text("", "r"), "");
        QCOMPARE(
            text("{'code':1007,'message':'m'}", "r"),
            "1007 Invalid Customer ID. Please enter again or contact your network administrator.");
        QCOMPARE(text("{'code':1019,'duration':15}", "Locked 30 minutes (30)"),
                 "1019 Locked 15 minutes (15)");
        QCOMPARE(text("{'code':1019}", "Locked 30 minutes"), "1019 Locked 30 minutes");
        QCOMPARE(text("{'code':1019,'duration':15,'message':'30'}", ""), "1019 30");
    }

    void logTextMasksSecrets()
    {
        const OrchReply failure(R"({"deviceBindMiddleToken":"SECRET"})", 0,
                                QNetworkReply::HostNotFoundError, "Host gone");
        QCOMPARE(failureLogText(failure, "Error Info: "),
                 QStringLiteral("Error code: HostNotFoundErrorError Info: Host gone statuscode 0"
                                " orch return text {\"deviceBindMiddleToken\":\"***\"}"));
    }
};

QTEST_GUILESS_MAIN(FailuresTest)
#include "tst_failures.moc"
