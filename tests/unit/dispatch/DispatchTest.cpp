#include "app/Platform.h"
#include "dispatch/DispatchTool.h"
#include "dispatch/FlowText.h"
#include "dispatch/tarvelinGetFlowStatistics.h"
#include "support/Rows.h"
#include "unit/Files.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

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

sockaddr_in loopback(int port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(quint16(port));
    return address;
}

// A listener on a free port that the client is told of; nobody accepts by itself.
class Listener
{
public:
    Listener() : m_listener(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address = loopback(0);
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
            QCOMPARE(service.lastRequest, message(0, 2, 16, 8, {}));
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
        Listener crowded;
        sockaddr_in address = loopback(dispatch::port);
        int queue[8];
        for (int& sock : queue) {
            sock = ::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0);
            ::connect(sock, reinterpret_cast<sockaddr*>(&address), sizeof address);
        }
        QCOMPARE(TQ_GetFlowStatisticsInit(), -1);
        for (const int sock : queue)
            ::close(sock);

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

    // The real shell hands the tool one argument, whatever the folder's name holds.
    void theShellHandsOverOneArgument()
    {
        QTemporaryDir dir(QDir::tempPath() + "/a $(touch x)`b`\"XXXXXX");
        const QString folder = dir.path();
        platform().programDir = [folder] { return folder; };
        const QString tool = dir.filePath("dispatch");
        QVERIFY(writeFile(
            tool, "#!/bin/sh\nprintf '%s|' \"$#\" \"$1\" >> \"$(dirname \"$0\")/calls\"\n"));
        QFile::setPermissions(tool, QFile::ReadOwner | QFile::ExeOwner);
        dispatchtool::run(dispatchtool::captureFolderText(folder));
        dispatchtool::run(dispatchtool::commandText(dispatchtool::Command::StartEngineCapture));
        QCOMPARE(QString(readFile(dir.filePath("calls"))),
                 QString("1|set_pcap_dir/%1|1|set_orvek_pcapEnable/engine=0 1|").arg(folder));
        platform() = Platform();
    }

    void tunnelAddress()
    {
        const QByteArray address = "10.8.0.2";
        Service service({reply(address, 4, 22), reply(address, 4, 22)});
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
