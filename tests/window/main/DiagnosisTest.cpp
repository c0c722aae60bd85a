#include "app/Deployment.h"
#include "sim/Situations.h"
#include "widgets/WidgeDiagnoseResult.h"
#include "window/main/SessionScene.h"

#include <csignal>

Q_DECLARE_METATYPE(Fault)

namespace {

constexpr char kAddress[] = "/api/mobile/v2/log/url";
constexpr char kArchive[] = "/files/bundle";
constexpr char kNotice[] = "/api/mobile/v2/upgradeNotice";
constexpr char kReport[] = "/api/mobile/v2/log/result";

const QFile::Permissions kOthers = QFile::ReadGroup | QFile::ReadOther | QFile::WriteOther;

QByteArray refused(int reason)
{
    return json("{'code':401,'parameters':{'invalidReasonCode':" + QByteArray::number(reason) +
                "}}");
}

} // namespace

/// A diagnosis from its start to its verdict, with stand-ins for what asks about the network.
class DiagnosisTest : public SessionScene
{
    Q_OBJECT

private slots:
    void theBundleArrives_data()
    {
        const auto row = columns<QString, bool, int>("start", "connected", "trigger");
        row("the user, connected", "user", true, 0);
        row("the user, not connected", "user", false, 0);
        row("the heartbeat", "heartbeat", true, 1);
        row("the notice of a disconnect", "disconnect", false, 1);
    }

    void theBundleArrives()
    {
        const auto [start, connected] = fetched<QString, bool>("start", "connected");
        openConnected();
        if (!connected)
            scene().stageTool("ping", "exit 1");
        if (start != "user")
            service().order({{"logfile", "bundle-1"}});
        if (start == "heartbeat") {
            advance(60);
            poll();
        } else if (!connected) {
            stopAndWait();
        }
        if (start == "user")
            startByUser();
        QTRY_VERIFY(!service().bundle().report.isEmpty());
        const sim::Bundle bundle = service().bundle();
        QTEST(bundle.trigger, "trigger");
        QCOMPARE(bundle.report["errorCode"].toInt(), 200);
        QStringList captured = bundle.files.filter(QRegularExpression("(dispatch|pcap)"));
        captured.sort();
        QCOMPARE(captured.join(' ').remove("linux_diagnosis/"),
                 connected ? "datapath.pcap dispatchEnd.log dispatchStart.log" : "");
        QTRY_COMPARE(panel()->isVisible(), start == "user");
        QCOMPARE(part<QLabel>(panel(), "labelNetwork")->text(), start != "user" ? ""
                                                                : connected     ? "Network Normal"
                                                                            : "Network Anormaly");
        QTRY_COMPARE(setting(ConfigUtil::DIAGNOSIS_FAIL).toInt(), 0);
    }

    void theBundleHoldsWhatSupportNeeds()
    {
        QFile::link("/etc/passwd", scene().file("tq_agent.link")); // leads out of the folder
        QDir(scene().file("tmp")).mkpath("linux_diagnosis/sub/deeper");
        write(work("sub/old.log"), "of an earlier run");
        write(work("old.log"), "of an earlier run");
        openConnected();
        const QStringList left = {"tq_agent.log", "tarvelin_serviced.log.1", "PersistentConf.db"};
        for (const QString& name : left)
            write(scene().file(name), name.toUtf8());
        QFile::remove(scene().file("tools/ifconfig"));
        qputenv("PATH", scene().file("tools").toUtf8()); // without a shell the stand-ins fail
        for (const char* tool : {"tar", "gzip", "sh"})
            QFile::link(QStandardPaths::findExecutable(tool, {"/usr/bin", "/bin"}),
                        scene().file("tools/") + tool);
        startByUser();
        QTRY_VERIFY(panel()->isVisible());

        QStringList files = service().bundle().files.filter(QRegularExpression("[^/]$"));
        files.sort();
        QCOMPARE(files.join(' ').remove("linux_diagnosis/"),
                 "PersistentConf.db cpeagent.log datapath.pcap device.log dispatchEnd.log "
                 "dispatchStart.log network.log service.log.1 ui.log");
        const QString archive = scene().file("tmp/") + service().bundle().name;
        QVERIFY(!(QFile::permissions(archive) & kOthers));
        QVERIFY(!(QFile::permissions(work("")) & kOthers));
        QCOMPARE(unpacked("cpeagent.log"), "tq_agent.log");
        QCOMPARE(unpacked("network.log").section('\n', 1, 2),
                 "ping -c 3 8.8.8.8\nping -c 3 " + deployment::pingTargets().first());
        const QString device = unpacked("device.log");
        const QString line(63, '=');
        QVERIFY2(QRegularExpression("^Architecture: .+\nKernel: linux\nVersion: .+\nHostname: .*\n"
                                    "Product Name: .+\n" +
                                    line + "\ncmdline: ifconfig\n\n" + line +
                                    "\ncmdline: ip route\nip route\n\n" + line +
                                    "\ncmdline: ip -6 route\nip -6 route\n\n" + line +
                                    "\ncmdline: cat /etc/hosts\n(.*\n)*$")
                     .match(device)
                     .hasMatch(),
                 qPrintable(device));
        const QString log = unpacked("ui.log");
        QVERIFY(log.contains("DPI / Display Diagnostics"));
        for (const QString& secret : {saved(ConfigUtil::TOKEN), scene().password})
            QVERIFY(!log.contains(secret));
        QVERIFY(!logged("?to=")); // nor may anybody else write to the address
        QVERIFY(!service().bundle().files.contains("linux_diagnosis/old.log"));
    }

    void everyFailureIsTold_data()
    {
        const auto row = columns<QString, Fault, QString, int, QString, QString, int>(
            "where", "fault", "logged", "failed", "verdict", "box", "quits");
        const auto body = [](int reason) { return Fault::withStatus(401, refused(reason)); };
        const Fault password = Fault::withStatus(401, json("{'code':401,'message':'password'}"));
        const QString none;
        const QString address = "Failed to get upload URL";
        const QString report = "Failed to report upload results";
        const QString lost = "Orchestrator Not Connected";
        const QString met = "Orchestrator Connected";
        row("no token", "token", {}, "Missing URL or Token", 1, met, none, 0);
        row("no address", "address", {}, "Missing URL or Token", 1, met, none, 0);
        row("no folder", "folder", {}, "Not found diagnosis file", 1, met, none, 0);
        row("no archive", "archive", {}, "Not found diagnosis file", 1, met, none, 0);
        row("502", kAddress, Fault::withStatus(502), none, 1, met, none, 0);
        row("maintenance", kAddress, Fault::withStatus(502), none, 1, met, "OrchUpgradeDialog", 0);
        row("refused", kAddress, Fault::withStatus(500), address, 1, lost, none, 0);
        const Fault other = Fault::withStatus(400, json("{'code':402,'message':'password'}"));
        row("another code", kAddress, other, address, 1, lost, none, 0);
        row("another reason", kAddress, body(9), address, 1, none, none, 1);
        row("kicked out", kAddress, body(3), address, 1, none, "CommonTipsDialog", 1);
        row("account changed", kReport, body(5), report, 1, none, "CommonTipsDialog", 1);
        row("password changed", kReport, body(1), report, 1, none, "DlgChangePassPrompt", 1);
        row("password", kAddress, password, address, 1, none, "DlgChangePassPrompt", 1);
        row("not taken", kArchive, Fault::withStatus(404), "Failed to upload file", 0, met, none,
            0);
        row("cut off", kArchive, Fault::dropped(), "Failed to upload file", 0, met, none, 0);
        row("not reported", kReport, Fault::withStatus(500), report, 1, met, none, 0);
    }

    void everyFailureIsTold()
    {
        const auto [where, text, failed] =
            fetched<QString, QString, int>("where", "logged", "failed");
        const auto [verdict, box, quits] =
            fetched<QString, QString, int>("verdict", "box", "quits");
        openConnected();
        if (where == "token")
            save(ConfigUtil::TOKEN, QString());
        else if (where == "address")
            save(ConfigUtil::AUTHURL, QString());
        else if (where == "folder")
            QFile::link(scene().folder(), work(""));
        else if (where == "archive")
            scene().stageTool("tar", "exit 1");
        else
            answer(where, cell<Fault>("fault"));
        if (box == "OrchUpgradeDialog")
            service().edit([](sim::Scenario& now) {
                now.apply(sim::situationCommand("Maintenance running")["scenario"].toObject());
            });
        std::unique_ptr<ModalGuard> guard;
        if (!box.isEmpty())
            guard = std::make_unique<ModalGuard>(qPrintable(box));
        startByUser();
        QTRY_VERIFY(panel()->isVisible() || scene().quits > 0);
        QCOMPARE(scene().quits, quits);
        QCOMPARE(panel()->isVisible() ? part<QLabel>(panel(), "labelOrch")->text() : "", verdict);
        QCOMPARE(setting(ConfigUtil::DIAGNOSIS_FAIL).toInt(), failed);
        QVERIFY2(logged(text), qPrintable(scene().log()));
        const int told = where == kArchive || text == "Not found diagnosis file" ? 10001 : 0;
        QCOMPARE(service().bundle().report["errorCode"].toInt(), told);
        QCOMPARE(asked(kNotice), cell<Fault>("fault").status == 502 ? 1 : 0);
        QVERIFY(!scene().log().isEmpty()); // whatever the work folder was, nothing else is emptied
        QVERIFY(quits > 0 || isConnected());
    }

    void itEndsWithTheWindow_data()
    {
        const auto row = columns<QString>("where");
        for (const char* where : {"program", "turn", kAddress, kArchive, kReport, kNotice, "box"})
            row(where, where);
    }

    // In each place where the worker can be waiting for something that never comes.
    void itEndsWithTheWindow()
    {
        const QString where = cell<QString>("where");
        const QString marker = scene().file("waits");
        if (where == "program" || where == "turn")
            scene().stageTool("ping", "echo $$ > '" + marker.toUtf8() + "'; exec sleep 1000");
        else if (where == "box")
            answer(kReport, Fault::withStatus(401, refused(3)));
        else
            hold(where);
        if (where == kNotice)
            answer(kAddress, 502);
        std::unique_ptr<ModalGuard> box;
        if (where == "box")
            box = std::make_unique<ModalGuard>("CommonTipsDialog",
                                               [this](QDialog*) { window.reset(); });
        save(ConfigUtil::DIAGNOSIS_FAIL,
             where == "turn" ? 1 : 0); // the run that the user's waits for
        openConnected();
        startByUser();
        QTRY_VERIFY(box ? box->seen() : asked(where.toUtf8()) > 0 || !read(marker).isEmpty());
        window.reset();
        const int program = read(marker).toInt();
        QVERIFY(program == 0 || ::kill(program, 0) != 0);
        QCOMPARE(setting(ConfigUtil::DIAGNOSIS_FAIL).toInt(),
                 where == "turn" || where == "box" ? 1 : 0);
    }

    void theSecondRunWaitsForTheFirst()
    {
        const QByteArray gate = scene().file("gate").toUtf8();
        scene().stageTool("ping", "echo $3; until [ -e '" + gate + "' ]; do sleep 0.01; done");
        save(ConfigUtil::DIAGNOSIS_FAIL, 1);
        save(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, 1);
        openConnected();
        startByUser();
        write(gate, {});
        QTRY_COMPARE(asked(kReport), 2);
        QTRY_VERIFY(panel()->isVisible());
        QCOMPARE(service().bundle().trigger, 0); // the last
        QCOMPARE(unpacked("network.log").count('\n'), 4);
    }

private:
    QString work(const QString& name) const
    {
        return scene().file("tmp/linux_diagnosis") + (name.isEmpty() ? "" : "/" + name);
    }

    void startByUser() const
    {
        button("m_startBtn")->click();
        QVERIFY(button("m_startBtn")->text().isEmpty());
    }

    WidgeDiagnoseResult* panel() const { return child<WidgeDiagnoseResult>("WidgeDiagnoseResult"); }

    QString unpacked(const QString& name) const
    {
        QProcess tar;
        tar.start("tar", {"-xzOf", "-", "linux_diagnosis/" + name});
        tar.write(service().bundle().content);
        tar.closeWriteChannel();
        tar.waitForFinished();
        return QString::fromUtf8(tar.readAllStandardOutput());
    }

    static QByteArray read(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    static void write(const QString& path, const QByteArray& content)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
};

QTEST_MAIN(DiagnosisTest)
#include "DiagnosisTest.moc"
