#include "window/main/SessionScene.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>

using sim::Fault;

/// The main window and its session against the simulated service and the stand-in datapath.
class SessionTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<SessionScene>(); }

    void cleanup() { QCOMPARE(SessionScene::end(m_scene), QString()); }

    void connectsByItselfShowsRatesAndStops()
    {
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.filterDocument = R"({"ipSetMode":-1,"blackIpSet":["1.1.1.1","1.1.1.1",7]})";
        });
        m_scene->open();
        QTRY_COMPARE_WITH_TIMEOUT(m_scene->connectText(), QStringLiteral("Stop"), 15000);
        const QString log = m_scene->log();
        QVERIFY(log.contains(QStringLiteral("[INFO] Reconnecting")));
        QVERIFY(!log.contains(QStringLiteral("Manual connect triggered")));
        QVERIFY(log.contains(QStringLiteral("[NOTICE]  Connected")));
        QVERIFY(log.contains(QStringLiteral("Exclusive filtering 1.1.1.1")));
        QVERIFY(!log.contains(WindowScene::setting(ConfigUtil::TOKEN).toString()));
        const QByteArray filter = m_scene->read(QStringLiteral("filterConfig.conf"));
        QVERIFY2(filter.startsWith(R"({"blackIpSet":["1.1.1.1")") && filter.endsWith("}\n"),
                 filter);
        QVERIFY(m_scene->read(QStringLiteral("cpeagent.conf")).startsWith("orchid="));
        QVERIFY(m_scene->child<QWidget>("m_Chronometer")->isVisible());

        // The first poll starts from zero, the second measures.
        m_scene->fire("m_StatCountTimer");
        QCOMPARE(m_scene->child<QLabel>("labelUpSpeed")->text(), QStringLiteral("0"));
        const QDateTime later = QDateTime::currentDateTime().addSecs(3);
        QTest::qWait(50);
        platform().clock = [later] { return later.toMSecsSinceEpoch(); };
        m_scene->fire("m_StatCountTimer");
        QVERIFY(m_scene->child<QLabel>("labelDownSpeed")->text() != QStringLiteral("0"));
        QCOMPARE(m_scene->service.count("/api/mobile/v2/heartbeat"), 1);

        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        const QJsonObject notice = m_scene->service.lastRequest("/api/mobile/v2/disconnect").json();
        QCOMPARE(notice.value("mobileActionLogType").toInt(), 1);
        QCOMPARE(m_scene->child<QLabel>("labelUpSpeed")->text(), QStringLiteral("--"));
        QVERIFY(sim::scriptCalls(m_scene->folder()).constLast().contains(QStringLiteral("stop")));
    }

    void aSecondConnectOfTheRunLoadsNoFilter()
    {
        m_scene->openConnected();
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        m_scene->button("btnConnect")->click();
        QTRY_COMPARE_WITH_TIMEOUT(m_scene->connectText(), QStringLiteral("Stop"), 15000);
        QCOMPARE(m_scene->service.count("/files/ip-filter.json"), 1);
        QVERIFY(m_scene->log().contains(QStringLiteral("Manual connect triggered")));
        QVERIFY(m_scene->log().contains(QStringLiteral("no need for reload")));
    }

    void refusals_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("message");
        const QString connect = QStringLiteral("/api/mobile/v2/connect");
        const QString filter = QStringLiteral("/files/ip-filter.json");
        QTest::newRow("connect 500") << connect << 500 << QByteArray() << "";
        QTest::newRow("connect refused")
            << connect << 200 << QByteArray(R"({"code":88,"message":"No licence"})")
            << "88 No licence";
        QTest::newRow("connect is empty") << connect << 200 << QByteArray("{}") << "";
        QTest::newRow("connect 502") << connect << 502 << QByteArray() << "6046 ";
        QTest::newRow("filter 404") << filter << 404 << QByteArray() << "";
    }

    void refusals()
    {
        QFETCH(QString, path);
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        QFETCH(QString, message);
        Fault fault = Fault::withBody(body);
        fault.status = status;
        m_scene->service.setFault(path, fault);
        m_scene->open();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QTRY_VERIFY(!m_scene->prompt().isEmpty());
        QVERIFY2(m_scene->prompt().startsWith(message), qPrintable(m_scene->prompt()));
        QVERIFY(!m_scene->timer("m_ConnectSlowWarningTimer")->isActive());
        QVERIFY(sim::scriptCalls(m_scene->folder()).isEmpty());
        QVERIFY(!WindowScene::setting(ConfigUtil::TOKEN).toString().isEmpty());
    }

    void cancelDuringTheConnectRequest()
    {
        m_scene->service.setFault(QStringLiteral("/api/mobile/v2/connect"), Fault::withDelay(200));
        m_scene->open();
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(m_scene->log().contains(
            QStringLiteral("Connection canceled during connection orchestrator")));
        QCOMPARE(m_scene->read(QStringLiteral("cpeagent.conf")), QByteArray());
    }

    void cancelDuringTheFilter()
    {
        m_scene->service.setFault(QStringLiteral("/files/ip-filter.json"), Fault::withDelay(200));
        m_scene->open();
        QTRY_COMPARE(m_scene->service.count("/files/ip-filter.json"), 1);
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(
            m_scene->log().contains(QStringLiteral("Connection canceled during getting filter")));
        QVERIFY(sim::scriptCalls(m_scene->folder()).isEmpty());
    }

    void aCancelledDownloadLeavesNoOldFilterInForce()
    {
        m_scene->openConnected();
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.connectReply.insert(QStringLiteral("mobileTrafficVersion"), 6);
            scenario.filterDocument = R"({"blackIpSet":["9.9.9.9"]})";
        });
        // A byte an hour: the cancel does not wait for it.
        m_scene->service.setFault(QStringLiteral("/files/ip-filter.json"),
                                  Fault::trickled(3600000, "{}"));
        m_scene->button("btnConnect")->click();
        QTRY_COMPARE(m_scene->service.count("/files/ip-filter.json"), 2);
        m_scene->stop();
        QCOMPARE(m_scene->connectText(), QStringLiteral("Connect"));

        m_scene->service.clearFaults();
        m_scene->button("btnConnect")->click();
        m_scene->awaitConnected();
        QCOMPARE(m_scene->read(QStringLiteral("filterConfig.conf")),
                 QByteArray("{\"blackIpSet\":[\"9.9.9.9\"]}\n"));
    }

    void aReadyAgentOfAnEarlierRunIsNoConnection()
    {
        m_scene->service.setFault(QStringLiteral("/api/mobile/v2/connect"), Fault::withDelay(300));
        m_scene->open();
        QLocalSocket leftOver;
        leftOver.connectToServer(m_scene->file(QStringLiteral("UI_SOCKET")));
        QVERIFY(leftOver.waitForConnected(1000));
        say(leftOver, R"({"type": 0})");
        QCOMPARE(m_scene->connectText().left(10), QStringLiteral("Connecting"));
        m_scene->awaitConnected();
        QVERIFY(!m_scene->read(QStringLiteral("cpeagent.conf")).isEmpty());
    }

    void anIntranetAttemptThatFailsLeavesTheHomePage()
    {
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.connectReply.insert(QStringLiteral("mobileDetect"), true);
        });
        m_scene->service.setFault(QStringLiteral("/files/ip-filter.json"), Fault::withStatus(500));
        m_scene->open();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        m_scene->child<QAbstractButton>("toolBtnHome")->click();
        QVERIFY(!m_scene->child<QLabel>("m_mobileDetectLabel")->isVisible());
        QVERIFY(m_scene->child<QLabel>("labelUpSpeed")->isVisible());
    }

    void aReconnectThatBeganBehindTheQuestionEndsToo()
    {
        m_scene->openConnected();
        m_scene->service.setFault(QStringLiteral("/api/mobile/v2/disconnect"),
                                  Fault::withDelay(200));
        ModalGuard question("dlgStopPrompt", [this](QDialog* dialog) {
            emit monitor::MonitorDatapath::instance()->datapathVanished();
            dialog->accept();
        });
        m_scene->button("btnConnect")->click();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QTest::qWait(100);
        QCOMPARE(m_scene->service.count("/api/mobile/v2/connect"), 1);
        QCOMPARE(m_scene->connectText(), QStringLiteral("Connect"));
    }

    void cancelDuringTheAgentWait()
    {
        m_scene->behave({{"agent", "silent"}});
        m_scene->open();
        QTRY_VERIFY(m_scene->timer("m_WaitAgentTimer")->isActive());
        m_scene->stop();
        QCOMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->log().count(QStringLiteral("Connection canceled during waiting agent")),
                 1);
        QCOMPARE(m_scene->service.count("/api/mobile/v2/disconnect"), 0);
    }

    void theConnectButtonKeepsTheKeyboard()
    {
        m_scene->openConnected();
        m_scene->button("btnConnect")->setFocus();
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->window->focusWidget(), m_scene->button("btnConnect"));

        m_scene->button("btnConnect")->click();
        m_scene->awaitConnected();
        m_scene->service.setFault(QStringLiteral("/api/mobile/v2/disconnect"),
                                  Fault::withDelay(100));
        m_scene->stop();
        m_scene->button("btnClose")->setFocus();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->window->focusWidget(), m_scene->button("btnClose"));
    }

    void connectedWhileTheQuestionIsOpen()
    {
        m_scene->open();
        ModalGuard question("dlgStopPrompt", [this](QDialog* dialog) {
            QTRY_COMPARE_WITH_TIMEOUT(m_scene->connectText(), QStringLiteral("Stop"), 15000);
            dialog->accept();
        });
        m_scene->button("btnConnect")->click();
        QVERIFY(question.seen());
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(m_scene->log().contains(QStringLiteral("Manual cancel triggered")));
        QCOMPARE(m_scene->reasonOf("/api/mobile/v2/disconnect"), 1);
    }

    void aSilentAgentIsGivenUp()
    {
        m_scene->behave({{"agent", "silent"}});
        m_scene->open();
        QTRY_VERIFY(m_scene->timer("m_WaitAgentTimer")->isActive());
        m_scene->fire("m_WaitAgentTimer");
        QCOMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(m_scene->prompt().startsWith(QStringLiteral("6010 ")));
        QVERIFY(sim::scriptCalls(m_scene->folder()).constLast().contains(QStringLiteral("stop")));
    }

    void aFailingScriptIsReportedWithItsWords()
    {
        m_scene->behave({{"script_exit", "1"}, {"script_stderr", "no tun device"}});
        m_scene->open();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(m_scene->prompt().startsWith(QStringLiteral("6021 ")));
        QVERIFY(m_scene->log().contains(QStringLiteral("[INFO] no tun device")));
    }

    void threeFailedPollsEndTheConnection()
    {
        m_scene->openConnected();
        m_scene->behave({{"dispatch", "close_midreply"}});
        m_scene->fire("m_StatCountTimer");
        m_scene->fire("m_StatCountTimer");
        QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
        m_scene->fire("m_StatCountTimer");
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(m_scene->log().contains(
            QStringLiteral("[ERROR] Check the DP status and find an exception(-5)")));
        QCOMPARE(m_scene->reasonOf("/api/mobile/v2/disconnect"), 3);
    }

    void lostTunnelsAreShownOnceAndRestored()
    {
        m_scene->openConnected();
        m_scene->behave({{"tunnels", "down"}});
        m_scene->fire("m_StatCountTimer");
        QVERIFY(!m_scene->prompt().startsWith(QStringLiteral("6022 ")));
        const QDateTime later = QDateTime::currentDateTime().addSecs(31);
        platform().clock = [later] { return later.toMSecsSinceEpoch(); };
        m_scene->fire("m_StatCountTimer");
        QVERIFY(m_scene->prompt().startsWith(QStringLiteral("6022 ")));
        m_scene->fire("m_StatCountTimer");
        QCOMPARE(m_scene->log().count(QStringLiteral("6022 ")), 1);
        m_scene->behave({{"tunnels", "up"}});
        m_scene->fire("m_StatCountTimer");
        QCOMPARE(m_scene->prompt(), QString());
        QVERIFY(m_scene->log().contains(QStringLiteral("[NOTICE]  Network restored")));
    }

    void aDatapathThatDiesIsStartedAgainTwice()
    {
        platform().fileRoot = m_scene->file(QStringLiteral("host"));
        QVERIFY(QDir().mkpath(platform().hostFile(QStringLiteral("/proc"))));
        m_scene->openConnected();
        for (int connects = 2; connects <= 3; ++connects) {
            killDatapath();
            QTRY_COMPARE_WITH_TIMEOUT(m_scene->service.count("/api/mobile/v2/connect"), connects,
                                      10000);
            m_scene->awaitConnected();
            QCOMPARE(m_scene->reasonOf("/api/mobile/v2/disconnect"), 3);
            QCOMPARE(m_scene->reasonOf("/api/mobile/v2/connect"), 1);
        }
        killDatapath();
        QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
        const QString log = m_scene->log();
        QCOMPARE(log.count(QStringLiteral("The datapath process has exited, try to restart.")), 2);
        QCOMPARE(log.count(QStringLiteral("exceeded, and it cannot be restarted.")), 1);
        // Nobody answers the traffic poll now.
        for (int poll = 0; poll < 3; ++poll)
            m_scene->fire("m_StatCountTimer");
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->service.count("/api/mobile/v2/connect"), 3);
    }

    void aStopScriptThatFailsIsReported()
    {
        m_scene->openConnected();
        m_scene->behave({{"stop_exit", "2"}, {"script_stdout", "still busy"}});
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->prompt(), QStringLiteral("6019 Failed to stop DP(2)"));
        QVERIFY(m_scene->log().contains(QStringLiteral("[INFO] still busy")));
    }

    void intranetModeStartsNoDatapath()
    {
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.connectReply.insert(QStringLiteral("mobileDetect"), true);
            scenario.connectReply.insert(QStringLiteral("enableQuantum"), true);
        });
        m_scene->open();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Stop"));
        QVERIFY(m_scene->child<QLabel>("m_mobileDetectLabel")->isVisible());
        QVERIFY(!m_scene->child<QLabel>("labelUpSpeed")->isVisible());
        QVERIFY(m_scene->timer("m_CheckIpTimer")->isActive());
        QVERIFY(sim::scriptCalls(m_scene->folder()).isEmpty());
        m_scene->child<QAbstractButton>("toolBtnSetting")->click();
        QVERIFY(!m_scene->child<QLabel>("m_mobileDetectLabel")->isVisible());
        m_scene->child<QAbstractButton>("toolBtnHome")->click();
        QVERIFY(m_scene->child<QLabel>("m_mobileDetectLabel")->isVisible());
        QVERIFY(m_scene->child<QWidget>("m_Chronometer")->isVisible());
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(m_scene->child<QLabel>("labelUpSpeed")->isVisible());
    }

    void anotherAddressInIntranetModeReconnects()
    {
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.connectReply.insert(QStringLiteral("mobileDetect"), true);
        });
        QString address = QStringLiteral("10.1.1.1");
        platform().ownAddress = [&address] { return address; };
        m_scene->openConnected();
        m_scene->fire("m_CheckIpTimer");
        address.clear(); // a network that is down for a moment is no change
        m_scene->fire("m_CheckIpTimer");
        QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
        address = QStringLiteral("10.1.1.2");
        m_scene->fire("m_CheckIpTimer");
        QTRY_COMPARE(m_scene->service.count("/api/mobile/v2/connect"), 2);
        m_scene->awaitConnected();
        QCOMPARE(m_scene->reasonOf("/api/mobile/v2/disconnect"), 3);
        QCOMPARE(m_scene->reasonOf("/api/mobile/v2/connect"), 1);
        m_scene->fire("m_CheckIpTimer");
        QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
    }

    void anUnchangedFilterThatCannotBeWrittenEndsTheAttempt()
    {
        m_scene->openConnected();
        m_scene->stop();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        const QString path = m_scene->file(QStringLiteral("filterConfig.conf"));
        QVERIFY(QFile::remove(path));
        QVERIFY(QDir().mkdir(path));
        m_scene->button("btnConnect")->click();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->prompt(), QStringLiteral("6018 Failed to save Datapath configuration "
                                                   "file, please try again."));
        QVERIFY(m_scene->log().contains(QStringLiteral("Can not remove ") + path));
        QCOMPARE(m_scene->service.count("/files/ip-filter.json"), 1);
    }

    void aFailedDiagnosisIsRunAgainAtEachPress()
    {
        ConfigUtil::writeValue(ConfigUtil::DIAGNOSIS_FAIL, 1);
        m_scene->openConnected();
        const QString fallback = QStringLiteral("Get last diagnostic type failed. using default "
                                                "value: 0(triggered by client)");
        QCOMPARE(m_scene->log().count(fallback), 1);
        QVERIFY(m_scene->log().contains(
            QStringLiteral("Diagnosis requested, trigger type 0, connected 0")));
        ConfigUtil::writeValue(ConfigUtil::DIAGNOSIS_TRIGGER_TYPE, 1);
        ModalGuard question("dlgStopPrompt", [](QDialog* dialog) { dialog->reject(); });
        m_scene->button("btnConnect")->click();
        QVERIFY(m_scene->log().contains(
            QStringLiteral("Diagnosis requested, trigger type 1, connected 1")));
        QCOMPARE(m_scene->log().count(fallback), 1);
        QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
    }

    void agentsSayItInAnyShape()
    {
        m_scene->behave({{"agent", "silent"}});
        m_scene->open();
        QTRY_VERIFY(m_scene->timer("m_WaitAgentTimer")->isActive());
        QTRY_VERIFY(!m_scene->read(QStringLiteral("dispatch.port")).isEmpty());
        const QByteArray port = m_scene->read(QStringLiteral("dispatch.port")).trimmed();
        QLocalSocket first;
        QLocalSocket second;
        for (QLocalSocket* agent : {&first, &second}) {
            agent->connectToServer(m_scene->file(QStringLiteral("UI_SOCKET")));
            QVERIFY(agent->waitForConnected(1000));
        }
        say(first, R"({"type")");
        say(first, R"(: 0})"); // two texts, neither of them a notice
        say(second, R"({"type": 0, "dispatchConfPort": )" + port + '}'); // only the port counts
        QCOMPARE(m_scene->connectText().left(10), QStringLiteral("Connecting"));
        QCOMPARE(DlgMain::dispatchPort, port.toInt());
        const QString ready = QChar(QChar::ByteOrderMark) + QStringLiteral(R"({"type": 0})");
        say(first, QByteArray(reinterpret_cast<const char*>(ready.utf16()), ready.size() * 2));
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Stop"));
    }

    void aSilentProbeOrGarbageOnTheSocketChangesNothing()
    {
        m_scene->openConnected();
        for (const QByteArray& sent :
             {QByteArray(), QByteArray(3 << 20, '{'), QByteArray("\xff\0\xfe", 3)}) {
            QLocalSocket peer;
            peer.connectToServer(m_scene->file(QStringLiteral("UI_SOCKET")));
            QVERIFY(peer.waitForConnected(1000));
            peer.write(sent);
            QTRY_COMPARE(peer.bytesToWrite(), 0);
            peer.disconnectFromServer();
        }
        QLocalSocket firewall;
        firewall.connectToServer(m_scene->file(QStringLiteral("UI_SOCKET")));
        firewall.write(R"({"type": 6, "msg": "firewall enabled"})");
        QTRY_COMPARE(m_scene->prompt(),
                     QStringLiteral("Firewall is enabled, Veltaro inbound traffic will "
                                    "not pass through the firewall."));
        QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
    }

    void probesOfSecondCopiesDoNotHideTheAgent()
    {
        for (int copy = 0; copy < 3; ++copy) {
            QLocalSocket probe;
            probe.connectToServer(m_scene->file(QStringLiteral("UI_SOCKET")));
            QVERIFY(probe.waitForConnected(1000));
        }
        QTRY_VERIFY(SingleApp::instance()->getLocalServer()->hasPendingConnections());
        m_scene->openConnected();
    }

    void aTokenThatTheScriptRepeatsIsMasked()
    {
        const QString token = WindowScene::setting(ConfigUtil::TOKEN).toString();
        m_scene->behave({{"script_exit", "1"}, {"script_stderr", "usage: -T " + token}});
        m_scene->open();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QVERIFY(m_scene->log().contains(QStringLiteral("usage: -T ***")));
        QVERIFY(!m_scene->log().contains(token));
    }

    void anotherUserLosesTheDatapathsDatabase()
    {
        const auto leaveDatabase = [this] {
            QFile database(m_scene->file(QStringLiteral("PersistentConf.db")));
            QVERIFY(database.open(QIODevice::WriteOnly));
        };
        leaveDatabase();
        m_scene->open();
        QVERIFY(!QFile::exists(m_scene->file(QStringLiteral("PersistentConf.db"))));
        QCOMPARE(WindowScene::setting(ConfigUtil::OLD_USERNAME).toString(), m_scene->username);
        leaveDatabase();
        m_scene->window.reset();
        m_scene->open();
        QVERIFY(QFile::exists(m_scene->file(QStringLiteral("PersistentConf.db"))));
    }

    void aWindowDestroyedDuringAHeartbeat()
    {
        m_scene->openConnected();
        m_scene->service.setFault(QStringLiteral("/api/mobile/v2/heartbeat"),
                                  Fault::withDelay(5000));
        const QDateTime later = QDateTime::currentDateTime().addSecs(60);
        platform().clock = [later] { return later.toMSecsSinceEpoch(); };
        m_scene->fire("m_StatCountTimer");
        QTRY_COMPARE(m_scene->service.count("/api/mobile/v2/heartbeat"), 1);
        m_scene->window.reset();
    }

private:
    // One text, read by the window before this returns.
    void say(QLocalSocket& agent, const QByteArray& text)
    {
        const int before = m_scene->log().count(QStringLiteral("Received DP data"));
        agent.write(text);
        QTRY_COMPARE(m_scene->log().count(QStringLiteral("Received DP data")), before + 1);
    }

    // Kills the datapath's processes and lets the watch look for them, where it finds none of
    // another test's.
    void killDatapath()
    {
        QVERIFY(sim::crashDatapath(m_scene->folder()));
        QVERIFY(QMetaObject::invokeMethod(monitor::MonitorDatapath::instance(), "onTimerOut"));
    }

    std::unique_ptr<SessionScene> m_scene;
};

QTEST_MAIN(SessionTest)
#include "SessionTest.moc"
