#include "dispatch/DispatchTool.h"
#include "sim/Behaviour.h"
#include "support/Rows.h"
#include "support/WindowScene.h"
#include "unit/Files.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QTcpSocket>

namespace {

const QString kStart =
    QStringLiteral("-S 0123456789ABCDE0123456789ABCDE01 -T t0ken -R a,b -D start");
const QByteArray kAgentFile = "orchid=1\ncpeid=2\ncustomerid=3\ncommaddr=a:1\nbakcommaddr=b\n";

} // namespace

/// What the stand-in datapath refuses, and what no test of the client needs of it.
class DatapathTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_scene = std::make_unique<WindowScene>();
        m_scene->stageDatapath();
        write("cpeagent.conf", kAgentFile);
        write("filterConfig.conf", "{}\n");
        m_said.clear();
        m_server = std::make_unique<QLocalServer>();
        QVERIFY(m_server->listen(m_scene->file("UI_SOCKET")));
        connect(m_server.get(), &QLocalServer::newConnection, this, [this] {
            QLocalSocket* agent = m_server->nextPendingConnection();
            connect(agent, &QLocalSocket::readyRead, this,
                    [this, agent] { m_said += agent->readAll(); });
        });
    }

    void cleanup() { m_scene.reset(); }

    void starts_data()
    {
        // "outcome": violations, and what the agent says
        const auto row = columns<QString, QByteArray, QString>("arguments", "agentFile", "outcome");
        row("normal", kStart, kAgentFile, "\\{.*hello.*Port\": \\d+\\}\\{\"type\": 0\\}");
        row("no_port", kStart, kAgentFile, "\\{.*hello\"\\}\\{\"type\": 0\\}");
        row("garbage", kStart, kAgentFile, "[^{].*Port\": \"none\"\\}\\{\"type\":0\\}");
        row("no arguments", "", kAgentFile, "tarvelin: unknown arguments");
        row("order", kStart.mid(3) + " -S", kAgentFile, "tarvelin: unknown arguments");
        row("serial", QString(kStart).replace('1', 'F'), kAgentFile, "tarvelin: .* is no serial");
        row("token", QString(kStart).remove("t0ken"), kAgentFile, "tarvelin: .*token is empty");
        row("file missing", kStart, "", "agent: .*missing or empty");
        row("file out of order", kStart, "cpeid=2\n" + kAgentFile, "agent: .*malformed");
    }

    void starts()
    {
        const auto [arguments, agentFile, outcome] =
            fetched<QString, QByteArray, QString>("arguments", "agentFile", "outcome");
        write("cpeagent.conf", agentFile);
        behave({{"agent", QTest::currentDataTag()}, {"agent_gap_ms", "0"}});
        QCOMPARE(control("tarvelin " + arguments), outcome.startsWith("tarvelin") ? 2 : 0);
        const QRegularExpression whole(QRegularExpression::anchoredPattern(outcome),
                                       QRegularExpression::DotMatchesEverythingOption);
        QTRY_VERIFY(
            whole.match(violations() + QString::fromLatin1(m_said.replace('\0', ' '))).hasMatch());
    }

    void anUnknownRequestIsNoticed()
    {
        QCOMPARE(control("tarvelin " + kStart), 0);
        QTRY_VERIFY(m_scene->read("dispatch.port").toInt() != 0);
        QTcpSocket client;
        client.connectToHost("127.0.0.1", m_scene->read("dispatch.port").toUShort());
        client.write(QByteArray("\0\2\x11\0\x8\0\0\0", 8));
        QTRY_VERIFY(violations().contains("module 2 type 17"));
    }

    void itStopsItsOwnAloneAndNothingStays()
    {
        QCOMPARE(control("tarvelin " + kStart), 0);
        const QStringList first = daemons();
        QCOMPARE(first.size(), 3); // the two, and what collects them
        const QTemporaryDir other;
        QVERIFY(QFile::copy(m_scene->file("tarvelin"), other.filePath("tarvelin")));
        QCOMPARE(QProcess::execute(other.filePath("tarvelin"), {"-D", "stop"}), 0);
        QCOMPARE(daemons(), first);
        // Not even an uncollected process may be left of a sudden death: it would count as alive.
        behave({{"die_after_ms", "30"}});
        QCOMPARE(control("tarvelin " + kStart), 0);
        QTRY_COMPARE(daemons(), QStringList());
    }

    void theToolKnowsTheClientsCommands()
    {
        using namespace dispatchtool;
        for (const Command command : {Command::StartEngineCapture, Command::StopEngineCapture,
                                      Command::StartDatapathCapture, Command::StopDatapathCapture})
            run(commandText(command));
        const QString folder = "/a $(touch x)`b`\"c"; // one argument to the real shell
        run(captureFolderText(folder));
        QCOMPARE(captureFolder(), folder);
        writeReport(m_scene->folder(), "/report.log");
        QVERIFY(!m_scene->read("report.log").isEmpty());
        QCOMPARE(violations(), QString());
        run("nonsense");
        QVERIFY(violations().contains("nonsense"));
    }

private:
    void write(const QString& name, const QByteArray& text)
    {
        QVERIFY(writeFile(m_scene->file(name), text));
    }

    void behave(const sim::Behaviour& behaviour)
    {
        QVERIFY(sim::writeBehaviour(m_scene->folder(), behaviour));
    }

    // The exit code, once the program has let go of its pipes: its daemons must not hold them.
    int control(const QString& command)
    {
        QProcess process;
        process.start(m_scene->file(command.section(' ', 0, 0)), command.split(' ').mid(1));
        return process.waitForFinished() ? process.exitCode() : -1;
    }

    QString violations() const { return m_scene->service.violations().join('\n'); }

    // What runs from this folder, with the process numbers.
    QStringList daemons() const
    {
        QStringList found;
        for (const QString& pid : QDir("/proc").entryList(QDir::Dirs)) {
            const QFileInfo program(QFile::symLinkTarget("/proc/" + pid + "/exe"));
            if (program.path() == m_scene->folder())
                found << program.fileName() + ' ' + pid;
        }
        return found;
    }

    std::unique_ptr<WindowScene> m_scene;
    std::unique_ptr<QLocalServer> m_server;
    QByteArray m_said; // by the agent
};

QTEST_MAIN(DatapathTest)
#include "DatapathTest.moc"
