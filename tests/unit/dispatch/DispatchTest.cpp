#include "dispatch/DispatchTool.h"
#include "dispatch/FlowText.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "support/Rows.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <future>
#include <thread>

namespace {

QByteArray message(quint8 version, quint8 module, quint16 type, quint32 length,
                   const QByteArray& payload)
{
    const auto bytesOf = [](const auto& number) {
        return QByteArray(reinterpret_cast<const char*>(&number), sizeof number);
    };
    return bytesOf(version) + bytesOf(module) + bytesOf(type) + bytesOf(length) + payload;
}

QByteArray reply(const QByteArray& payload, quint8 module = 2, quint16 type = 16)
{
    return message(0, module, type, quint32(8 + payload.size()), payload);
}

// A dispatch service that answers each request of one connection with the next given bytes and
// then closes, or stays silent when there is nothing left and `hold` is set.
class Service
{
public:
    Service(const QList<QByteArray>& answers, bool hold = false)
        : m_thread([=] { serve(answers, hold); })
    {
        dispatch::port = m_port.get_future().get();
    }

    ~Service()
    {
        TQ_GetFlowStatisticsExit();
        m_thread.join();
    }

    QByteArray lastRequest()
    {
        const std::lock_guard lock(m_mutex);
        return m_lastRequest;
    }

private:
    void serve(QList<QByteArray> answers, bool hold)
    {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        m_port.set_value(server.serverPort());
        server.waitForNewConnection(10000);
        QTcpSocket* const peer = server.nextPendingConnection();
        while (peer && (!answers.isEmpty() || hold)) {
            while (peer->bytesAvailable() < 8) {
                if (!peer->waitForReadyRead(-1))
                    return;
            }
            const std::lock_guard lock(m_mutex);
            m_lastRequest = peer->read(8);
            if (!answers.isEmpty()) {
                peer->write(answers.takeFirst());
                peer->waitForBytesWritten(-1);
            }
        }
    }

    // Of the standard library, for the thread sanitizer sees none of Qt's.
    std::promise<int> m_port;
    std::mutex m_mutex;
    QByteArray m_lastRequest;
    std::thread m_thread; // the last: it uses the others
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
    void scan()
    {
        // Up, down, all tunnels down, any tunnels; "C:" stands for the mark of the counters.
        const auto check = [](QByteArray text, const char* expected) {
            text.replace("C:", "Tunnel(txbytes/rxbytes/txpkts/rxpkts):");
            const FlowTotals t = scanFlowText(text.constData());
            const QString read = QString("%1 %2 %3 %4").arg(t.upSize).arg(t.downSize);
            QCOMPARE(read.arg(t.tunDown).arg(t.hasTunnels), QString(expected));
        };
        check("State: INIT\nC: 100,200,1,2\nState: UP\nC: 1000,2000", "1100 2200 0 1");
        check("State: DOWN C: 7,8", "7 8 1 1");
        check("C: 7,8", "0 0 1 0");
        check("State: UP", "0 0 0 0");
        check("State: UP C:1,1 State: DOWN C:2,2", "3 3 0 1");
        check("State: UP C: 4,5 C: x C: 6;7", "14 15 0 1"); // an unreadable one repeats the last
        check("State: UP C: 0,0", "0 0 0 1");
        check("", "0 0 1 0");
        check("State: UP C: 99999999999999999999,1 C: 0,1", "9223372036854775807 2 0 1");
    }

    void exchange()
    {
        const auto row = checked([](const QByteArray& answer, bool hold, int result) {
            Service service({answer}, hold);
            QCOMPARE(TQ_GetFlowStatisticsInit(), 0);
            Flow flow;
            QCOMPARE(flow.ask(), result);
            QCOMPARE(service.lastRequest(), message(0, 2, 16, 8, {}));
            if (result != 0) {
                QCOMPARE(flow.up, 0LL);
                QCOMPARE(flow.tunDown, false);
                QCOMPARE(flow.hasTunnels, true);
            } else if (answer.contains(kUp)) {
                QCOMPARE(flow.up, 5LL);
                QCOMPARE(flow.down, 6LL);
            }
        });
        row("well formed", reply(kUp), false, 0);
        row("larger than the buffer", reply(QByteArray(9992, ' ') + kUp), false, 0);
        row("exactly the buffer", reply(QByteArray(4088 - kUp.size(), ' ') + kUp), false, 0);
        row("other version", message(1, 2, 16, 8, {}), false, -EBADR);
        row("closed in the header", QByteArray("\0\2\20", 3), false, -EIO);
        row("closed in the payload", message(0, 2, 16, 100, "State: "), false, -EIO);
        row("silent", message(0, 2, 16, 100, "State: "), true, -EIO);
        row("absurd length", message(0, 2, 16, 0xffffffffu, "x"), false, -ENOMEM);
        row("length below the header", message(0, 2, 16, 3, {}), false, 0);
    }

    void aFailedExchangeConnectsAgainToTheNewPort()
    {
        Flow flow;
        {
            Service first({reply(kUp)});
            QCOMPARE(flow.ask(), 0);
            QCOMPARE(flow.ask(), -EIO); // the service has closed
        }
        Service second({reply(kUp), reply(kUp)});
        QCOMPARE(flow.ask(), 0);
        QCOMPARE(flow.ask(), 0);
        TQ_GetFlowStatisticsExit();
    }

    void aServiceThatNeverAcceptsIsGivenUp()
    {
        // The listener's queue is filled; the kernel then leaves further connections waiting.
        QTcpServer crowded;
        QVERIFY(crowded.listen(QHostAddress::LocalHost));
        dispatch::port = crowded.serverPort();
        QTcpSocket queue[100];
        for (QTcpSocket& socket : queue)
            socket.connectToHost(QHostAddress::LocalHost, crowded.serverPort());
        QCOMPARE(TQ_GetFlowStatisticsInit(), -1);

        dispatch::port = 1; // nobody listens
        QCOMPARE(TQ_GetFlowStatisticsInit(), -1);
        QCOMPARE(Flow().ask(), -1);
    }

    void captureFolderAnswer()
    {
        QCOMPARE(dispatchtool::parseCaptureFolder("x\n ##############--\n/tmp/a b\nrest\n"),
                 QString("/tmp/a b"));
        for (const char* none : {"##############\n/tmp/a", "##############", "a\nb\nc\n"})
            QCOMPARE(dispatchtool::parseCaptureFolder(none), QString());
    }

    void tunnelAddress()
    {
        const QByteArray address = "10.8.0.2";
        Service service({reply(address, 4, 22), reply(address, 4, 22)});
        char room[32];
        QCOMPARE(TQ_DispatchGetTunIp(room, sizeof room), 0);
        QCOMPARE(QByteArray(room), address);
        QCOMPARE(service.lastRequest(), message(0, 4, 22, 8, {}));
        QCOMPARE(TQ_DispatchGetTunIp(room, 4), -EINVAL);
        QCOMPARE(QByteArray(room, 4), QByteArray("Unkn"));
    }
};

QTEST_GUILESS_MAIN(DispatchTest)
#include "DispatchTest.moc"
