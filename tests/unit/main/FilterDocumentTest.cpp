#include "main/FilterDocument.h"
#include "main/ConnectReply.h"
#include "main/DatapathFile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

/// What the datapath gets to read: filter document and agent configuration.
class FilterDocumentTest : public QObject
{
    Q_OBJECT

private slots:
    void clean_data()
    {
        QTest::addColumn<QByteArray>("received");
        QTest::addColumn<QByteArray>("cleaned");
        QTest::newRow("duplicates, other types, servers added")
            << QByteArray(R"({"whiteIpSet":["w","w"],"blackIpSet":["a",5,"a",null,"s1"],"x":1.5})")
            << QByteArray(R"({"blackIpSet":["a","s1","s2"],"whiteIpSet":["w"],"x":1.5})");
        QTest::newRow("no exclusive list, no servers")
            << QByteArray(R"({ "whiteIpSet" : ["w"] })") << QByteArray(R"({"whiteIpSet":["w"]})");
        QTest::newRow("no list: bytes unchanged")
            << QByteArray("{ \"code\" : 0 }\n") << QByteArray("{ \"code\" : 0 }\n");
        QTest::newRow("list of another type")
            << QByteArray(R"({"blackIpSet":"a"})") << QByteArray(R"({"blackIpSet":["s1","s2"]})");
        QTest::newRow("binary") << QByteArray("\0\xff{\"", 4) << QByteArray("\0\xff{\"", 4);
        QTest::newRow("array") << QByteArray("[\"a\"]") << QByteArray("[\"a\"]");
        QTest::newRow("cut off") << QByteArray(R"({"blackIpSet":["a")")
                                 << QByteArray(R"({"blackIpSet":["a")");
    }

    void clean()
    {
        QFETCH(QByteArray, received);
        const QStringList servers{QStringLiteral("s1"), QStringLiteral("s2"), QStringLiteral("s2")};
        QTEST(FilterDocument::clean(received, servers).bytes, "cleaned");
    }

    void logLines_data()
    {
        QTest::addColumn<QByteArray>("received");
        QTest::addColumn<QStringList>("lines");
        const QString both = QStringLiteral("Mode: inclusive and exclusive filtering");
        QTest::newRow("no mode") << QByteArray(R"({"whiteIpSet":["w"]})") << QStringList{both};
        QTest::newRow("inclusive, 20 characters")
            << QByteArray(R"({"ipSetMode":1,"whiteIpSet":["123456789","123456780"]})")
            << QStringList{"Mode: inclusive filtering", "Inclusive filtering 123456789,123456780"};
        QTest::newRow("exclusive, 21 characters")
            << QByteArray(R"({"ipSetMode":-1,"blackIpSet":["123456789","12345678901","z"]})")
            << QStringList{"Mode: exclusive filtering",
                           "Exclusive filtering 123456789,1234567890..."};
        QTest::newRow("both, empty")
            << QByteArray(R"({"ipSetMode":0,"blackIpSet":[]})")
            << QStringList{both, "Inclusive filtering []", "Exclusive filtering []"};
    }

    void logLines()
    {
        QFETCH(QByteArray, received);
        QTEST(FilterDocument::clean(received, {}).logLines(), "lines");
    }

    void agentConfiguration_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QByteArray>("conf");
        QTest::addColumn<QStringList>("hosts");
        QTest::newRow("candidates")
            << QByteArray(R"({"orchId":3,"cpeId":9,"customerId":10086,)"
                          R"("commuServerAddr":"10.1.1.1:4500",)"
                          R"("candidateCommServers":["10.1.1.1:4501","10.2.2.2"]})")
            << QByteArray("orchid=3\ncpeid=9\ncustomerid=10086\ncommaddr=10.1.1.1:4500\n"
                          "bakcommaddr=10.1.1.1:4501\nbakcommaddr=10.2.2.2\n")
            << QStringList{"10.1.1.1", "10.2.2.2"};
        QTest::newRow("empty") << QByteArray("{}")
                               << QByteArray("orchid=0\ncpeid=0\ncustomerid=0\ncommaddr=\n")
                               << QStringList{""};
    }

    void agentConfiguration()
    {
        QFETCH(QByteArray, body);
        const ConnectReply reply = ConnectReply::fromJson(body);
        QTEST(reply.cpeAgentConf(), "conf");
        QTEST(reply.commServerHosts(), "hosts");
    }

    void missingReplyFieldsHaveDefaults()
    {
        const ConnectReply reply = ConnectReply::fromJson("no json");
        QCOMPARE(reply.heartbeatInterval, 10);
        QCOMPARE(reply.cpeId, -1);
        QCOMPARE(reply.filterVersion(), QStringLiteral("/-1"));
        QCOMPARE(ConnectReply::fromJson(R"({"orchDomains":["a","b"]})").orchDomains,
                 QStringLiteral("a,b"));
    }

    void aFileThatCannotBeReplacedIsReported()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("x.conf"));
        QVERIFY(replaceDatapathFile(path, "old, and much longer"));
        QVERIFY(replaceDatapathFile(path, "new"));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("new"));
        // A folder in the file's place can neither be removed as a file nor opened.
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("y.conf")));
        QTest::ignoreMessage(QtCriticalMsg,
                             QRegularExpression(QStringLiteral("Can not remove .*y.conf")));
        QVERIFY(!replaceDatapathFile(dir.filePath(QStringLiteral("y.conf")), "new"));
    }
};

QTEST_GUILESS_MAIN(FilterDocumentTest)
#include "FilterDocumentTest.moc"
