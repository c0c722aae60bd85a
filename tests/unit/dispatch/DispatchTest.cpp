#include "app/Platform.h"
#include "dispatch/DispatchTool.h"
#include "dispatch/FlowText.h"
#include "dispatch/tarvelinGetFlowStatistics.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

QByteArray message(quint8 version, quint8 module, quint16 type, quint32 length,
                   const QByteArray& payload)
{
    QByteArray bytes(8, '\0');
    bytes[0] = char(version);
    bytes[1] = char(module);
    std::memcpy(bytes.data() + 2, &type, 2);
    std::memcpy(bytes.data() + 4, &length, 4);
    return bytes + payload;
}

QByteArray reply(const QByteArray& payload)
{
    return message(0, 2, 16, quint32(8 + payload.size()), payload);
}

// A listener on a free port that the client is told of; nobody accepts by itself.
class Listener
{
public:
    Listener() : m_listener(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        ::bind(m_listener, reinterpret_cast<sockaddr*>(&address), size);
        ::listen(m_listener, 1);
        ::getsockname(m_listener, reinterpret_cast<sockaddr*>(&address), &size);
        dispatch::port = ntohs(address.sin_port);
    }
    ~Listener() { ::close(m_listener); }

protected:
    int m_listener;
};

// A dispatch service that answers each request of one connection with the next given bytes and
// then closes, or stays silent when there is nothing left and `hold` is set.
class Service : public Listener
{
public:
    Service(QList<QByteArray> answers, bool hold = false)
    {
        m_thread = std::thread([this, answers, hold] { serve(answers, hold); });
    }

    ~Service()
    {
        TQ_GetFlowStatisticsExit();
        ::shutdown(m_listener, SHUT_RDWR);
        m_thread.join();
    }

    QByteArray lastRequest; ///< read after the answer has arrived

private:
    void serve(QList<QByteArray> answers, bool hold)
    {
        const int peer = ::accept(m_listener, nullptr, nullptr);
        if (peer < 0)
            return;
        while (!answers.isEmpty() || hold) {
            char request[8];
            if (::recv(peer, request, sizeof request, MSG_WAITALL) != ssize_t(sizeof request))
                break;
            lastRequest = QByteArray(request, sizeof request);
            if (answers.isEmpty())
                continue;
            const QByteArray answer = answers.takeFirst();
            ::send(peer, answer.constData(), size_t(answer.size()), MSG_NOSIGNAL);
        }
        ::close(peer);
    }

    std::thread m_thread;
};

struct Flow
{
    long long up = -1;
    long long down = -1;
    bool tunDown = false;
    bool hasTunnels = false;

    int ask() { return TQ_DispatchGetFlow(&up, &down, &tunDown, &hasTunnels); }
};

const QByteArray kUp = "State: UP\nTunnel(txbytes/rxbytes/txpkts/rxpkts): 5,6,1,1\n";

} // namespace

/// The dispatch protocol against a service that does and does not keep to it.
class DispatchTest : public QObject
{
    Q_OBJECT

private slots:
    void scan_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<qlonglong>("up");
        QTest::addColumn<qlonglong>("down");
        QTest::addColumn<bool>("tunDown");
        QTest::addColumn<bool>("hasTunnels");
        const QByteArray counters = "Tunnel(txbytes/rxbytes/txpkts/rxpkts):";
        QTest::newRow("second tunnel up")
            << "State: INIT\n" + counters + " 100,200,1,2\nState: UP\n" + counters + " 1000,2000"
            << 1100LL << 2200LL << false << true;
        QTest::newRow("none up") << "State: DOWN " + counters + " 7,8" << 7LL << 8LL << true
                                 << true;
        QTest::newRow("no state") << counters + " 7,8" << 0LL << 0LL << true << false;
        QTest::newRow("state without counters")
            << QByteArray("State: UP") << 0LL << 0LL << false << false;
        QTest::newRow("states after UP are not looked at")
            << "State: UP " + counters + "1,1 State: DOWN " + counters + "2,2" << 3LL << 3LL
            << false << true;
        QTest::newRow("unreadable counters repeat the last ones")
            << "State: UP " + counters + " 4,5 " + counters + " x " + counters + " 6;7" << 14LL
            << 15LL << false << true;
        QTest::newRow("empty") << QByteArray() << 0LL << 0LL << true << false;
        QTest::newRow("beyond the range")
            << "State: UP " + counters + " 99999999999999999999,1 " + counters + " 0,1"
            << std::numeric_limits<qlonglong>::max() << 2LL << false << true;
    }

    void scan()
    {
        QFETCH(QByteArray, text);
        const FlowTotals totals = scanFlowText(text.constData());
        QTEST(totals.upSize, "up");
        QTEST(totals.downSize, "down");
        QTEST(totals.tunDown, "tunDown");
        QTEST(totals.hasTunnels, "hasTunnels");
    }

    void exchange_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("hold");
        QTest::addColumn<int>("result");
        QTest::newRow("well formed") << reply(kUp) << false << 0;
        QTest::newRow("larger than the buffer") << reply(QByteArray(9992, ' ') + kUp) << false << 0;
        QTest::newRow("exactly the buffer")
            << reply(QByteArray(4088 - kUp.size(), ' ') + kUp) << false << 0;
        QTest::newRow("other version") << message(1, 2, 16, 8, {}) << false << -EBADR;
        QTest::newRow("closed in the header") << QByteArray("\0\2\20", 3) << false << -EIO;
        QTest::newRow("closed in the payload")
            << message(0, 2, 16, 100, "State: ") << false << -EIO;
        QTest::newRow("silent") << message(0, 2, 16, 100, "State: ") << true << -EIO;
        QTest::newRow("absurd length") << message(0, 2, 16, 0xffffffffu, "x") << false << -ENOMEM;
        QTest::newRow("length below the header") << message(0, 2, 16, 3, {}) << false << 0;
    }

    void exchange()
    {
        QFETCH(QByteArray, answer);
        QFETCH(bool, hold);
        QFETCH(int, result);
        Service service({answer}, hold);
        QCOMPARE(TQ_GetFlowStatisticsInit(), 0);
        Flow flow;
        QCOMPARE(flow.ask(), result);
        QCOMPARE(service.lastRequest, message(0, 2, 16, 8, {}));
        if (result != 0) {
            QCOMPARE(flow.up, 0LL);
            QCOMPARE(flow.tunDown, false);
            QCOMPARE(flow.hasTunnels, true);
        } else if (answer.contains(kUp)) {
            QCOMPARE(flow.up, 5LL);
            QCOMPARE(flow.down, 6LL);
        }
    }

    void aFailedExchangeConnectsAgainToTheNewPort()
    {
        {
            Service first({reply(kUp)});
            Flow flow;
            QCOMPARE(flow.ask(), 0);
            QCOMPARE(flow.ask(), -EIO); // the service has closed
        }
        Service second({reply(kUp), reply(kUp)});
        Flow flow;
        QCOMPARE(flow.ask(), 0);
        QCOMPARE(flow.ask(), 0);
        TQ_GetFlowStatisticsExit();
    }

    void aServiceThatNeverAcceptsIsGivenUp()
    {
        // The listener's queue is filled; the kernel then leaves further connections waiting.
        Listener crowded;
        QVector<int> queue;
        for (int i = 0; i < 8; ++i) {
            sockaddr_in address{};
            address.sin_family = AF_INET;
            address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
            address.sin_port = htons(quint16(dispatch::port));
            queue << ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            ::connect(queue.last(), reinterpret_cast<sockaddr*>(&address), sizeof address);
        }
        QCOMPARE(TQ_GetFlowStatisticsInit(), -1);
        for (const int sock : qAsConst(queue))
            ::close(sock);
    }

    void nobodyListens()
    {
        dispatch::port = 1;
        QCOMPARE(TQ_GetFlowStatisticsInit(), -1);
        Flow flow;
        QCOMPARE(flow.ask(), -1);
    }

    void captureFolderAnswer_data()
    {
        QTest::addColumn<QByteArray>("output");
        QTest::addColumn<QString>("folder");
        QTest::newRow("answer") << QByteArray("x\n ##############--\n/tmp/a b\nrest\n")
                                << "/tmp/a b";
        QTest::newRow("no second line feed") << QByteArray("##############\n/tmp/a") << "";
        QTest::newRow("no line feed") << QByteArray("##############") << "";
        QTest::newRow("no marker") << QByteArray("a\nb\nc\n") << "";
    }

    void captureFolderAnswer()
    {
        QFETCH(QByteArray, output);
        QTEST(dispatchtool::parseCaptureFolder(output), "folder");
    }

    // The real shell hands the tool one argument, whatever the folder's name holds.
    void theShellHandsOverOneArgument()
    {
        QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/a $(touch x)`b`\"XXXXXX"));
        const QString folder = dir.path();
        platform().programDir = [folder] { return folder; };
        QFile tool(dir.filePath(QStringLiteral("dispatch")));
        QVERIFY(tool.open(QIODevice::WriteOnly));
        tool.write("#!/bin/sh\nprintf '%s|' \"$#\" \"$1\" >> \"$(dirname \"$0\")/calls\"\n");
        tool.close();
        tool.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        dispatchtool::run(dispatchtool::captureFolderText(folder));
        dispatchtool::run(dispatchtool::commandText(dispatchtool::Command::StartEngineCapture));
        QFile calls(dir.filePath(QStringLiteral("calls")));
        QVERIFY(calls.open(QIODevice::ReadOnly));
        QCOMPARE(
            QString::fromUtf8(calls.readAll()),
            QStringLiteral("1|set_pcap_dir/%1|1|set_orvek_pcapEnable/engine=0 1|").arg(folder));
        platform() = Platform();
    }

    void tunnelAddress()
    {
        const QByteArray address = "10.8.0.2";
        const QByteArray answer = message(0, 4, 22, quint32(8 + address.size()), address);
        Service service({answer, answer});
        char room[32];
        QCOMPARE(TQ_DispatchGetTunIp(room, sizeof room), 0);
        QCOMPARE(QByteArray(room), address);
        QCOMPARE(service.lastRequest, message(0, 4, 22, 8, {}));
        QCOMPARE(TQ_DispatchGetTunIp(room, 4), -EINVAL);
        QCOMPARE(QByteArray(room, 4), QByteArray("Unkn"));
    }
};

QTEST_GUILESS_MAIN(DispatchTest)
#include "DispatchTest.moc"
