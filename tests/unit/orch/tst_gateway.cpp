#include "orch/Gateway.h"
#include "orch/Util.h"

#include <QFile>
#include <QtEndian>
#include <QtTest>

#include <linux/rtnetlink.h>
#include <sys/socket.h>

using State = RouteChunk::State;
Q_DECLARE_METATYPE(RouteChunk::State)

namespace {

template <typename Record>
QByteArray bytesOf(const Record& record)
{
    return QByteArray(reinterpret_cast<const char*>(&record), sizeof record);
}

QByteArray attribute(quint16 type, const QByteArray& payload, int length = -1)
{
    rtattr header{};
    header.rta_len = static_cast<quint16>(length < 0 ? 4 + payload.size() : length);
    header.rta_type = type;
    QByteArray bytes = bytesOf(header) + payload;
    return bytes.append(QByteArray((4 - bytes.size() % 4) % 4, '\0'));
}

QByteArray message(quint16 type, const QByteArray& payload, quint16 flags = NLM_F_MULTI,
                   int length = -1)
{
    nlmsghdr header{};
    header.nlmsg_len = static_cast<quint32>(length < 0 ? 16 + payload.size() : length);
    header.nlmsg_type = type;
    header.nlmsg_flags = flags;
    return bytesOf(header) + payload;
}

QByteArray route(quint8 family, quint8 table, const QByteArray& attributes)
{
    rtmsg body{};
    body.rtm_family = family;
    body.rtm_table = table;
    return message(RTM_NEWROUTE, bytesOf(body) + attributes);
}

const QByteArray kRouter = QByteArrayLiteral("\xc0\xa8\x01\x01"); // 192.168.1.1 on the wire
const QByteArray kOther = QByteArrayLiteral("\x0a\x00\x00\x01");

QByteArray via(const QByteArray& gateway)
{
    return attribute(RTA_OIF, QByteArray("\2\0\0\0", 4)) + attribute(RTA_GATEWAY, gateway);
}

QByteArray done()
{
    return message(NLMSG_DONE, QByteArray(4, '\0'));
}

} // namespace

class GatewayTest : public QObject
{
    Q_OBJECT

private slots:
    void parses_data()
    {
        QTest::addColumn<QByteArray>("dump");
        QTest::addColumn<QByteArray>("gateway");
        const QByteArray none(4, '\0');
        QTest::newRow("empty") << QByteArray() << none;
        QTest::newRow("plain") << route(AF_INET, RT_TABLE_MAIN, via(kRouter)) + done() << kRouter;
        QTest::newRow("after other tables and families")
            << route(AF_INET, RT_TABLE_LOCAL, via(kOther)) +
                   route(AF_INET6, RT_TABLE_MAIN, attribute(RTA_GATEWAY, QByteArray(16, 'x'))) +
                   message(RTM_NEWLINK, QByteArray(40, 'x')) +
                   route(AF_INET, RT_TABLE_MAIN, via(kRouter))
            << kRouter;
        QTest::newRow("the first main route decides")
            << route(AF_INET, RT_TABLE_MAIN, attribute(RTA_OIF, QByteArray(4, '\1'))) +
                   route(AF_INET, RT_TABLE_MAIN, via(kOther))
            << none;
        QTest::newRow("first gateway of several")
            << route(AF_INET, RT_TABLE_MAIN, via(kRouter) + via(kOther)) << kRouter;
        QTest::newRow("padded attribute before it")
            << route(AF_INET, RT_TABLE_MAIN, attribute(RTA_PRIORITY, "ab") + via(kRouter))
            << kRouter;
        QTest::newRow("attribute of length 0")
            << route(AF_INET, RT_TABLE_MAIN, attribute(RTA_OIF, "1234", 0) + via(kRouter)) << none;
        QTest::newRow("attribute beyond the message")
            << route(AF_INET, RT_TABLE_MAIN, attribute(RTA_GATEWAY, kRouter, 400)) +
                   QByteArray(500, 1)
            << none;
        QTest::newRow("short gateway")
            << route(AF_INET, RT_TABLE_MAIN, attribute(RTA_GATEWAY, "ab")) << none;
        QTest::newRow("message of length 0")
            << message(RTM_NEWROUTE, QByteArray(20, '\0'), NLM_F_MULTI, 0) +
                   route(AF_INET, RT_TABLE_MAIN, via(kRouter))
            << none;
        QTest::newRow("huge length")
            << message(RTM_NEWROUTE, QByteArray(20, '\0'), NLM_F_MULTI, -2147483647) << none;
        QTest::newRow("route message cut short")
            << message(RTM_NEWROUTE, QByteArray(8, '\2')) << none;
    }

    void parses()
    {
        QFETCH(QByteArray, dump);
        QFETCH(QByteArray, gateway);
        const quint32 found = parseDefaultGateway(dump);
        QCOMPARE(bytesOf(found).toHex(), gateway.toHex());
    }

    void everyTruncationIsSafe()
    {
        const QByteArray dump = route(AF_INET6, RT_TABLE_MAIN, via(kOther)) +
                                route(AF_INET, RT_TABLE_MAIN, via(kRouter)) + done();
        // Copies of exactly the length, so that reading beyond the end is seen by a sanitizer.
        for (int size = 0; size <= dump.size(); ++size) {
            const QByteArray cut(dump.constData(), size);
            const bool whole = size >= dump.size() - done().size();
            QCOMPARE(parseDefaultGateway(cut) != 0, whole);
            checkRouteChunk(cut);
        }
        for (int at = 0; at < dump.size(); ++at) {
            QByteArray damaged = dump;
            damaged[at] = char(0xff);
            parseDefaultGateway(damaged);
            checkRouteChunk(damaged);
        }
    }

    void chunks_data()
    {
        QTest::addColumn<QByteArray>("chunk");
        QTest::addColumn<RouteChunk::State>("state");
        QTest::addColumn<int>("type");
        const QByteArray one = route(AF_INET, RT_TABLE_MAIN, via(kRouter));
        QTest::newRow("goes on") << one + one << State::More << int(RTM_NEWROUTE);
        QTest::newRow("done alone") << done() << State::Done << int(NLMSG_DONE);
        QTest::newRow("done behind routes") << one + done() << State::Done << int(NLMSG_DONE);
        QTest::newRow("not multi-part")
            << message(RTM_NEWROUTE, QByteArray(12, '\0'), 0) << State::Done << int(RTM_NEWROUTE);
        QTest::newRow("nothing") << QByteArray() << State::Invalid << 0;
        QTest::newRow("short") << one.left(15) << State::Invalid << 0;
        QTest::newRow("length below a header")
            << message(RTM_NEWROUTE, QByteArray(), NLM_F_MULTI, 15) << State::Invalid
            << int(RTM_NEWROUTE);
        QTest::newRow("length beyond the data")
            << one.left(40) << State::Invalid << int(RTM_NEWROUTE);
        QTest::newRow("error") << message(NLMSG_ERROR, QByteArray(20, '\0')) << State::Invalid
                               << int(NLMSG_ERROR);
    }

    void chunks()
    {
        QFETCH(QByteArray, chunk);
        const RouteChunk verdict = checkRouteChunk(chunk);
        QTEST(verdict.state, "state");
        QTEST(verdict.messageType, "type");
    }

    void facing_data()
    {
        QTest::addColumn<quint32>("gateway");
        QTest::addColumn<QString>("address");
        QTest::newRow("second interface") << 0xC0A80101U << QStringLiteral("192.168.1.20");
        QTest::newRow("host route only for itself") << 0x0A080002U << QStringLiteral("10.8.0.2");
        QTest::newRow("loopback") << 0x7F000001U << QString();
        QTest::newRow("no subnet") << 0x08080808U << QString();
        QTest::newRow("no gateway") << 0U << QString();
    }

    void facing()
    {
        QFETCH(quint32, gateway);
        const QVector<HostInterface> interfaces{
            {true, true, {{0x7F000001, 8}}},
            {true, false, {{0x0A080002, 32}, {0x08080807, -1}}},
            {true, false, {{0xAC100005, 16}, {0xC0A80114, 24}}},
        };
        QTEST(addressFacing(interfaces, gateway), "address");
    }

    void agreesWithTheKernelsTable()
    {
        QFile table(QStringLiteral("/proc/net/route"));
        if (!table.open(QIODevice::ReadOnly))
            QSKIP("no /proc/net/route here");
        const QByteArray firstRoute = table.readAll().split('\n').value(1);
        // The table prints the value as it lies in memory, in network byte order.
        const quint32 expected = firstRoute.split('\t').value(2).toUInt(nullptr, 16);
        bool ok = false;
        QCOMPARE(Util::getGateway(&ok), expected);
        QVERIFY(ok);
        QCOMPARE(Util::getNICIp(), addressFacing(hostInterfaces(), qFromBigEndian(expected)));
    }
};

QTEST_GUILESS_MAIN(GatewayTest)
#include "tst_gateway.moc"
