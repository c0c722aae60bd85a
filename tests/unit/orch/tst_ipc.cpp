#include "RawServer.h"
#include "SettingsHome.h"

#include "orch/MaskSecrets.h"
#include "orch/OrchIpc.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPointer>
#include <QtTest>

#include <memory>

namespace {

QString s_log;

void keepLog(QtMsgType, const QMessageLogContext&, const QString& text)
{
    s_log += text + '\n';
}

/// Counts the callbacks of one request.
struct Outcome
{
    int successes = 0;
    int errors = 0;
    int status = 0;
    QNetworkReply::NetworkError error = QNetworkReply::NoError;
    QByteArray body;
    QPointer<QNetworkReply> reply;

    ipc::OrchIpcCbFunc cb()
    {
        return [this](const QByteArray& received) {
            ++successes;
            body = received;
        };
    }
    ipc::OrchIpcErrCbFunc errCb()
    {
        return [this](const QByteArray& received, QNetworkReply* failed) {
            ++errors;
            body = received;
            reply = failed;
            error = failed->error();
            status = failed->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        };
    }
    int total() const { return successes + errors; }
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
        ipc()->setMainAuthUrl(authUrl());
    }

    void outcomes_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("success");
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("bodySize");
        const auto http = &RawServer::http;
        QTest::newRow("object") << http(200, "{}", {}) << true << 0 << 2;
        QTest::newRow("no JSON") << http(200, "<html>", {}) << true << 0 << 6;
        QTest::newRow("megabytes")
            << http(200, QByteArray(8 * 1024 * 1024, 'x'), {}) << true << 0 << 8 * 1024 * 1024;
        QTest::newRow("code") << http(200, R"({"code":1007})", {}) << false << 200 << 13;
        QTest::newRow("error object")
            << http(200, R"({"code":0,"errorInfo":{"a":1}})", {}) << false << 200 << 30;
        QTest::newRow("server error") << http(502, "<html>", {}) << false << 502 << 6;
        QTest::newRow("unauthorised") << http(401, R"({"code":401})", {}) << false << 401 << 12;
        QTest::newRow("redirect") << http(302, "", "Location: /elsewhere\r\n") << false << 302 << 0;
        QTest::newRow("dropped") << QByteArray() << false << 0 << 0;
        QTest::newRow("no HTTP") << QByteArray("garbage\r\n\r\n") << false << 0 << 0;
        QTest::newRow("body cut off")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 50\r\n\r\n{\"a\":1") << false << 200
            << 6;
    }

    void outcomes()
    {
        QFETCH(QByteArray, answer);
        QFETCH(bool, success);
        const auto kept = std::make_shared<int>(); // a callback holds it as long as it is kept
        m_server->answer = [&answer](const RawServer::Request&) { return answer; };
        Outcome outcome;
        ipc()->obtainPubKey(
            QStringLiteral("2000017"),
            [kept, cb = outcome.cb()](const QByteArray& body) { cb(body); }, outcome.errCb());
        QTRY_COMPARE(outcome.total(), 1);
        QCOMPARE(outcome.successes, success ? 1 : 0);
        QCOMPARE(kept.use_count(), 1L);
        QTEST(outcome.status, "status");
        QTEST(outcome.body.size(), "bodySize");
        for (const auto& request : qAsConst(m_server->requests))
            QCOMPARE(request.path(), QByteArray("/s/mobile/pubkey/obtain"));
        QTRY_VERIFY(outcome.reply.isNull());

        // By the time another request has been answered, a second call would have come.
        m_server->answer = [](const RawServer::Request&) { return RawServer::http(200, "{}"); };
        Outcome other;
        ipc()->authConfig(QStringLiteral("2000017"), other.cb(), other.errCb());
        QTRY_COMPARE(other.successes, 1);
        QCOMPARE(outcome.total(), 1);
    }

    void callbacksMaySendAndWait()
    {
        m_server->answer = [](const RawServer::Request& request) {
            return RawServer::http(request.path().endsWith("obtain") ? 500 : 200, "{}");
        };
        int errors = 0;
        int inner = 0;
        bool replyLived = false;
        ipc()->obtainPubKey(
            QStringLiteral("1"), nullptr, [&](const QByteArray&, QNetworkReply* raw) {
                ++errors;
                const QPointer<QNetworkReply> reply(raw);
                for (int i = 0; i < 3; ++i) {
                    QEventLoop loop;
                    const auto done = [&](const QByteArray&) {
                        ++inner;
                        loop.quit();
                    };
                    ipc()->authConfig(QStringLiteral("1"), done, nullptr);
                    loop.exec();
                }
                replyLived = !reply.isNull() && reply->error() != QNetworkReply::NoError;
            });
        QTRY_COMPARE(errors, 1);
        QTRY_COMPARE(inner, 3);
        QVERIFY(replyLived);
    }

    void missingCallbacksAreSkipped()
    {
        m_server->answer = [](const RawServer::Request& request) {
            return RawServer::http(request.path().endsWith("obtain") ? 500 : 200, "{}");
        };
        Outcome last;
        ipc()->obtainPubKey(QStringLiteral("1"), last.cb(), nullptr);
        ipc()->authConfig(QStringLiteral("1"), nullptr, last.errCb());
        ipc()->queryOrchUpgrade(QStringLiteral("1"), nullptr, nullptr);
        QTRY_COMPARE(m_server->requests.size(), 3);
        ipc()->getCustomerLogo(QStringLiteral("1"), last.cb(), last.errCb());
        QTRY_COMPARE(last.successes, 1);
        QCOMPARE(last.errors, 0);
    }

    void timeOutIsACancelledOperation()
    {
        m_server->silent = true;
        OrchRequest request;
        request.url = QUrl(m_server->url(QStringLiteral("/")));
        request.timeoutMs = 50;
        QNetworkAccessManager manager;
        QNetworkReply* reply = sendOrchRequest(manager, request);
        QTRY_VERIFY(reply->isFinished());
        QCOMPARE(reply->error(), QNetworkReply::OperationCanceledError);
        QVERIFY(!reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid());
    }

    void foreignSchemesEndAsErrors_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("empty") << QString();
        QTest::newRow("relative") << QStringLiteral("poll/1");
        QTest::newRow("file") << QStringLiteral("file:///etc/hostname");
        QTest::newRow("data") << QStringLiteral("data:application/json,{}");
        QTest::newRow("malformed") << QStringLiteral("http://[::1/x");
        QTest::newRow("nobody there") << QStringLiteral("http://127.0.0.1:1/");
    }

    void foreignSchemesEndAsErrors()
    {
        QFETCH(QString, address);
        Outcome outcome;
        ipc()->asynAuthPoll({QStringLiteral("1"), address}, outcome.cb(), outcome.errCb());
        QTRY_COMPARE(outcome.total(), 1);
        QCOMPARE(outcome.errors, 1);
        QCOMPARE(outcome.status, 0);
    }

    void headersCannotBeSplit()
    {
        Outcome outcome;
        ipc()->obtainPubKey(QStringLiteral("7\r\nX-Extra: 1"), outcome.cb(), outcome.errCb());
        ipc()->obtainPubKey(QString(), outcome.cb(), outcome.errCb());
        QTRY_COMPARE(outcome.successes, 2);
        QCOMPARE(m_server->requests[0].header("customerId"), QByteArray("7X-Extra: 1"));
        QVERIFY(m_server->requests[0].header("X-Extra").isNull());
        QVERIFY(m_server->requests[1].head.contains("\ncustomerId:"));
    }

    void addressComesFromTheSettings()
    {
        Outcome outcome;
        const auto ask = [&] {
            ipc()->obtainPubKey(QStringLiteral("1"), outcome.cb(), outcome.errCb());
        };
        ipc()->setMainAuthUrl(QString());
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, m_server->url(QStringLiteral("/one/api/auth")));
        ask();
        QTRY_COMPARE(outcome.successes, 1);
        QCOMPARE(m_server->requests.last().path(), QByteArray("/one/s/mobile/pubkey/obtain"));

        // Once known, the address is not read again; the debugging address replaces it at once.
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, m_server->url(QStringLiteral("/two/api/auth")));
        ask();
        QTRY_COMPARE(outcome.successes, 2);
        QCOMPARE(m_server->requests.last().path(), QByteArray("/one/s/mobile/pubkey/obtain"));
        ConfigUtil::writeValue(ConfigUtil::DEBUGAUTHURL,
                               m_server->url(QStringLiteral("/debug/api/auth")));
        ask();
        QTRY_COMPARE(outcome.successes, 3);
        QCOMPARE(m_server->requests.last().path(), QByteArray("/debug/s/mobile/pubkey/obtain"));
    }

    void secretsStayOutOfTheLog()
    {
        ConfigUtil::writeValue(ConfigUtil::TOKEN, QStringLiteral("SECRETtoken"));
        ipc::LoginParams params;
        params.customerId = QStringLiteral("1");
        params.username = QStringLiteral("alice");
        params.password = QStringLiteral("SECRETpassword");
        params.otpMiddleToken = QStringLiteral("SECRETmiddle");
        params.verifyNum = QStringLiteral("SECRETcode");
        Outcome outcome;
        s_log.clear();
        const QtMessageHandler previous = qInstallMessageHandler(&keepLog);
        ipc()->sendLoginRequest(params, outcome.cb(), outcome.errCb());
        params.encryptedUsername = QStringLiteral("SECRETuser");
        params.encryptedPassword = QStringLiteral("SECRETencrypted");
        ipc()->sendLoginRequest(params, outcome.cb(), outcome.errCb());
        ipc()->connect2Orch({QStringLiteral("1"), ipc::DisConnNormalReason}, outcome.cb(),
                            outcome.errCb());
        qInstallMessageHandler(previous);
        QVERIFY(s_log.contains(QLatin1String("alice")));
        QVERIFY(s_log.contains(QLatin1String("Connect param {")));
        QVERIFY2(!s_log.contains(QLatin1String("SECRET")), qPrintable(s_log));
        QTRY_COMPARE(outcome.successes, 3);
        // They did go out, each to where it belongs.
        QByteArray bodies;
        QByteArrayList tokens;
        for (const auto& request : qAsConst(m_server->requests)) {
            bodies += request.body;
            if (request.path().endsWith("/connect"))
                tokens.append(request.header("X-TQ-AUTH-HEADER"));
        }
        QVERIFY(bodies.contains("SECRETpassword") && bodies.contains("SECRETencrypted"));
        QCOMPARE(tokens, QByteArrayList{"SECRETtoken"});
    }

private:
    ipc::OrchIpc* ipc() { return ipc::OrchIpc::instance(); }
    QString authUrl() const { return m_server->url(QStringLiteral("/api/mobile/v2/auth")); }

    SettingsHome m_home;
    QScopedPointer<RawServer> m_server;
};

QTEST_GUILESS_MAIN(IpcTest)
#include "tst_ipc.moc"
