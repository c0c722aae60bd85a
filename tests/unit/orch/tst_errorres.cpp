#include "RawServer.h"
#include "SettingsHome.h"

#include "app/Platform.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchReply.h"
#include "support/Rows.h"

#include <QNetworkReply>

namespace {

const QString kPath = "s/mobile/error/resource/url";

QByteArray document(const QByteArray& english)
{
    return json("{'a':{'error_Code':1001,'error_Desc':{'en':'" + english +
                "','cn':'中文'},'clientVersionLow':false},"
                "'b':{'error_Code':1500,'error_Desc':{'en':'Too old','cn':'旧'},"
                "'clientVersionLow':true},'c':7,'d':{'error_Code':'9'}}");
}

QByteArray bytes(const QJsonObject& object)
{
    return QJsonDocument(object).toJson();
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
                return RawServer::http(200, document(request.path().mid(6)));
            return RawServer::http(200, bytes(address("v1")));
        };
        platform().isChinese = [] { return false; };
        store("", "");
        ConfigUtil::writeValue(ConfigUtil::AUTHURL, m_server->url("/api/v2/auth"));
        res()->setCustomerId("2000017");
    }

    void cleanup()
    {
        OrchErrRes::release();
        platform() = Platform();
    }

    void downloadsAndStores()
    {
        res()->loadRes(kPath, QString());
        QTRY_COMPARE(storedVersion(), "v1");
        QCOMPARE(textOf(refusal()), "1001 v1");
        platform().isChinese = [] { return true; };
        QCOMPARE(textOf(refusal()), "1001 中文");
        QCOMPARE(textOf(R"({"code":1500})"), "旧");
        QVERIFY(res()->isVersionLow(1500));
        QVERIFY(!res()->isVersionLow(1001));
        QVERIFY(!res()->isVersionLow(9));
    }

    void currentVersionIsNotDownloadedAgain()
    {
        loadStored(m_server->url("/api/v2/auth"));
        res()->loadRes(kPath, QString()); // complete in memory: nothing is asked
        res()->downloadAndUpdaeRes(address("v1"));
        res()->downloadAndUpdaeRes(address("v2"));
        res()->downloadAndUpdaeRes(address("v2")); // in flight already
        QTRY_COMPARE(storedVersion(), "v2");
        QCOMPARE(downloads(), 1);
        QCOMPARE(m_server->requests.size(), 2);
        res()->downloadAndUpdaeRes(address("error/resource/url")); // an address as good as any
        QTRY_COMPARE(storedVersion(), "error/resource/url");
    }

    void storedCopyServesWhenTheOrchestratorFails()
    {
        m_server->answer = [](const RawServer::Request&) { return RawServer::http(500, "{}"); };
        loadStored();
        QCOMPARE(textOf(refusal()), "1001 stored");
    }

    void errorReplyNamesANewerResource()
    {
        loadStored();
        QTRY_VERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
        // The text shown now is the one in memory; the next one comes from the new resource.
        QCOMPARE(textOf(refusal(address("v3"))), "1001 stored");
        QTRY_COMPARE(storedVersion(), "v3");
        QCOMPARE(textOf(refusal(address("v3"))), "1001 v3");
        QCOMPARE(downloads(), 1);
    }

    void failuresLeaveTheResourceAlone()
    {
        const auto row = checked([this](const QByteArray& answer) {
            cleanup();
            init();
            loadStored();
            const auto usual = std::exchange(
                m_server->answer, [&answer](const RawServer::Request&) { return answer; });
            res()->downloadAndUpdaeRes(address("bad"));
            QTRY_VERIFY(downloads() >= 1);
            m_server->answer = usual;
            // A failed download may be repeated.
            QTRY_VERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
            QCOMPARE(storedVersion(), "v1");
            QCOMPARE(textOf(refusal()), "1001 stored");
            res()->downloadAndUpdaeRes(address("bad"));
            QTRY_COMPARE(storedVersion(), "bad");
        });
        row("status", RawServer::http(404, document("new")));
        row("page", RawServer::http(200, "<html>Sign in</html>"));
        row("array", RawServer::http(200, "[]"));
        row("redirect", RawServer::http(302, "", "Location: /file/v1\r\n"));
        row("dropped", "");
        row("cut off", "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n{\"a\":{}}");
    }

    void badAddressesAreLeftAlone()
    {
        for (const char* url :
             {"file:///etc/hostname", "data:,{}", "resource.json", "http://[::1/"})
            res()->downloadAndUpdaeRes(
                {{"errorResourceVersion", "v9"}, {"errorResourceDownloadUrl", url}});
        res()->downloadAndUpdaeRes({});
        QVERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
        res()->updateResFromOrch(kPath, "not an address");
        QTRY_VERIFY(res()->findChildren<QNetworkReply*>().isEmpty());
        QCOMPARE(storedVersion(), QString());
    }

private:
    QString textOf(const QByteArray& body) { return res()->getOrchErrContent(OrchReply(body)); }

    OrchErrRes* res() { return OrchErrRes::getInstance(); }
    QJsonObject address(const QString& version) const
    {
        return {{"errorResourceVersion", version},
                {"errorResourceDownloadUrl", m_server->url("/file/" + version)}};
    }
    static QByteArray refusal(const QJsonObject& parameters = {})
    {
        return bytes({{"code", 1001}, {"message", "m"}, {"parameters", parameters}});
    }
    /// With a document in the settings, asks for the newest once.
    void loadStored(const QString& authUrl = {})
    {
        store("v1", document("stored"));
        res()->loadRes(kPath, authUrl);
        QTRY_COMPARE(m_server->requests.size(), 1);
    }
    int downloads() const
    {
        int count = 0;
        for (const auto& request : qAsConst(m_server->requests))
            count += request.path().startsWith("/file/");
        return count;
    }
    static QString storedVersion() { return ConfigUtil::savedText(ConfigUtil::ORCH_ERROR_VERSION); }
    static void store(const QString& version, const QString& text)
    {
        ConfigUtil::writeValue(ConfigUtil::ORCH_ERROR_VERSION, version);
        ConfigUtil::writeValue(ConfigUtil::ORCH_ERROR_RES, text);
    }

    SettingsHome m_home;
    QScopedPointer<RawServer> m_server;
};

QTEST_GUILESS_MAIN(ErrorResTest)
#include "tst_errorres.moc"
