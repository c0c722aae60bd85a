#include "main/HeartbeatReply.h"

#include <QTest>

/// What the answer to a heartbeat orders.
class HeartbeatReplyTest : public QObject
{
    Q_OBJECT

private slots:
    void orders_data()
    {
        QTest::addColumn<QByteArray>("body"); // with ' in place of "
        QTest::addColumn<bool>("chinese");
        QTest::addColumn<QString>("order"); // kind, "+" with reasons, the reason
        const QByteArray both = "'reason_en':'en','reason_zh':'zh'";
        QTest::newRow("none") << QByteArray("{'success':true}") << false << "- ";
        QTest::newRow("disconnect")
            << QByteArray("{'actionDataList':[{'action':1," + both + "}]}") << false << "D+ en";
        QTest::newRow("disconnect, Chinese")
            << QByteArray("{'actionDataList':[{'action':1," + both + "}]}") << true << "D+ zh";
        QTest::newRow("reconnect without reasons")
            << QByteArray("{'actionDataList':[{'action':4}]}") << false << "R ";
        QTest::newRow("one language only")
            << QByteArray("{'actionDataList':[{'action':1,'reason_en':'en'}]}") << false << "D en";
        QTest::newRow("the first counts")
            << QByteArray("{'actionDataList':[{'action':4},{'action':1}]}") << false << "R ";
        QTest::newRow("unknown ones are passed over")
            << QByteArray("{'actionDataList':[{'action':2},{},7,{'action':1}]}") << false << "D ";
        QTest::newRow("another subnet")
            << QByteArray("{'subnetIpChange':true,'mobileDetectFailed':'mz',"
                          "'mobileDetectFailedEn':'me','actionDataList':[{'action':1," +
                          both + "}]}")
            << false << "R+ me";
        QTest::newRow("reasons of the detection, one language")
            << QByteArray("{'mobileDetectFailed':'mz','actionDataList':[{'action':1}]}") << false
            << "D ";
        QTest::newRow("action as text")
            << QByteArray("{'actionDataList':[{'action':'1'}]}") << false << "- ";
        QTest::newRow("list as object") << QByteArray("{'actionDataList':{}}") << false << "- ";
        QTest::newRow("no JSON") << QByteArray("<html>") << false << "- ";
    }

    void orders()
    {
        using Kind = HeartbeatOrder::Kind;
        QFETCH(QByteArray, body);
        QFETCH(bool, chinese);
        const HeartbeatOrder order =
            heartbeatOrder(HeartbeatReply::fromJson(body.replace('\'', '"')), chinese);
        const QString kind = order.kind == Kind::None         ? QStringLiteral("-")
                             : order.kind == Kind::Disconnect ? QStringLiteral("D")
                                                              : QStringLiteral("R");
        QTEST(kind + (order.hasReasons ? "+ " : " ") + order.reason, "order");
    }
};

QTEST_GUILESS_MAIN(HeartbeatReplyTest)
#include "HeartbeatReplyTest.moc"
