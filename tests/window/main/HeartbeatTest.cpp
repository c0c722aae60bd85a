#include "window/main/SessionScene.h"

#include <QAction>
#include <QJsonArray>
#include <QNetworkAccessManager>

/// The heartbeat of a connected main window: the orchestrator's orders, its losses, and what may
/// happen while an answer is waited for.
class HeartbeatTest : public SessionScene
{
    Q_OBJECT

private slots:
    void orders()
    {
        openConnected();
        order(4, "");
        beat();
        QTRY_COMPARE(asked(kConnect), 2);
        QCOMPARE(reasonOf(kDisconnect), 2);
        QCOMPARE(reasonOf(kConnect), 2);
        awaitConnected();
        QTRY_VERIFY(logged("[ERROR] Reconnecting due to receiving ORCH notification."));

        order(1, "Licence expired");
        beat();
        awaitIdle();
        QCOMPARE(reasonOf(kDisconnect), 2);
        QTRY_VERIFY(prompt().startsWith("The client has received the message from the server for "
                                        "disconnecting to the network.Please refer"));
        QVERIFY(logged("[ERROR] Licence expired"));
        QCOMPARE(asked(kConnect), 2);
        QCOMPARE(scene().quits, 0);

        button("btnConnect")->click();
        awaitConnected();
        order(1, "");
        beat();
        QTRY_VERIFY(logged("[ERROR] Disconnecting due to receiving ORCH notification."));
    }

    void failuresLeaveTheConnectionAndFlagsAreShown()
    {
        openConnected();
        for (const Fault& failure :
             {Fault::withStatus(500), Fault::withBody("<html>"),
              Fault::withStatus(400, R"({"code":77,"message":"x"})"),
              Fault::withBody(R"({"actionDataList":"4","code":"401"})"),
              Fault::withBody("{\"pad\":\"" + QByteArray(50 << 20, 'x') + "\"}")}) {
            answer(kHeartbeat, failure);
            beat();
            QVERIFY2(isConnected(), failure.body.left(50));
        }
        QCOMPARE(scene().quits, 0);

        service().clearFaults();
        service().edit([](sim::Scenario& now) { now.heartbeatReply["enableQuantum"] = true; });
        beat();
        beat();
        QVERIFY(label("labelQuantumText")->isVisible());
        QCOMPARE(logged("Quantum configuation changed, enableQuantum true enablePQC false"), 1);
    }

    void lossInIntranetModeReconnects()
    {
        grant("mobileDetect", true);
        openConnected();
        answer(kHeartbeat, 500);
        beat();
        QVERIFY(timer("m_HeartBeatSendFailedTimer")->isActive());
        service().clearFaults();
        beat();
        QVERIFY(!timer("m_HeartBeatSendFailedTimer")->isActive());
        QVERIFY(sent(kHeartbeat).value("intranetMode").toBool());

        answer(kHeartbeat, 500);
        beat();
        fire("m_HeartBeatSendFailedTimer");
        QTRY_COMPARE(asked(kConnect), 2);
        QCOMPARE(reasonOf(kDisconnect), 3);
        QCOMPARE(reasonOf(kConnect), 1);
        QTRY_VERIFY(isConnected());
    }

    void whileAnAnswerIsWaitedFor_data()
    {
        const auto row = columns<QString, int, int>("event", "quits", "connects");
        row("stop", "stop", 0, 1);
        row("quit", "quit", 1, 1);
        row("logout", "logout", 1, 1);
        row("second poll", "poll", 0, 2); // the order itself, once
    }

    void whileAnAnswerIsWaitedFor()
    {
        QFETCH(QString, event);
        const auto [quits, connects] = fetched<int, int>("quits", "connects");
        openConnected();
        orderAll(4); // counts for the connection that it is meant for
        hold(kHeartbeat);
        QTimer::singleShot(20, window.get(), [this, event] {
            if (event == "stop")
                stopAndWait();
            else if (event == "quit")
                child<QAction>("m_ActExit")->trigger();
            else if (event == "logout")
                main()->logout(true, false, true, true);
            else
                poll();
            release(kHeartbeat);
        });
        beat();
        QTRY_COMPARE(asked(kDisconnect), 1);
        QTRY_COMPARE(scene().quits, quits);
        QTRY_VERIFY(event == "poll" || connectText() == "Connect");
        QTRY_COMPARE(asked(kConnect), connects);
    }

    void anAnswerForAnEarlierConnectionOrdersNothing()
    {
        openConnected();
        orderAll(4);
        hold(kHeartbeat);
        startBeat();
        stopAndWait();
        button("btnConnect")->click();
        awaitConnected();
        QVERIFY(heartbeatRuns());
        release(kHeartbeat);
        QTRY_VERIFY(!heartbeatRuns());
        QVERIFY(isConnected());
        QCOMPARE(asked(kConnect), 2);
        hold(kHeartbeat);
        startBeat();
        QTRY_COMPARE(asked(kHeartbeat), 2);
        window.reset(); // the answer finds nobody
    }

private:
    // A poll when the next heartbeat is due.
    void startBeat()
    {
        advance(60);
        poll();
    }

    // Returns once no answer is waited for any more.
    void beat()
    {
        const int before = asked(kHeartbeat);
        startBeat();
        QTRY_VERIFY(!heartbeatRuns());
        QVERIFY(asked(kHeartbeat) > before);
    }

    bool heartbeatRuns() const { return window->findChild<QNetworkAccessManager*>("heartbeat"); }

    void order(int action, const char* reason)
    {
        const QJsonObject entry{{"action", action}, {"reason_en", reason}, {"reason_zh", reason}};
        service().order({{"actionDataList", QJsonArray{entry}}});
    }

    // By every answer.
    void orderAll(int action)
    {
        const QJsonArray orders{QJsonObject{{"action", action}}};
        service().edit([&](sim::Scenario& now) { now.heartbeatReply["actionDataList"] = orders; });
    }
};

QTEST_MAIN(HeartbeatTest)
#include "HeartbeatTest.moc"
