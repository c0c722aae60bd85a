#include "dispatch/DispatchTool.h"
#include "support/Rows.h"
#include "support/WindowScene.h"

#include <QTcpSocket>
#include <QtTest>

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
    }

    void cleanup() { m_scene.reset(); }

    void refusals_data()
    {
        const auto row = columns<QString, QByteArray, QString>("arguments", "agentFile", "found");
        row("no arguments", "", kAgentFile, "tarvelin: unknown arguments");
        row("order", kStart.mid(3) + " -S", kAgentFile, "tarvelin: unknown arguments");
        row("serial", QString(kStart).replace('1', 'F'), kAgentFile, " is no serial");
        row("token", QString(kStart).remove("t0ken"), kAgentFile, "token is empty");
        row("file missing", kStart, "", "agent: cpeagent.conf is missing or empty");
        row("file out of order", kStart, "cpeid=2\n" + kAgentFile, "agent: cpeagent.conf");
    }

    void refusals()
    {
        const auto [arguments, found] = fetched<QString, QString>("arguments", "found");
        write("cpeagent.conf", cell<QByteArray>("agentFile"));
        QCOMPARE(control("tarvelin " + arguments), found.startsWith("agent") ? 0 : 2);
        QTRY_VERIFY2(violations().contains(found), qPrintable(violations()));
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

    void anUnknownCommandIsNoticed()
    {
        dispatchtool::run("nonsense");
        QVERIFY(violations().contains("nonsense"));
    }

private:
    void write(const QString& name, const QByteArray& text)
    {
        QFile written(m_scene->file(name));
        QVERIFY(written.open(QIODevice::WriteOnly) && written.write(text) == text.size());
    }

    // The exit code, once the program has let go of its pipes: its daemons must not hold them.
    int control(const QString& command)
    {
        QProcess process;
        process.start(m_scene->file(command.section(' ', 0, 0)), command.split(' ').mid(1));
        return process.waitForFinished() ? process.exitCode() : -1;
    }

    QString violations() const { return m_scene->service.violations().join('\n'); }

    std::unique_ptr<WindowScene> m_scene;
};

QTEST_MAIN(DatapathTest)
#include "DatapathTest.moc"
