#include "window/main/SessionScene.h"

#include <QAction>
#include <QJsonArray>
#include <QNetworkAccessManager>

using sim::Fault;

namespace {

constexpr char kHeartbeat[] = "/api/mobile/v2/heartbeat";
constexpr char kConnect[] = "/api/mobile/v2/connect";
constexpr char kDisconnect[] = "/api/mobile/v2/disconnect";

} // namespace

/// The heartbeat of a connected main window: the orchestrator's orders, the end of a session, and
/// what may happen while an answer is waited for.
class HeartbeatTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<SessionScene>(); }

    void cleanup() { QCOMPARE(SessionScene::end(m_scene), QString()); }

    void anOrderedDisconnect()
    {
        m_scene->openConnected();
        order(1, "Licence expired");
        beat();
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->reasonOf(kDisconnect), 2);
        QTRY_VERIFY(m_scene->prompt().startsWith(
            QStringLiteral("The client has received the message from the server for "
                           "disconnecting to the network.Please refer")));
        QVERIFY(m_scene->log().contains(QStringLiteral("[ERROR] Licence expired")));
        QCOMPARE(m_scene->service.count(kConnect), 1);
        QCOMPARE(m_scene->quits, 0);
    }

    void anOrderedReconnect()
    {
        m_scene->openConnected();
        order(4, "");
        beat();
        QTRY_COMPARE(m_scene->service.count(kConnect), 2);
        QCOMPARE(m_scene->reasonOf(kDisconnect), 2);
        QCOMPARE(m_scene->reasonOf(kConnect), 2);
        QTRY_COMPARE_WITH_TIMEOUT(m_scene->connectText(), QStringLiteral("Stop"), 15000);
        QTRY_VERIFY(m_scene->log().contains(
            QStringLiteral("[ERROR] Reconnecting due to receiving ORCH notification.")));
    }

    void failuresLeaveTheConnection_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("server error") << 500 << QByteArray();
        QTest::newRow("garbage") << 200 << QByteArray("<html>");
        QTest::newRow("another code") << 400 << QByteArray(R"({"code":77,"message":"x"})");
        QTest::newRow("mistyped") << 200 << QByteArray(R"({"actionDataList":"4","code":"401"})");
        QTest::newRow("huge") << 200
                              << QByteArray("{\"pad\":\"" + QByteArray(50 << 20, 'x') + "\"}");
    }

    void failuresLeaveTheConnection()
    {
        QFETCH(int, status);
        QFETCH(QByteArray, body);
        m_scene->openConnected();
        m_scene->service.setFault(kHeartbeat, Fault::withStatus(status, body));
        beat();
        QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
        QCOMPARE(m_scene->quits, 0);
    }

    void encryptionFlagsAreShown()
    {
        m_scene->openConnected();
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.heartbeatReply.insert(QStringLiteral("enableQuantum"), true);
        });
        beat();
        beat();
        QVERIFY(m_scene->child<QLabel>("labelQuantumText")->isVisible());
        QCOMPARE(m_scene->log().count(QStringLiteral("Quantum configuation changed, enableQuantum "
                                                     "true enablePQC false")),
                 1);
    }

    void lossInIntranetModeReconnects()
    {
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.connectReply.insert(QStringLiteral("mobileDetect"), true);
        });
        m_scene->openConnected();
        m_scene->service.setFault(kHeartbeat, Fault::withStatus(500));
        beat();
        QVERIFY(m_scene->timer("m_HeartBeatSendFailedTimer")->isActive());
        m_scene->service.clearFaults();
        beat();
        QVERIFY(!m_scene->timer("m_HeartBeatSendFailedTimer")->isActive());
        QVERIFY(m_scene->service.lastRequest(kHeartbeat).json().value("intranetMode").toBool());

        m_scene->service.setFault(kHeartbeat, Fault::withStatus(500));
        beat();
        m_scene->fire("m_HeartBeatSendFailedTimer");
        QTRY_COMPARE(m_scene->service.count(kConnect), 2);
        QCOMPARE(m_scene->reasonOf(kDisconnect), 3);
        QCOMPARE(m_scene->reasonOf(kConnect), 1);
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Stop"));
    }

    void whileAnAnswerIsWaitedFor_data()
    {
        QTest::addColumn<QString>("event");
        for (const char* event : {"stop", "stop and connect", "quit", "logout", "second poll"})
            QTest::newRow(event) << QString(event);
    }

    void whileAnAnswerIsWaitedFor()
    {
        QFETCH(QString, event);
        m_scene->openConnected();
        // Comes when nobody is connected any more, or not in the connection that it is meant for.
        m_scene->service.edit([](sim::Scenario& scenario) {
            scenario.heartbeatReply.insert(QStringLiteral("actionDataList"),
                                           QJsonArray{QJsonObject{{"action", 4}}});
        });
        m_scene->service.setFault(kHeartbeat, Fault::withDelay(1000));
        QTimer::singleShot(20, m_scene->window.get(), [this, event] {
            if (event.startsWith(QLatin1String("stop")))
                m_scene->stop();
            else if (event == QLatin1String("quit"))
                m_scene->child<QAction>("m_ActExit")->trigger();
            else if (event == QLatin1String("logout"))
                m_scene->window->logout(true, false, true, true);
            else
                m_scene->fire("m_StatCountTimer");
        });
        if (event == QLatin1String("stop and connect")) {
            SessionScene::advance(60);
            m_scene->fire("m_StatCountTimer");
            QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
            m_scene->button("btnConnect")->click();
            m_scene->awaitConnected();
            QVERIFY(heartbeatRuns());
            QTRY_VERIFY(!heartbeatRuns());
            QCOMPARE(m_scene->connectText(), QStringLiteral("Stop"));
            QCOMPARE(m_scene->service.count(kConnect), 2);
            return;
        }
        beat();
        if (event == QLatin1String("second poll")) {
            QTRY_COMPARE(m_scene->service.count(kConnect), 2); // the order itself, once
            return;
        }
        QTRY_COMPARE(m_scene->service.count(kDisconnect), 1);
        QTRY_COMPARE(m_scene->quits, event == QLatin1String("stop") ? 0 : 1);
        QTRY_COMPARE(m_scene->connectText(), QStringLiteral("Connect"));
        QCOMPARE(m_scene->service.count(kConnect), 1);
    }

private:
    // A poll when the next heartbeat is due; returns once no answer is waited for any more.
    void beat()
    {
        const int before = m_scene->service.count(kHeartbeat);
        SessionScene::advance(60);
        m_scene->fire("m_StatCountTimer");
        QTRY_VERIFY(!heartbeatRuns());
        QVERIFY(m_scene->service.count(kHeartbeat) > before);
    }

    bool heartbeatRuns() const
    {
        return m_scene->window->findChild<QNetworkAccessManager*>(QStringLiteral("heartbeat"));
    }

    void order(int action, const char* reason)
    {
        const QJsonObject entry{{"action", action}, {"reason_en", reason}, {"reason_zh", reason}};
        m_scene->service.order({{"actionDataList", QJsonArray{entry}}});
    }

    std::unique_ptr<SessionScene> m_scene;
};

QTEST_MAIN(HeartbeatTest)
#include "HeartbeatTest.moc"
