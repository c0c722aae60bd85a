#include "main/FilterDocument.h"
#include "app/Platform.h"
#include "main/ConnectReply.h"
#include "main/DatapathFile.h"
#include "orch/JsonUtil.h"
#include "support/Rows.h"
#include "unit/Files.h"

#include <sys/stat.h>

/// What the datapath gets to read: filter document and agent configuration.
class FilterDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void clean()
    {
        const auto check = [](const QByteArray& received, const QByteArray& cleaned) {
            FilterDocument filter(json(received));
            filter._removeDuplicatesJson();
            filter._rebuildFilterJson({"s1", "s2", "s2"});
            QCOMPARE(filter.bytes(), json(cleaned));
        };
        check("{'whiteIpSet':['w','w'],'blackIpSet':['a',5,'a',null,'s1'],'x':1.5}",
              "{'blackIpSet':['a','s1','s2'],'whiteIpSet':['w'],'x':1.5}");
        check("{ 'whiteIpSet' : ['w'] }", "{'whiteIpSet':['w']}"); // no servers then
        check("{'blackIpSet':'a'}", "{'blackIpSet':['s1','s2']}");
        for (const QByteArray& unchanged :
             {QByteArray("{ 'code' : 0 }\n"), QByteArray("\0\xff{\"", 4), QByteArray("['a']"),
              QByteArray("{'blackIpSet':['a'")})
            check(unchanged, unchanged);
    }

    void logLines()
    {
        const auto check = [](const QByteArray& received, const QStringList& lines) {
            FilterDocument filter(json(received));
            filter._removeDuplicatesJson();
            QCOMPARE(filter.logLines(), lines);
        };
        check("{'whiteIpSet':['w']}", {"Mode: inclusive and exclusive filtering"});
        check("{'ipSetMode':1,'whiteIpSet':['123456789','123456780']}",
              {"Mode: inclusive filtering", "Inclusive filtering 123456789,123456780"});
        check("{'ipSetMode':-1,'blackIpSet':['123456789','12345678901','z']}",
              {"Mode: exclusive filtering", "Exclusive filtering 123456789,1234567890..."});
        check("{'ipSetMode':0,'blackIpSet':[]}",
              {"Mode: inclusive and exclusive filtering", "Inclusive filtering []",
               "Exclusive filtering []"});
    }

    void agentConfiguration()
    {
        ConnectReply reply = ConnectReply::fromJson(JsonUtil::object(
            json("{'orchId':3,'cpeId':9,'customerId':10086,'commuServerAddr':'10.1.1.1:4500',"
                 "'candidateCommServers':['10.1.1.1:4501','10.2.2.2']}")));
        QCOMPARE(reply.cpeAgentConf(),
                 QByteArray("orchid=3\ncpeid=9\ncustomerid=10086\ncommaddr=10.1.1.1:4500\n"
                            "bakcommaddr=10.1.1.1:4501\nbakcommaddr=10.2.2.2\n"));
        QCOMPARE(reply.commServerHosts(), (QStringList{"10.1.1.1", "10.2.2.2"}));
        QVERIFY(reply.addressesFitLines());

        reply = ConnectReply::fromJson(JsonUtil::object("{}"));
        QCOMPARE(reply.cpeAgentConf(), QByteArray("orchid=0\ncpeid=0\ncustomerid=0\ncommaddr=\n"));
        QCOMPARE(reply.commServerHosts(), QStringList{""});
        QVERIFY(reply.addressesFitLines());
    }

    void aReplyWithManyCandidatesIsWrittenWholeAndLookedUpInPart()
    {
        ConnectReply reply;
        for (int i = 0; i < 200; ++i)
            reply.candidateCommServers << QStringLiteral("h%1:80").arg(i / 2);
        QCOMPARE(reply.cpeAgentConf().count('\n'), 204);
        const QStringList hosts = reply.commServerHosts();
        QCOMPARE(hosts.size(), ConnectReply::kMostHosts);
        QCOMPARE(hosts.last(), "h62");
        reply.candidateCommServers.last() = "a\ncustomerid=1";
        QVERIFY(!reply.addressesFitLines());
    }

    void missingReplyFieldsHaveDefaults()
    {
        const ConnectReply reply = ConnectReply::fromJson({});
        QCOMPARE(reply.heartbeatInterval, 10);
        QCOMPARE(reply.cpeId, -1);
        QCOMPARE(reply.filterVersion(), "/-1");
        QCOMPARE(ConnectReply::fromJson({{"orchDomains", QJsonArray{"a", "b"}}}).orchDomains,
                 "a,b");
    }

    void datapathFilesAreReplacedAndLeft()
    {
        QTemporaryDir dir;
        platform().programDir = [&dir] { return dir.path(); };
        const QString path = dir.filePath(kFilterConfig);
        const QString target = dir.filePath("target");
        QVERIFY(QFile::link(target, path)); // leads nowhere, and would make its target
        QVERIFY(replaceDatapathFile(kFilterConfig, "old, and much longer"));
        QVERIFY(!QFile::exists(target));
        QVERIFY(replaceDatapathFile(kFilterConfig, "new"));
        QCOMPARE(readFile(path), QByteArray("new"));
        QVERIFY(!(QFile::permissions(path) & (QFile::ReadGroup | QFile::ReadOther)));
        for (const mode_t mode : {0755, 01777}) {
            QCOMPARE(::chmod(QFile::encodeName(dir.path()).constData(), mode), 0);
            leaveDatapathFiles();
            QCOMPARE(QFile::exists(path), mode == 0755);
        }
    }
};

QTEST_GUILESS_MAIN(FilterDocumentTest)
#include "FilterDocumentTest.moc"
