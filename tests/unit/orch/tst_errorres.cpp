#include "RawServer.h"
#include "SettingsHome.h"

#include "app/Platform.h"
#include "orch/OrchErrRes.h"

#include <QNetworkReply>
#include <QtTest>

namespace {

const QString kPath = QStringLiteral("s/mobile/error/resource/url");

QByteArray document(const char* english)
{
    return QByteArray(R"({"a":{"error_Code":1001,"error_Desc":{"en":")") + english +
           R"(","cn":"中文"},"clientVersionLow":false},)"
           R"("b":{"error_Code":1500,"error_Desc":{"en":"Too old","cn":"旧"},)"
           R"("clientVersionLow":true},"c":7,"d":{"error_Code":"9"}})";
}

QByteArray refusal(const QByteArray& parameters = {})
{
    return R"({"code":1001,"message":"m","parameters":{)" + parameters + "}}";
}

} // namespace

class ErrorResTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_server.reset(new RawServer);
        m_server->answer = [this](const RawServer::Request& request) {
            if (request.path().startsWith("/file/"))
                return RawServer::http(200, document(request.path().mid(6).constData()));
            return RawServer::http(200, "{" + address("v1") + "}");
        };
        store(QByteArray(), QByteArray());
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, m_server->url(QStringLiteral("/api/v2/auth")));
        res()->setCustomerId(QStringLiteral("2000017"));
    }

    void cleanup()
    {
        OrchErrRes::release();
        platform() = Platform();
    }

    void downloadsAndStores()
    {
        res()->loadRes(kPath, QString());
        QTRY_COMPARE(storedVersion(), QStringLiteral("v1"));
        QCOMPARE(m_server->requests[0].path(), QByteArray("/s/mobile/error/resource/url"));
        QCOMPARE(m_server->requests[0].header("customerId"), QByteArray("2000017"));
        QCOMPARE(m_server->requests[0].body, QByteArray());
        QVERIFY(!m_server->requests[1].header("sn").isEmpty());

        platform().isChinese = [] { return false; };
        QCOMPARE(res()->getOrchErrContent(refusal()), QStringLiteral("1001 v1"));
        platform().isChinese = [] { return true; };
        QCOMPARE(res()->getOrchErrContent(refusal()), QStringLiteral("1001 中文"));
        QCOMPARE(res()->getOrchErrContent(R"({"code":1500})"), QStringLiteral("旧"));
        QVERIFY(res()->isVersionLow(1500));
        QVERIFY(!res()->isVersionLow(1001));
        QVERIFY(!res()->isVersionLow(9));
    }

    void currentVersionIsNotDownloadedAgain()
    {
        store("v1", document("stored"));
        res()->loadRes(kPath, m_server->url(QStringLiteral("/api/v2/auth")));
        QTRY_COMPARE(m_server->requests.size(), 1);
        res()->loadRes(kPath, QString()); // complete in memory: nothing is asked
        res()->downloadAndUpdaeRes("{" + address("v1") + "}");
        res()->downloadAndUpdaeRes("{" + address("v2") + "}");
        res()->downloadAndUpdaeRes("{" + address("v2") + "}"); // in flight already
        QTRY_COMPARE(storedVersion(), QStringLiteral("v2"));
        QCOMPARE(downloads(), 1);
        QCOMPARE(m_server->requests.size(), 2);
    }

    void storedCopyServesWhenTheOrchestratorFails()
    {
        platform().isChinese = [] { return false; };
        store("v1", document("stored"));
        m_server->answer = [](const RawServer::Request&) { return RawServer::http(500, "{}"); };
        res()->loadRes(kPath, QString());
        QTRY_COMPARE(m_server->requests.size(), 1);
        QCOMPARE(res()->getOrchErrContent(refusal()), QStringLiteral("1001 stored"));
    }

    void errorReplyNamesANewerResource()
    {
        platform().isChinese = [] { return false; };
        store("v1", document("stored"));
        res()->loadRes(kPath, QString());
        QTRY_COMPARE(m_server->requests.size(), 1);
        QTRY_VERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
        // The text shown now is the one in memory; the next one comes from the new resource.
        QCOMPARE(res()->getOrchErrContent(refusal(address("v3"))), QStringLiteral("1001 stored"));
        QTRY_COMPARE(storedVersion(), QStringLiteral("v3"));
        QCOMPARE(res()->getOrchErrContent(refusal(address("v3"))), QStringLiteral("1001 v3"));
        QCOMPARE(downloads(), 1);
    }

    void failuresLeaveTheResourceAlone_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::newRow("status") << RawServer::http(404, document("new"));
        QTest::newRow("page") << RawServer::http(200, "<html>Sign in</html>");
        QTest::newRow("array") << RawServer::http(200, "[]");
        QTest::newRow("redirect") << RawServer::http(302, "", "Location: /file/v1\r\n");
        QTest::newRow("dropped") << QByteArray();
        QTest::newRow("cut off") << QByteArray(
            "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n{\"a\":{}}");
    }

    void failuresLeaveTheResourceAlone()
    {
        QFETCH(QByteArray, answer);
        platform().isChinese = [] { return false; };
        store("v1", document("stored"));
        res()->loadRes(kPath, QString());
        QTRY_COMPARE(m_server->requests.size(), 1);

        m_server->answer = [&answer](const RawServer::Request&) { return answer; };
        res()->downloadAndUpdaeRes("{" + address("bad") + "}");
        QTRY_VERIFY(downloads() >= 1);
        m_server->answer = [](const RawServer::Request& request) {
            return RawServer::http(200, document(request.path().mid(6).constData()));
        };
        // A failed download may be repeated.
        QTRY_VERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
        QCOMPARE(storedVersion(), QStringLiteral("v1"));
        QCOMPARE(res()->getOrchErrContent(refusal()), QStringLiteral("1001 stored"));
        res()->downloadAndUpdaeRes("{" + address("bad") + "}");
        QTRY_COMPARE(storedVersion(), QStringLiteral("bad"));
    }

    void badAddressesAreLeftAlone_data()
    {
        QTest::addColumn<QByteArray>("body");
        const auto named = [](const char* url) {
            return QByteArray(R"({"errorResourceVersion":"v9","errorResourceDownloadUrl":")") +
                   url + "\"}";
        };
        QTest::newRow("nothing") << QByteArray("{}");
        QTest::newRow("no JSON") << QByteArray("\xff\xfe");
        QTest::newRow("file") << named("file:///etc/hostname");
        QTest::newRow("data") << named("data:,{}");
        QTest::newRow("relative") << named("resource.json");
        QTest::newRow("malformed") << named("http://[::1/");
    }

    void badAddressesAreLeftAlone()
    {
        QFETCH(QByteArray, body);
        res()->downloadAndUpdaeRes(body);
        QVERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
        res()->updateResFromOrch(kPath, QStringLiteral("not an address"));
        QTRY_VERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
        QCOMPARE(storedVersion(), QString());
    }

private:
    OrchErrRes* res() { return OrchErrRes::getInstance(); }
    QByteArray address(const QByteArray& version) const
    {
        return "\"errorResourceVersion\":\"" + version + "\",\"errorResourceDownloadUrl\":\"" +
               m_server->url(QStringLiteral("/file/") + QString::fromLatin1(version)).toUtf8() +
               '"';
    }
    int downloads() const
    {
        int count = 0;
        for (const auto& request : qAsConst(m_server->requests))
            count += request.path().startsWith("/file/");
        return count;
    }
    static QString storedVersion()
    {
        return ConfigUtil::getvalue(ConfigUtil::ORCH_ERROR_VERSION, QString()).toString();
    }
    static void store(const QByteArray& version, const QByteArray& text)
    {
        ConfigUtil::writeValue(ConfigUtil::ORCH_ERROR_VERSION, QString::fromUtf8(version));
        ConfigUtil::writeValue(ConfigUtil::ORCH_ERROR_RES, QString::fromUtf8(text));
    }

    SettingsHome m_home;
    QScopedPointer<RawServer> m_server;
};

QTEST_GUILESS_MAIN(ErrorResTest)
#include "tst_errorres.moc"
