#include "main/AgentText.h"
#include "main/ConnectButton.h"
#include "main/ConnState.h"
#include "main/FlowRates.h"
#include "main/HeartbeatReply.h"
#include "main/SessionRules.h"
#include "main/widgeChronometer.h"
#include "monitor/MonitorDatapath.h"
#include "orch/JsonUtil.h"
#include "support/Rows.h"

#include <thread>

/// The main window's decisions.
class SessionDecisionsTest : public QObject
{
    Q_OBJECT

private slots:
    void transitions()
    {
        using S = ConnState;
        using T = Transition;
        T expected[4][4]{}; // everything else is ignored
        expected[S::DISCONNECTION][S::CONNECTING] = T::Begin;
        expected[S::CONNECTING][S::CONNECTION] = T::Connected;
        expected[S::CONNECTING][S::DISCONNECTION] = T::Abandoned;
        expected[S::CONNECTING][S::DISCONNECTING] = T::Cancelling;
        expected[S::CONNECTION][S::DISCONNECTION] = T::Ended;
        expected[S::CONNECTION][S::DISCONNECTING] = T::Stopping;
        expected[S::DISCONNECTING][S::DISCONNECTION] = T::Ended;
        for (int from = 0; from < 4; ++from) {
            for (int to = 0; to < 4; ++to)
                QCOMPARE(transition(S::CONN_STATUS(from), S::CONN_STATUS(to)), expected[from][to]);
        }
    }

    void buttonAnimation()
    {
        const auto check = [](ConnState::CONN_STATUS status, bool over, const QString& steps) {
            const QStringList texts = steps.split(' ');
            for (int i = 1; i < texts.size(); ++i) {
                const ConnectButtonTexts words{"Connecting", "Cancel", "Disconnecting"};
                QCOMPARE(nextButtonText(status, over, texts.at(i - 1), words), texts.at(i));
            }
        };
        check(ConnState::CONNECTING, false,
              "Connecting Connecting. Connecting.. Connecting... Connecting Connecting.");
        check(ConnState::CONNECTING, true, "Connecting.. Cancel Cancel");
        check(ConnState::CONNECTING, false, "Cancel Connecting. Connecting..");
        check(ConnState::DISCONNECTING, true,
              "Disconnecting Disconnecting. Disconnecting.. Disconnecting... Disconnecting");
        check(ConnState::CONNECTION, true, "Stop Stop");
    }

    void agentTexts()
    {
        const auto row = checked([](const QByteArray& text, AgentText::Event event, int port) {
            const AgentText said = AgentText::read(json(text));
            QCOMPARE(said.event, event);
            if (said.event == AgentText::Port)
                QCOMPARE(said.port, port);
        });
        row("ready", "{'type': 0}", AgentText::Ready, 0);
        row("no space", "{'type':0}", AgentText::Nothing, 0);
        row("refused", "{'type': 1, 'code': 7}", AgentText::Disconnect, 0);
        row("port", "{'dispatchConfPort' :  54399}", AgentText::Port, 54399);
        row("port wins over ready", "{'type': 0, 'dispatchConfPort':1}", AgentText::Port, 1);
        row("port without digits", "{'dispatchConfPort':'x'}", AgentText::PortUnusable, 0);
        row("port too large", "{'dispatchConfPort':99999999999}", AgentText::PortUnusable, 0);
        row("firewall wins over all", "{'type': 6, 'dispatchConfPort': 5, 'x': {'type': 0}}",
            AgentText::Firewall, 0);
        row("type ten", "{'type': 10}", AgentText::Disconnect, 0);
        row("garbage", QByteArray(100000, '{'), AgentText::Nothing, 0);
    }

    void agentNotices()
    {
        const AgentText both = AgentText::read("firewall enabled firewall disabled rule not found");
        QVERIFY(both.firewallEnabled && !both.firewallDisabled && both.ruleNotFound);
        const AgentText off = AgentText::read("hello, firewall disabled");
        QVERIFY(!off.firewallEnabled && off.firewallDisabled && off.hello && !off.ruleNotFound);
    }

    void noticesPassOnceInAPauseAndEventsAlways()
    {
        const QString on = R"({"type": 6, "firewall enabled"})";
        constexpr qint64 pause = AgentTextFilter::kPause;
        AgentTextFilter filter;
        QVERIFY(filter.admit(on, true, 1).hasNotice());
        QVERIFY(filter.admit(on, true, pause).quiet);
        QVERIFY(!filter.admit(on + 'x', false, pause).hasNotice());
        QVERIFY(filter.admit(on, true, 1 + pause).hasNotice());
        QVERIFY(filter.admit(on, true, 0).hasNotice()); // the clock was set back
        for (const qint64 now : {2, 3})
            QCOMPARE(filter.admit(R"({"type": 0})", true, now).event, AgentText::Ready);
    }

    void theWatchFollowsAnyThread()
    {
        auto* const watch = monitor::MonitorDatapath::instance();
        auto* const timer = watch->findChild<QTimer*>("m_checkTimer");
        std::thread([watch] { watch->start(); }).join();
        QTRY_VERIFY(timer->isActive());
        std::thread([watch] { watch->stop(); }).join();
        QTRY_VERIFY(!timer->isActive());
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
        using Limits = std::numeric_limits<long long>;
        FlowRates rates;
        rates.update(1, 0, Limits::min());
        for (int poll = 1; poll < 200; ++poll) {
            rates.update(1 + 1000LL * poll, Limits::max(),
                         poll % 2 ? Limits::max() : Limits::min());
            QVERIFY(rates.m_LastUpSpeed >= 0 && rates.m_LastDownSpeed >= 0);
        }
        QVERIFY(rates.update(-5000, 5, 5)); // the clock was set back
        QVERIFY(rates.m_LastUpSpeed >= 0);
    }

    void heartbeatOrders()
    {
        // Kind, "+" with reasons, the reason.
        const auto ordered = [](const QByteArray& body, bool chinese = false) {
            const auto reply = HeartbeatReply::fromJson(JsonUtil::object(json(body)));
            const HeartbeatReply::Order order = reply.order();
            const bool reasons = order.kind != HeartbeatReply::Order::None &&
                                 !reply._isActionsResonEmpty(order.action);
            return QString("-DR"[order.kind]) + (reasons ? "+ " : " ") +
                   reply.reason(order.action, chinese);
        };
        const QByteArray both =
            "{'actionDataList':[{'action':1,'reason_en':'en','reason_zh':'zh'}]";
        const QByteArray subnet =
            ",'subnetIpChange':true,'mobileDetectFailed':'mz','mobileDetectFailedEn':'me'}";
        QCOMPARE(ordered("{'success':true}"), "- ");
        QCOMPARE(ordered(both + "}"), "D+ en");
        QCOMPARE(ordered(both + "}", true), "D+ zh");
        QCOMPARE(ordered("{'actionDataList':[{'action':4}]}"), "R ");
        QCOMPARE(ordered("{'actionDataList':[{'action':1,'reason_en':'en'}]}"), "D en");
        QCOMPARE(ordered("{'actionDataList':[{'action':4},{'action':1}]}"), "R ");
        QCOMPARE(ordered("{'actionDataList':[{'action':2},{},7,{'action':1}]}"), "D ");
        QCOMPARE(ordered(both + subnet), "R+ me");
        QCOMPARE(ordered("{'mobileDetectFailed':'mz','actionDataList':[{'action':1}]}"), "D ");
        QCOMPARE(ordered("{'actionDataList':[{'action':'1'}]}"), "- ");
        QCOMPARE(ordered("{'actionDataList':{}}"), "- ");
        QCOMPARE(ordered("<html>"), "- ");
    }

    void tunnels()
    {
        using T = TunnelHealth; // was failing, is down, has any, milliseconds since the connection
        QCOMPARE(tunnelHealth(false, true, true, 30000), T::Unchanged); // still building up
        QCOMPARE(tunnelHealth(false, true, true, 30001), T::Lost);
        QCOMPARE(tunnelHealth(true, true, true, 60000), T::Unchanged);
        QCOMPARE(tunnelHealth(true, false, true, 60000), T::Restored);
        QCOMPARE(tunnelHealth(false, false, true, 60000), T::Unchanged);
        QCOMPARE(tunnelHealth(false, true, false, 60000), T::Unchanged);
        QCOMPARE(tunnelHealth(true, false, false, 60000), T::Unchanged);
    }

    void shownTexts()
    {
        QCOMPARE(widgeChronometer::timeText(0), "00:00:00");
        QCOMPARE(widgeChronometer::timeText(59), "00:00:59");
        QCOMPARE(widgeChronometer::timeText(86399), "23:59:59");
        QCOMPARE(widgeChronometer::timeText(90061), "1 day 01:01:01");
        QCOMPARE(widgeChronometer::timeText(200000), "02 days 07:33:20");
        QCOMPARE(session::headerName("alice@corp.example"), "alice");
        QCOMPARE(session::headerName("abcdefghijk@x"), "abcdefghijk");
        QCOMPARE(session::headerName("abcdefghijklmnop@x"), "abcdefghijk...");
        QCOMPARE(session::headerName(""), QString());
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

    void datapathProcesses()
    {
        QVERIFY(monitor::datapathAlive({"bash", "/opt/v/tarvelin_datapath"}));
        QVERIFY(monitor::datapathAlive({"tarvelin_datap"})); // cut down by the kernel
        QVERIFY(monitor::datapathAlive({"tarvelin_agent"}));
        QVERIFY(!monitor::datapathAlive({"/opt/v/tarvelin", "veltaro"}));
    }
};

QTEST_GUILESS_MAIN(SessionDecisionsTest)
#include "SessionDecisionsTest.moc"
