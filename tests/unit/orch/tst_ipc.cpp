#include "RawServer.h"
#include "SettingsHome.h"

#include "orch/OrchIpc.h"
#include "support/Rows.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <optional>

namespace {

/// Counts the callbacks of one request, and keeps the last reply.
struct Outcome
{
    int successes = 0;
    int errors = 0;
    OrchReply last;

    OrchReplyFunc cb() { return into(successes); }
    OrchReplyFunc errCb() { return into(errors); }
    int total() const { return successes + errors; }

private:
    OrchReplyFunc into(int& count)
    {
        return [this, &count](const OrchReply& reply) {
            ++count;
            last = reply;
        };
    }
};

} // namespace

class IpcTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server.reset(new RawServer);
        ConfigUtil::writeValue(ConfigUtil::DEBUGAUTHURL, QString());
        ipc()->setMainAuthUrl(m_server->url("/api/mobile/v2/auth"));
    }

    void outcomes()
    {
        const auto row = checked([this](const QByteArray& answer, bool success, int status,
                                        int bodySize) {
            init();
            const auto kept = std::make_shared<int>(); // a callback holds it as long as it is kept
            m_server->answer = [&answer](const RawServer::Request&) { return answer; };
            Outcome outcome;
            ipc()->obtainPubKey(
                "2000017", [kept, cb = outcome.cb()](const OrchReply& reply) { cb(reply); },
                outcome.errCb());
            QTRY_COMPARE(outcome.total(), 1);
            QCOMPARE(outcome.successes, success ? 1 : 0);
            QCOMPARE(kept.use_count(), 1L);
            QCOMPARE(outcome.last.status, status);
            QCOMPARE(outcome.last.body.size(), bodySize);
            for (const auto& request : qAsConst(m_server->requests))
                QCOMPARE(request.path(), QByteArray("/s/mobile/pubkey/obtain"));
            QTRY_VERIFY(ipc()->findChildren<QNetworkReply*>().isEmpty());

            // By the time another request has been answered, a second call would have come.
            m_server->answer = [](const RawServer::Request&) { return RawServer::http(200, "{}"); };
            Outcome other;
            ipc()->authConfig("2000017", other.cb(), other.errCb());
            QTRY_COMPARE(other.successes, 1);
            QCOMPARE(outcome.total(), 1);
        });
        const auto http = &RawServer::http;
        const int large = 8 * 1024 * 1024;
        row("object", http(200, "{}", {}), true, 200, 2);
        row("megabytes", http(200, QByteArray(large, 'x'), {}), true, 200, large);
        row("code", http(200, R"({"code":1007})", {}), false, 200, 13);
        row("server error", http(502, "<html>", {}), false, 502, 6);
        row("redirect", http(302, "", "Location: /elsewhere\r\n"), false, 302, 0);
        row("dropped", "", false, 0, 0);
        row("no HTTP", "garbage\r\n\r\n", false, 0, 0);
        row("body cut off", "HTTP/1.1 200 OK\r\nContent-Length: 50\r\n\r\n{'a':1", false, 200, 6);
    }

    void callbacksMaySendAndWaitOrBeMissing()
    {
        m_server->answer = [](const RawServer::Request& request) {
            return RawServer::http(request.path().endsWith("obtain") ? 500 : 200, "{}");
        };
        int errors = 0;
        int inner = 0;
        ipc()->obtainPubKey("1", nullptr, [&](const OrchReply&) {
            ++errors;
            for (int i = 0; i < 3; ++i) {
                QEventLoop loop;
                ipc()->authConfig(
                    "1", [&](const OrchReply&) { ++inner, loop.quit(); }, nullptr);
                loop.exec();
            }
        });
        QTRY_COMPARE(inner, 3);
        ipc()->obtainPubKey("1", nullptr, nullptr);
        ipc()->queryOrchUpgrade("1", nullptr, nullptr);
        QTRY_COMPARE(m_server->requests.size(), 6);
        Outcome last;
        ipc()->getCustomerLogo("1", last.cb(), last.errCb());
        QTRY_COMPARE(last.successes, 1);
        QCOMPARE(errors, 1);
    }

    void brokenOff()
    {
        m_server->answer = [](const RawServer::Request&) {
            return RawServer::http(200, QByteArray(1 << 20, 'x'));
        };
        for (const bool silent : {false, true}) {
            m_server->silent = silent;
            OrchRequest request;
            request.url = QUrl(m_server->url("/"));
            request.timeoutMs = silent ? 50 : 40000;
            request.mostBytes = 1000;
            QNetworkAccessManager manager;
            std::optional<OrchReply> answer;
            sendOrchRequest(manager, request, [&](const OrchReply& reply) { answer = reply; });
            QTRY_VERIFY(answer);
            QCOMPARE(answer->error, silent ? QNetworkReply::OperationCanceledError
                                           : QNetworkReply::UnknownContentError);
            QCOMPARE(answer->body, QByteArray());
            QCOMPARE(answer->errorString == "The server's reply is too large.", !silent);
        }
    }

    void foreignSchemesEndAsErrors()
    {
        for (const char* address :
             {"", "poll/1", "file:///etc/hostname", "data:application/json,{}", "http://[::1/x",
              "http://127.0.0.1:1/"}) {
            Outcome outcome;
            ipc()->asynAuthPoll({"1", address}, outcome.cb(), outcome.errCb());
            QTRY_COMPARE(outcome.total(), 1);
            QVERIFY2(outcome.errors == 1 && outcome.last.status == 0, address);
        }
    }

    void headersCannotBeSplit()
    {
        Outcome outcome;
        ipc()->obtainPubKey("7\r\nX-Extra: 1", outcome.cb(), outcome.errCb());
        QTRY_COMPARE(outcome.successes, 1);
        ipc()->obtainPubKey(QString(), outcome.cb(), outcome.errCb());
        QTRY_COMPARE(outcome.successes, 2);
        QCOMPARE(m_server->requests[0].header("customerId"), QByteArray("7X-Extra: 1"));
        QVERIFY(m_server->requests[0].header("X-Extra").isNull());
        QVERIFY(m_server->requests[1].head.contains("\ncustomerId:"));
    }

    void addressComesFromTheSettings()
    {
        Outcome outcome;
        const auto askedAt = [&] {
            const int before = m_server->requests.size();
            ipc()->obtainPubKey("1", outcome.cb(), outcome.errCb());
            return QTest::qWaitFor([&] { return m_server->requests.size() > before; })
                       ? m_server->requests.last().path()
                       : QByteArray();
        };
        ipc()->setMainAuthUrl(QString());
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, m_server->url("/one/api/auth"));
        QCOMPARE(askedAt(), QByteArray("/one/s/mobile/pubkey/obtain"));

        // Once known, the address is not read again; the debugging address replaces it at once.
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, m_server->url("/two/api/auth"));
        QCOMPARE(askedAt(), QByteArray("/one/s/mobile/pubkey/obtain"));
        ConfigUtil::writeValue(ConfigUtil::DEBUGAUTHURL, m_server->url("/debug/api/auth"));
        QCOMPARE(askedAt(), QByteArray("/debug/s/mobile/pubkey/obtain"));
        QTRY_COMPARE(outcome.successes, 3);
    }

private:
    ipc::OrchIpc* ipc() { return ipc::OrchIpc::instance(); }

    SettingsHome m_home;
    QScopedPointer<RawServer> m_server;
};

QTEST_GUILESS_MAIN(IpcTest)
#include "tst_ipc.moc"
