#include "window/main/SessionScene.h"

#include "app/LocalServer.h"

#include <QLocalSocket>

#include <sys/stat.h>

/// The main window and its session against the simulated service and the stand-in datapath.
class SessionTest : public SessionScene
{
    Q_OBJECT

private slots:
    void connectsByItselfShowsRatesAndStops()
    {
        serveFilter(R"({"ipSetMode":-1,"blackIpSet":["1.1.1.1","1.1.1.1",7]})");
        QVERIFY(QFile::link(scene().file("planted"), scene().file("cpeagent.conf")));
        QCOMPARE(::mkfifo(QFile::encodeName(scene().file("filterConfig.conf")), 0666), 0);
        open();
        QTRY_COMPARE_WITH_TIMEOUT(connectText(), "Stop", 15000);
        QVERIFY(logged("[INFO] Reconnecting"));
        QVERIFY(!logged("Manual connect triggered"));
        QVERIFY(logged("[NOTICE]  Connected"));
        QVERIFY(logged("Exclusive filtering 1.1.1.1"));
        QVERIFY(!logged(saved(ConfigUtil::TOKEN)));
        const QByteArray filter = scene().read("filterConfig.conf");
        QVERIFY2(filter.startsWith(R"({"blackIpSet":["1.1.1.1")") && filter.endsWith("}\n"),
                 filter);
        QVERIFY(scene().read("cpeagent.conf").startsWith("orchid="));
        QVERIFY(!QFile::exists(scene().file("planted")));
        QVERIFY(child<QWidget>("m_Chronometer")->isVisible());

        // The first poll starts from zero, the second measures.
        poll();
        QCOMPARE(label("labelUpSpeed")->text(), "0");
        QTRY_COMPARE(asked(kHeartbeat), 1);
        advance(3);
        poll();
        QVERIFY(label("labelDownSpeed")->text() != "0");
        QCOMPARE(asked(kHeartbeat), 1);

        auto* const watch = monitor::MonitorDatapath::instance();
        watch->start();
        QVERIFY(watch->findChild<QTimer*>()->isActive());
        stopAndWait();
        QVERIFY(!watch->findChild<QTimer*>()->isActive());
        QCOMPARE(reasonOf(kDisconnect), 1);
        QCOMPARE(label("labelUpSpeed")->text(), "--");
        QVERIFY(scriptCalls().constLast().contains("stop"));
    }

    void furtherConnectsOfTheRunLoadNoFilter()
    {
        openConnected();
        button("btnConnect")->setFocus();
        stopAndWait();
        QCOMPARE(window->focusWidget(), button("btnConnect")); // it keeps the keyboard
        button("btnConnect")->click();
        awaitConnected();
        QVERIFY(logged("Manual connect triggered"));
        QVERIFY(logged("no need for reload"));
        hold(kDisconnect);
        stop();
        button("btnClose")->setFocus();
        release(kDisconnect);
        awaitIdle();
        QCOMPARE(window->focusWidget(), button("btnClose")); // the user has taken it elsewhere

        const QString path = scene().file("filterConfig.conf");
        QVERIFY(QFile::remove(path) && QDir().mkdir(path));
        button("btnConnect")->click();
        awaitIdle();
        QCOMPARE(prompt(), "6018 Failed to save Datapath configuration file, please try again.");
        QVERIFY(logged("Can not remove " + path));
        QCOMPARE(asked(kFilter), 1);
    }

    void refusals_data()
    {
        const auto row = columns<QString, int, QByteArray, QString>("path", "code", "body", "text");
        row("connect 500", kConnect, 500, "", "");
        row("connect refused", kConnect, 200, R"({"code":88,"message":"No licence"})", "88 No li");
        row("connect is empty", kConnect, 200, "{}", "");
        row("connect 502", kConnect, 502, "", "6046 ");
        row("filter 404", kFilter, 404, "", "");
    }

    void refusals()
    {
        const auto [path, code, body, text] =
            fetched<QString, int, QByteArray, QString>("path", "code", "body", "text");
        answer(path, Fault::withStatus(code, body));
        open();
        awaitIdle();
        QTRY_VERIFY(!prompt().isEmpty());
        QVERIFY2(prompt().startsWith(text), qPrintable(prompt()));
        QVERIFY(!timer("m_ConnectSlowWarningTimer")->isActive());
        QVERIFY(scriptCalls().isEmpty());
        QVERIFY(!saved(ConfigUtil::TOKEN).isEmpty());
    }

    void cancels_data()
    {
        const auto row = columns<QString, QString>("path", "during");
        row("connect request", kConnect, "connection orchestrator");
        row("filter lists", kFilter, "getting filter");
        row("wait for the agent", "", "waiting agent");
    }

    void cancels()
    {
        const auto [path, during] = fetched<QString, QString>("path", "during");
        behave({{"agent", "silent"}});
        hold(path);
        open();
        if (path == kFilter)
            QTRY_COMPARE(asked(kFilter), 1);
        else if (path.isEmpty())
            QTRY_VERIFY(timer("m_WaitAgentTimer")->isActive());
        stop();
        QVERIFY(path == kConnect || connectText() == "Connect"); // others end at once
        release(path);
        awaitIdle();
        QCOMPARE(logged("Connection canceled during " + during), 1);
        QCOMPARE(asked(kDisconnect), 0);
        QCOMPARE(scene().read("cpeagent.conf").isEmpty(), path == kConnect);
        QCOMPARE(scriptCalls().isEmpty(), !path.isEmpty());
    }

    void aCancelledDownloadLeavesNoOldFilterInForce()
    {
        openConnected();
        stopAndWait();
        grant("mobileTrafficVersion", 6);
        serveFilter(R"({"blackIpSet":["9.9.9.9"]})");
        answer(kFilter, Fault::trickled(3600000, "{}")); // the cancel does not wait for it
        button("btnConnect")->click();
        QTRY_COMPARE(asked(kFilter), 2);
        stop();
        QCOMPARE(connectText(), "Connect");

        service().clearFaults();
        button("btnConnect")->click();
        awaitConnected();
        QCOMPARE(scene().read("filterConfig.conf"), "{\"blackIpSet\":[\"9.9.9.9\"]}\n");
    }

    void whatHappensBehindTheQuestionEndsToo()
    {
        open();
        ModalGuard question("dlgStopPrompt", [this](QDialog* dialog) {
            QTRY_COMPARE_WITH_TIMEOUT(connectText(), "Stop", 15000);
            dialog->accept();
        });
        button("btnConnect")->click();
        awaitIdle();
        QVERIFY(logged("Manual cancel triggered"));
        QCOMPARE(reasonOf(kDisconnect), 1);

        button("btnConnect")->click();
        awaitConnected();
        hold(kDisconnect);
        ModalGuard again("dlgStopPrompt", [](QDialog* dialog) {
            emit monitor::MonitorDatapath::instance()->datapathVanished(); // a reconnect begins
            dialog->accept();
        });
        button("btnConnect")->click();
        release(kDisconnect);
        awaitIdle();
        settle();
        QCOMPARE(asked(kConnect), 2);
        QCOMPARE(connectText(), "Connect");
    }

    void scriptsThatFailAndSilentAgentsAreReported()
    {
        openConnected();
        behave({{"stop_exit", "2"}, {"script_stdout", "still busy"}});
        stopAndWait();
        QCOMPARE(prompt(), "6019 Failed to stop DP(2)");
        QVERIFY(logged("[INFO] still busy"));

        const QString token = saved(ConfigUtil::TOKEN);
        behave({{"script_exit", "1"}, {"script_stderr", "no tun device: -T " + token}});
        button("btnConnect")->click();
        awaitIdle();
        QVERIFY(prompt().startsWith("6021 "));
        QVERIFY(logged("[INFO] no tun device: -T ***"));
        QVERIFY(!logged(token));

        behave({{"agent", "silent"}});
        button("btnConnect")->click();
        QTRY_VERIFY(timer("m_WaitAgentTimer")->isActive());
        fire("m_WaitAgentTimer");
        QCOMPARE(connectText(), "Connect");
        QVERIFY(prompt().startsWith("6010 "));
        QVERIFY(scriptCalls().constLast().contains("stop"));
    }

    void lostTunnelsAreShownAndThreeFailedPollsEndTheConnection()
    {
        openConnected();
        behave({{"tunnels", "down"}});
        poll();
        QVERIFY(!prompt().startsWith("6022 "));
        advance(31);
        poll();
        QVERIFY(prompt().startsWith("6022 "));
        poll();
        QCOMPARE(logged("6022 "), 1);
        behave({{"tunnels", "up"}});
        poll();
        QCOMPARE(prompt(), "");
        QVERIFY(logged("[NOTICE]  Network restored"));

        behave({{"dispatch", "close_midreply"}});
        poll();
        poll();
        QVERIFY(isConnected());
        poll();
        awaitIdle();
        QVERIFY(logged("[ERROR] Check the DP status and find an exception(-5)"));
        QCOMPARE(reasonOf(kDisconnect), 3);
    }

    void aDatapathThatDiesIsStartedAgainTwice()
    {
        openConnected();
        auto* watch = monitor::MonitorDatapath::instance();
        for (const int connects : {2, 3}) {
            emit watch->datapathVanished();
            QTRY_COMPARE(asked(kConnect), connects);
            awaitConnected();
            QCOMPARE(reasonOf(kDisconnect), 3);
            QCOMPARE(reasonOf(kConnect), 1);
        }
        emit watch->datapathVanished();
        QVERIFY(isConnected());
        QCOMPARE(logged("The datapath process has exited, try to restart."), 2);
        QCOMPARE(logged("exceeded, and it cannot be restarted."), 1);
        emit watch->datapathVanished(); // counted anew
        QTRY_COMPARE(asked(kConnect), 4);
    }

    void intranetModeStartsNoDatapath()
    {
        grant("mobileDetect", true);
        QString address = "10.1.1.1";
        platform().ownAddress = [&address] { return address; };
        answer(kFilter, 500);
        open();
        awaitIdle();
        child<QAbstractButton>("toolBtnHome")->click();
        QVERIFY(!label("m_mobileDetectLabel")->isVisible());
        QVERIFY(label("labelUpSpeed")->isVisible());
        service().clearFaults();
        answer(kConnect, 503); // an ordinary attempt until its reply says otherwise
        button("btnConnect")->click();
        child<QAbstractButton>("toolBtnHome")->click();
        QVERIFY(!label("m_mobileDetectLabel")->isVisible());
        awaitIdle();
        service().clearFaults();
        button("btnConnect")->click();
        awaitConnected();
        QVERIFY(label("m_mobileDetectLabel")->isVisible());
        QVERIFY(!label("labelUpSpeed")->isVisible());
        QVERIFY(timer("m_CheckIpTimer")->isActive());
        QVERIFY(scriptCalls().isEmpty());
        child<QAbstractButton>("toolBtnSetting")->click();
        QVERIFY(!label("m_mobileDetectLabel")->isVisible());
        child<QAbstractButton>("toolBtnHome")->click();
        QVERIFY(label("m_mobileDetectLabel")->isVisible());
        QVERIFY(child<QWidget>("m_Chronometer")->isVisible());

        fire("m_CheckIpTimer");
        address.clear(); // a network that is down for a moment is no change
        fire("m_CheckIpTimer");
        QVERIFY(isConnected());
        address = "10.1.1.2";
        fire("m_CheckIpTimer");
        QTRY_COMPARE(asked(kConnect), 4);
        awaitConnected();
        QCOMPARE(reasonOf(kDisconnect), 3);
        QCOMPARE(reasonOf(kConnect), 1);
        fire("m_CheckIpTimer");
        QVERIFY(isConnected());
        stopAndWait();
        QVERIFY(label("labelUpSpeed")->isVisible());
        grant("mobileTrafficVersion", 6);
        serveFilter(R"({"code":401})");
        button("btnConnect")->click();
        QTRY_COMPARE(scene().quits, 1); // refused
        QVERIFY(scriptCalls().isEmpty());
    }

    void aFailedDiagnosisIsRunAgainAtEachPress()
    {
        save(ConfigUtil::DIAGNOSIS_FAIL, 1);
        save(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, 7); // no such type
        openConnected();
        const QString fallback =
            "Get last diagnostic type failed. using default value: 0(triggered";
        QCOMPARE(logged(fallback), 1);
        QTRY_COMPARE(setting(ConfigUtil::DIAGNOSIS_FAIL).toInt(), 0);
        QCOMPARE(service().bundle().trigger, 0);
        save(ConfigUtil::DIAGNOSIS_FAIL, 1);
        save(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, 1);
        ModalGuard question("dlgStopPrompt", [](QDialog* dialog) { dialog->reject(); });
        button("btnConnect")->click();
        QTRY_COMPARE(setting(ConfigUtil::DIAGNOSIS_FAIL).toInt(), 0);
        QCOMPARE(service().bundle().trigger, 1);
        QCOMPARE(logged(fallback), 1);
        QVERIFY(isConnected());
    }

    void agentsSayItInAnyShape()
    {
        behave({{"agent", "silent"}});
        hold(kConnect);
        open();
        QLocalSocket first;
        QLocalSocket second;
        QVERIFY(reach(first) && reach(second));
        say(first, R"({"type": 0})"); // of an earlier run: this one has not begun
        QVERIFY(connectText().startsWith("Connecting"));
        release(kConnect);
        QTRY_VERIFY(timer("m_WaitAgentTimer")->isActive());
        QTRY_VERIFY(!scene().read("dispatch.port").isEmpty());
        const QByteArray port = scene().read("dispatch.port").trimmed();
        platform().peerUser = [](int) { return uid_t(65534); };
        QLocalSocket other; // another user's: its notice is shown, but it ends nothing
        QVERIFY(reach(other));
        other.write(R"({"type": 1, "msg": "firewall disabled"})");
        QTRY_VERIFY(logged("Firewall is closed"));
        QVERIFY(!logged("Receive disconnect event"));
        platform().peerUser = [](int) { return uid_t(0); };
        say(first, R"({"type")");
        say(first, R"(: 0})"); // two texts, neither of them a notice
        say(second, R"({"type": 0, "dispatchConfPort": )" + port + '}'); // only the port counts
        QVERIFY(connectText().startsWith("Connecting"));
        QCOMPARE(DlgMain::dispatchPort, port.toInt());
        const QString ready = QChar(QChar::ByteOrderMark) + QStringLiteral(R"({"type": 0})");
        say(first, QByteArray(reinterpret_cast<const char*>(ready.utf16()), ready.size() * 2));
        QTRY_VERIFY(isConnected());
    }

    void probesAndGarbageOnTheSocketChangeNothing()
    {
        for (const char* sent : {"firewall enabled", "", ""}) { // by copies that were started
            QLocalSocket probe;
            QVERIFY(reach(probe));
            probe.write(sent);
            QVERIFY(!*sent || probe.waitForBytesWritten(1000));
        }
        QTRY_VERIFY(SingleApp::instance()->getLocalServer()->hasPendingConnections());
        behave({{"agent", "flood_ready"}});
        answer(kFilter, QByteArray("\x7f\0ELF\xff", 6)); // handed on as it is
        open();
        QTRY_COMPARE(prompt(), "Firewall is enabled, Veltaro inbound traffic will not pass "
                               "through the firewall."); // it waited
        awaitConnected();
        for (const QByteArray& sent : {QByteArray(3 << 20, '{'), QByteArray("\xff\0\xfe", 3)}) {
            QLocalSocket peer;
            QVERIFY(reach(peer));
            peer.write(sent);
            QTRY_COMPARE(peer.bytesToWrite(), 0);
            peer.disconnectFromServer();
        }
        QLocalSocket firewall;
        QVERIFY(reach(firewall));
        firewall.write(R"({"type": 6, "msg": "firewall disabled"})");
        QTRY_VERIFY(logged("Firewall is closed"));
        QVERIFY(isConnected());
    }

    void anotherUserLosesTheDatapathsDatabase()
    {
        const QString path = scene().file("PersistentConf.db");
        QVERIFY(QFile::copy(scene().file("tarvelin"), path));
        open();
        QVERIFY(!QFile::exists(path));
        QCOMPARE(saved(ConfigUtil::OLD_USERNAME), scene().username);
        QVERIFY(QFile::copy(scene().file("tarvelin"), path));
        window.reset();
        open();
        QVERIFY(QFile::exists(path));
    }

private:
    void serveFilter(const char* document)
    {
        service().edit([&](sim::Scenario& scenario) { scenario.filterDocument = document; });
    }

    bool reach(QLocalSocket& agent) const
    {
        agent.connectToServer(scene().file("UI_SOCKET"));
        return agent.waitForConnected(1000);
    }

    // One text, read by the window before this returns.
    void say(QLocalSocket& agent, const QByteArray& text)
    {
        const int before = logged("Received DP data");
        agent.write(text);
        QTRY_COMPARE(logged("Received DP data"), before + 1);
    }
};

QTEST_MAIN(SessionTest)
#include "SessionTest.moc"
