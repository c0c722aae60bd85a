#include "sim/Behaviour.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QProcess>
#include <QTcpSocket>
#include <QtTest>

#include <csignal>

namespace {

const QString kSerial = QStringLiteral("0123456789ABCDE0123456789ABCDE01");

QByteArray request(quint8 module, quint16 type)
{
    QByteArray bytes(8, '\0');
    bytes[1] = static_cast<char>(module);
    memcpy(bytes.data() + 2, &type, sizeof type);
    bytes[4] = 8;
    return bytes;
}

} // namespace

class DatapathTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void startAnnouncesPortAndStopLeavesNothing();
    void agentMisbehaves_data();
    void agentMisbehaves();
    void dispatchMisbehaves_data();
    void dispatchMisbehaves();
    void countersFollowTheSwitches();
    void argumentsAndFilesAreChecked_data();
    void argumentsAndFilesAreChecked();
    void scriptFailsAsTold();
    void suddenDeathIsCollected();
    void startsBesideAnotherDirectory();
    void toolKnowsTheCaptureDirectory();

private:
    static void stage(const QString& directory);
    static QStringList processes(const QString& directory);
    int script(const QStringList& arguments);
    int start() { return script({"-S", kSerial, "-T", "t0ken", "-R", "a,b", "-D", "start"}); }
    int stop() { return script({"-D", "stop"}); }
    void set(const sim::Behaviour& behaviour)
    {
        QVERIFY(sim::writeBehaviour(m_directory->path(), behaviour));
    }
    quint16 dispatchPort() const;
    QByteArray exchange(const QByteArray& bytes);
    qint64 sentBytes();

    std::unique_ptr<QTemporaryDir> m_directory;
    std::unique_ptr<QLocalServer> m_server;
    QList<QByteArray> m_messages;
    QByteArray m_output;
    QByteArray m_errors;
};

void DatapathTest::stage(const QString& directory)
{
    for (const char* program : {VELTARO_BUILT_TARVELIN, VELTARO_BUILT_TARVELIN_DATAPATH,
                                VELTARO_BUILT_TARVELIN_AGENT, VELTARO_BUILT_DISPATCH}) {
        const QString source = QString::fromLocal8Bit(program);
        QVERIFY(QFile::copy(source, directory + '/' + QFileInfo(source).fileName()));
    }
    QFile agent(directory + "/cpeagent.conf");
    QVERIFY(agent.open(QIODevice::WriteOnly));
    agent.write("orchid=1\ncpeid=2\ncustomerid=3\ncommaddr=a:1\nbakcommaddr=b\n");
    QFile filter(directory + "/filterConfig.conf");
    QVERIFY(filter.open(QIODevice::WriteOnly));
    filter.write("{}\n");
}

QStringList DatapathTest::processes(const QString& directory)
{
    QStringList found;
    for (const QString& pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        const QString program = QFile::symLinkTarget("/proc/" + pid + "/exe");
        if (program.startsWith(directory + '/'))
            found.append(QFileInfo(program).fileName() + ' ' + pid);
    }
    found.sort();
    return found;
}

void DatapathTest::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    stage(m_directory->path());
    m_messages.clear();
    m_server = std::make_unique<QLocalServer>();
    QVERIFY(m_server->listen(m_directory->path() + "/UI_SOCKET"));
    connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
        QLocalSocket* socket = m_server->nextPendingConnection();
        connect(socket, &QLocalSocket::readyRead, this,
                [this, socket] { m_messages.append(socket->readAll()); });
    });
}

void DatapathTest::cleanup()
{
    stop();
    QCOMPARE(processes(m_directory->path()), QStringList());
}

int DatapathTest::script(const QStringList& arguments)
{
    QProcess process;
    process.start(m_directory->filePath("tarvelin"), arguments);
    // The daemons must not hold the pipes: this would not return.
    if (!process.waitForFinished())
        return -1;
    m_output = process.readAllStandardOutput();
    m_errors = process.readAllStandardError();
    return process.exitCode();
}

quint16 DatapathTest::dispatchPort() const
{
    QFile file(m_directory->filePath("dispatch.port"));
    return file.open(QIODevice::ReadOnly) ? file.readAll().toUShort() : quint16(0);
}

/// The reply, or what came of it before the service closed.
QByteArray DatapathTest::exchange(const QByteArray& bytes)
{
    QTcpSocket socket;
    socket.connectToHost(QStringLiteral("127.0.0.1"), dispatchPort());
    if (!socket.waitForConnected())
        return "not connected";
    socket.write(bytes);
    QByteArray reply;
    const auto complete = [&] {
        quint32 length = 0;
        if (reply.size() >= 8)
            memcpy(&length, reply.constData() + 4, sizeof length);
        return length != 0 && reply.size() >= static_cast<int>(length);
    };
    while (!complete() && socket.waitForReadyRead())
        reply += socket.readAll();
    return reply;
}

qint64 DatapathTest::sentBytes()
{
    const QString text = QString::fromUtf8(exchange(request(2, 16)).mid(8));
    qint64 sum = 0;
    const QRegularExpression counters(
        QStringLiteral("Tunnel\\(txbytes/rxbytes/txpkts/rxpkts\\): (\\d+),(\\d+),\\d+,\\d+\n"));
    for (auto it = counters.globalMatch(text); it.hasNext();)
        sum += it.next().captured(1).toLongLong();
    return sum;
}

void DatapathTest::startAnnouncesPortAndStopLeavesNothing()
{
    // Without a pause, only the wait for the reader keeps the messages apart.
    set({{"agent_gap_ms", "0"}});
    QCOMPARE(start(), 0);
    QStringList names = processes(m_directory->path());
    names.replaceInStrings(QRegularExpression(" .*"), QString());
    QCOMPARE(names, (QStringList{"tarvelin", "tarvelin_agent", "tarvelin_datapath"}));
    QTRY_VERIFY(dispatchPort() != 0);
    const QList<QByteArray> expected{
        "{\"type\": 9, \"msg\": \"hello\"}",
        "{\"dispatchConfPort\": " + QByteArray::number(dispatchPort()) + "}", "{\"type\": 0}"};
    QTRY_COMPARE(m_messages, expected);
    const QStringList first = processes(m_directory->path());

    QCOMPARE(start(), 0);
    for (const QString& process : processes(m_directory->path()))
        QVERIFY2(!first.contains(process), "a second start replaces what runs");
    QCOMPARE(stop(), 0);
    QCOMPARE(processes(m_directory->path()), QStringList());
    QCOMPARE(sim::scriptCalls(m_directory->path()).mid(1),
             (QStringList{"-S " + kSerial + " -T *** -R a,b -D start", "-D stop"}));
    QCOMPARE(sim::datapathViolations(m_directory->path()), QStringList());
}

void DatapathTest::agentMisbehaves_data()
{
    QTest::addColumn<QString>("agent");
    QTest::addColumn<QByteArray>("last");
    QTest::addColumn<bool>("announcesPort");
    QTest::newRow("no port") << "no_port" << QByteArray("{\"type\": 0}") << false;
    QTest::newRow("disconnect") << "disconnect" << QByteArray("{\"type\": 1}") << false;
    QTest::newRow("garbage") << "garbage" << QByteArray("{\"type\":0}") << false;
    QTest::newRow("flood, then ready") << "flood_ready" << QByteArray("{\"type\": 0}") << true;
}

void DatapathTest::agentMisbehaves()
{
    QFETCH(QString, agent);
    QFETCH(QByteArray, last);
    QFETCH(bool, announcesPort);
    set({{"agent", agent}, {"agent_flood_bytes", "3000000"}});
    QCOMPARE(start(), 0);
    QTRY_COMPARE(m_messages.value(m_messages.size() - 1), last);
    const QRegularExpression port(QStringLiteral("\"dispatchConfPort\"\\s*:\\s*(\\d+)"));
    const QByteArray all = m_messages.join();
    QCOMPARE(port.match(QString::fromLatin1(all)).hasMatch(), announcesPort);
    QCOMPARE(all.size() > 3000000, agent == "flood_ready");
}

void DatapathTest::dispatchMisbehaves_data()
{
    QTest::addColumn<QString>("dispatch");
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("announced");
    QTest::addColumn<bool>("whole");
    QTest::newRow("normal") << "normal" << 0 << -1 << true;
    QTest::newRow("closes in the middle") << "close_midreply" << 0 << -1 << false;
    QTest::newRow("another version") << "bad_version" << 1 << -1 << true;
    QTest::newRow("header alone") << "short" << 0 << 8 << true;
    QTest::newRow("10000 bytes") << "long" << 0 << 10000 << true;
}

void DatapathTest::dispatchMisbehaves()
{
    QFETCH(QString, dispatch);
    QFETCH(int, version);
    QFETCH(int, announced);
    QFETCH(bool, whole);
    set({{"dispatch", dispatch}, {"agent", "silent"}});
    QCOMPARE(start(), 0);
    QTRY_VERIFY(dispatchPort() != 0);
    const QByteArray reply = exchange(request(2, 16));
    QVERIFY(reply.size() >= 8);
    quint32 length = 0;
    memcpy(&length, reply.constData() + 4, sizeof length);
    QCOMPARE(static_cast<int>(reply.at(0)), version);
    QCOMPARE(reply.mid(1, 3), request(2, 16).mid(1, 3));
    if (announced >= 0)
        QCOMPARE(static_cast<int>(length), announced);
    QCOMPARE(reply.size() == static_cast<int>(length), whole);
}

void DatapathTest::countersFollowTheSwitches()
{
    set({{"tx_bps", "800000000"}, {"tunnel_ip", "10.9.9.9"}});
    QCOMPARE(start(), 0);
    QTRY_VERIFY(dispatchPort() != 0);
    QVERIFY(exchange(request(2, 16)).contains("State: UP"));
    const qint64 before = sentBytes();
    QTRY_VERIFY(sentBytes() > before);
    QCOMPARE(exchange(request(4, 22)).mid(8), QByteArray("10.9.9.9"));

    set({{"tunnels", "down"}, {"tx_bps", "800000000"}});
    QVERIFY(!exchange(request(2, 16)).contains("State: UP"));
    const qint64 frozen = sentBytes();
    for (int i = 0; i < 50; ++i)
        QCOMPARE(sentBytes(), frozen);
    set({{"tunnels", "none"}});
    QVERIFY(!exchange(request(2, 16)).contains("Tunnel("));
    QCOMPARE(sim::datapathViolations(m_directory->path()), QStringList());
    exchange(request(2, 17));
    QVERIFY(sim::datapathViolations(m_directory->path()).value(0).contains("type 17"));
}

void DatapathTest::argumentsAndFilesAreChecked_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("agentConfiguration");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("violation");
    const QStringList good{"-S", kSerial, "-T", "t", "-R", "", "-D", "start"};
    const auto with = [&](int index, const QString& value) {
        QStringList changed = good;
        changed[index] = value;
        return changed;
    };
    const QByteArray file("orchid=1\ncpeid=2\ncustomerid=3\ncommaddr=\n");
    QTest::newRow("good") << good << file << 0 << "";
    QTest::newRow("no arguments") << QStringList() << file << 2 << "unknown arguments";
    QTest::newRow("order") << QStringList{"-D", "start", "-S", kSerial, "-T", "t", "-R", ""} << file
                           << 2 << "unknown arguments";
    QTest::newRow("serial") << with(1, "F") << file << 2 << "is no serial";
    QTest::newRow("token") << with(3, "") << file << 2 << "token is empty";
    QTest::newRow("file missing") << good << QByteArray() << 0 << "missing or empty";
    QTest::newRow("file out of order")
        << good << QByteArray("cpeid=2\norchid=1\ncustomerid=3\ncommaddr=\n") << 0 << "malformed";
}

void DatapathTest::argumentsAndFilesAreChecked()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, agentConfiguration);
    QFETCH(int, exitCode);
    QFETCH(QString, violation);
    QFile file(m_directory->filePath("cpeagent.conf"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(agentConfiguration);
    file.close();
    QCOMPARE(script(arguments), exitCode);
    const auto violations = [this] { return sim::datapathViolations(m_directory->path()); };
    if (violation.isEmpty()) {
        QTRY_COMPARE(m_messages.size(), 3);
        QCOMPARE(violations(), QStringList());
    } else {
        QTRY_VERIFY(violations().value(0).contains(violation));
    }
}

void DatapathTest::scriptFailsAsTold()
{
    set({{"script_exit", "1"},
         {"stop_exit", "2"},
         {"script_stdout", "out"},
         {"script_stderr", "no such device"}});
    QCOMPARE(start(), 1);
    QCOMPARE(m_output, QByteArray("out"));
    QCOMPARE(m_errors, QByteArray("no such device"));
    QCOMPARE(processes(m_directory->path()), QStringList());
    QCOMPARE(stop(), 2);
}

void DatapathTest::suddenDeathIsCollected()
{
    set({{"die_after_ms", "30"}});
    QCOMPARE(start(), 0);
    // Not even an uncollected process may be left: it would count as alive in the process list.
    QTRY_COMPARE(processes(m_directory->path()), QStringList());
}

void DatapathTest::startsBesideAnotherDirectory()
{
    QCOMPARE(start(), 0);
    const QStringList own = processes(m_directory->path());
    QTemporaryDir other;
    stage(other.path());
    QProcess process;
    process.start(other.filePath("tarvelin"), {"-D", "stop"});
    QVERIFY(process.waitForFinished());
    QCOMPARE(processes(m_directory->path()), own);
}

void DatapathTest::toolKnowsTheCaptureDirectory()
{
    const auto run = [this](const QStringList& arguments) {
        QProcess process;
        process.start(m_directory->filePath("dispatch"), arguments);
        process.waitForFinished();
        return process.readAllStandardOutput();
    };
    run({"set_pcap_dir//somewhere/else"});
    const QList<QByteArray> lines = run({"get_pcap_dir"}).split('\n');
    QCOMPARE(lines.value(lines.indexOf("##############") + 1), QByteArray("/somewhere/else"));
    run({"diagnose", m_directory->filePath("report.log")});
    QVERIFY(QFileInfo(m_directory->filePath("report.log")).size() > 0);
    QCOMPARE(sim::datapathViolations(m_directory->path()), QStringList());
    run({"nonsense"});
    QCOMPARE(sim::datapathViolations(m_directory->path()).size(), 1);
}

QTEST_GUILESS_MAIN(DatapathTest)
#include "DatapathTest.moc"
