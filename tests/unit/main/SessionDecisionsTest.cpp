#include "main/AgentText.h"
#include "main/ConnectButton.h"
#include "main/ConnState.h"
#include "main/FlowRates.h"
#include "main/SessionRules.h"
#include "main/widgeChronometer.h"
#include "monitor/MonitorDatapath.h"

#include <QTest>

#include <limits>

Q_DECLARE_METATYPE(AgentText::Event)

/// The main window's decisions.
class SessionDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void transitions()
    {
        using S = ConnState;
        using T = Transition;
        const struct
        {
            S::CONN_STATUS from;
            S::CONN_STATUS to;
            T effect;
        } allowed[] = {
            {S::DISCONNECTION, S::CONNECTING, T::Begin},
            {S::CONNECTING, S::CONNECTION, T::Connected},
            {S::CONNECTING, S::DISCONNECTION, T::Abandoned},
            {S::CONNECTING, S::DISCONNECTING, T::Cancelling},
            {S::CONNECTION, S::DISCONNECTION, T::Ended},
            {S::CONNECTION, S::DISCONNECTING, T::Stopping},
            {S::DISCONNECTING, S::DISCONNECTION, T::Ended},
        };
        int ignored = 0;
        for (int from = 0; from < 4; ++from) {
            for (int to = 0; to < 4; ++to) {
                T expected = T::Ignored;
                for (const auto& row : allowed) {
                    if (row.from == from && row.to == to)
                        expected = row.effect;
                }
                ignored += expected == T::Ignored;
                QCOMPARE(transition(S::CONN_STATUS(from), S::CONN_STATUS(to)), expected);
            }
        }
        QCOMPARE(ignored, 9);
    }

    void buttonAnimation_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("over");
        QTest::addColumn<QStringList>("texts");
        QTest::newRow("connecting") << int(ConnState::CONNECTING) << false
                                    << QStringList{"Connecting",    "Connecting.", "Connecting..",
                                                   "Connecting...", "Connecting",  "Connecting."};
        QTest::newRow("pointer over") << int(ConnState::CONNECTING) << true
                                      << QStringList{"Connecting..", "Cancel", "Cancel"};
        QTest::newRow("pointer left") << int(ConnState::CONNECTING) << false
                                      << QStringList{"Cancel", "Connecting.", "Connecting.."};
        QTest::newRow("disconnecting")
            << int(ConnState::DISCONNECTING) << true
            << QStringList{"Disconnecting", "Disconnecting.", "Disconnecting..", "Disconnecting...",
                           "Disconnecting"};
        QTest::newRow("connected")
            << int(ConnState::CONNECTION) << true << QStringList{"Stop", "Stop"};
    }

    void buttonAnimation()
    {
        QFETCH(int, status);
        QFETCH(bool, over);
        QFETCH(QStringList, texts);
        const ConnectButtonTexts words{"Connecting", "Cancel", "Disconnecting"};
        for (int step = 1; step < texts.size(); ++step) {
            QCOMPARE(
                nextButtonText(ConnState::CONN_STATUS(status), over, texts.at(step - 1), words),
                texts.at(step));
        }
    }

    void agentTexts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<AgentText::Event>("event");
        QTest::addColumn<int>("port");
        QTest::newRow("ready") << R"({"type": 0})" << AgentText::Ready << 0;
        QTest::newRow("no space") << R"({"type":0})" << AgentText::Nothing << 0;
        QTest::newRow("refused") << R"({"type": 1, "code": 7})" << AgentText::Disconnect << 0;
        QTest::newRow("port") << R"({"dispatchConfPort" :  54399})" << AgentText::Port << 54399;
        QTest::newRow("port wins over ready")
            << R"({"type": 0, "dispatchConfPort":1})" << AgentText::Port << 1;
        QTest::newRow("port without digits")
            << R"({"dispatchConfPort":"x"})" << AgentText::PortUnusable << 0;
        QTest::newRow("port too large")
            << R"({"dispatchConfPort":99999999999})" << AgentText::PortUnusable << 0;
        QTest::newRow("firewall wins over all")
            << R"({"type": 6, "dispatchConfPort": 5, "x": {"type": 0}})" << AgentText::Firewall
            << 0;
        QTest::newRow("type ten") << R"({"type": 10})" << AgentText::Disconnect << 0;
        QTest::newRow("garbage") << QString(100000, QLatin1Char('{')) << AgentText::Nothing << 0;
    }

    void agentTexts()
    {
        QFETCH(QString, text);
        QFETCH(int, port);
        const AgentText said = AgentText::read(text);
        QTEST(said.event, "event");
        if (said.event == AgentText::Port)
            QCOMPARE(said.port, port);
    }

    void agentNotices()
    {
        const AgentText both = AgentText::read("firewall enabled firewall disabled rule not found");
        QVERIFY(both.firewallEnabled && !both.firewallDisabled && both.ruleNotFound);
        const AgentText off = AgentText::read("hello, firewall disabled");
        QVERIFY(!off.firewallEnabled && off.firewallDisabled && off.hello && !off.ruleNotFound);
    }

    void ratesSettleOverEightPolls()
    {
        FlowRates rates;
        QVERIFY(!rates.update(1000000, 500, 500));
        QVERIFY(rates.update(1003000, 500 + 3000000, 500));
        QCOMPARE(rates.m_LastUpSpeed, 1000000LL);
        QCOMPARE(rates.m_LastDownSpeed, 0LL);
        QVERIFY(rates.update(1006000, 500 + 6000000, 400)); // a counter that went down
        QCOMPARE(rates.m_LastUpSpeed, 1875000LL);
        QCOMPARE(rates.m_LastDownSpeed, 0LL);
        QVERIFY(!rates.update(1006900, 500 + 9000000, 400)); // within a second
        QCOMPARE(rates.m_LastUpSpeed, 0LL);
    }

    void ratesSurviveAnyCounter()
    {
        FlowRates rates;
        rates.update(1, 0, std::numeric_limits<long long>::min());
        for (int poll = 1; poll < 200; ++poll) {
            rates.update(1 + 1000LL * poll, std::numeric_limits<long long>::max(),
                         poll % 2 ? std::numeric_limits<long long>::max()
                                  : std::numeric_limits<long long>::min());
            QVERIFY(rates.m_LastUpSpeed >= 0 && rates.m_LastDownSpeed >= 0);
        }
        QVERIFY(rates.update(-5000, 5, 5)); // the clock was set back
        QVERIFY(rates.m_LastUpSpeed >= 0);
    }

    void tunnels_data()
    {
        QTest::addColumn<bool>("failing");
        QTest::addColumn<bool>("down");
        QTest::addColumn<bool>("has");
        QTest::addColumn<int>("connected");
        QTest::addColumn<int>("health");
        const int none = int(TunnelHealth::Unchanged);
        const int lost = int(TunnelHealth::Lost);
        QTest::newRow("building up") << false << true << true << 30000 << none;
        QTest::newRow("lost") << false << true << true << 30001 << lost;
        QTest::newRow("still lost") << true << true << true << 60000 << none;
        QTest::newRow("restored") << true << false << true << 60000 << int(TunnelHealth::Restored);
        QTest::newRow("fine") << false << false << true << 60000 << none;
        QTest::newRow("none listed") << false << true << false << 60000 << none;
        QTest::newRow("none listed, not restored") << true << false << false << 60000 << none;
    }

    void tunnels()
    {
        QFETCH(bool, failing);
        QFETCH(bool, down);
        QFETCH(bool, has);
        QFETCH(int, connected);
        QTEST(int(tunnelHealth(failing, down, has, connected)), "health");
    }

    void connectedTime_data()
    {
        QTest::addColumn<int>("seconds");
        QTest::addColumn<QString>("text");
        QTest::newRow("start") << 0 << "00:00:00";
        QTest::newRow("59 s") << 59 << "00:00:59";
        QTest::newRow("last second of a day") << 86399 << "23:59:59";
        QTest::newRow("one day") << 90061 << "1 day 01:01:01";
        QTest::newRow("two days") << 200000 << "02 days 07:33:20";
    }

    void connectedTime()
    {
        QFETCH(int, seconds);
        QTEST(widgeChronometer::timeText(seconds), "text");
    }

    void headerName_data()
    {
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("shown");
        QTest::newRow("mail") << "alice@corp.example"
                              << "alice";
        QTest::newRow("11") << "abcdefghijk@x"
                            << "abcdefghijk";
        QTest::newRow("16") << "abcdefghijklmnop@x"
                            << "abcdefghijk...";
        QTest::newRow("empty") << ""
                               << "";
    }

    void headerName()
    {
        QFETCH(QString, user);
        QTEST(session::headerName(user), "shown");
    }

    void restartsAreLimited()
    {
        int count = 0;
        QVector<bool> allowed;
        for (int vanished = 0; vanished < 4; ++vanished)
            allowed << session::mayRestartDatapath(count);
        QCOMPARE(allowed, (QVector<bool>{true, true, false, true}));
    }

    void heartbeatsFollowTheInterval()
    {
        QVector<int> sent;
        long long last = 0;
        for (int second = 0; second <= 18; second += 3) {
            if (session::heartbeatDue(1000 + second, last, 10)) {
                sent << second;
                last = 1000 + second;
            }
        }
        QCOMPARE(sent, (QVector<int>{0, 9, 18}));
        QVERIFY(session::heartbeatDue(5, 5, std::numeric_limits<int>::min()));
    }

    void datapathProcesses_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::addColumn<bool>("alive");
        QTest::newRow("full path") << QStringList{"bash", "/opt/v/tarvelin_datapath"} << true;
        QTest::newRow("cut-down name") << QStringList{"tarvelin_datap"} << true;
        QTest::newRow("agent alone") << QStringList{"tarvelin_agent"} << true;
        QTest::newRow("script alone") << QStringList{"/opt/v/tarvelin", "veltaro"} << false;
    }

    void datapathProcesses()
    {
        QFETCH(QStringList, names);
        QTEST(monitor::datapathAlive(names), "alive");
    }
};

QTEST_GUILESS_MAIN(SessionDecisionsTest)
#include "SessionDecisionsTest.moc"
