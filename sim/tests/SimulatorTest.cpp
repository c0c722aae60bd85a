#include "Requests.h"

#include "sim/Behaviour.h"
#include "sim/ControlPage.h"
#include "sim/Simulator.h"
#include "sim/Situations.h"

#include <QJsonArray>
#include <QtTest>

using sim::End;
using sim::Fault;
using sim::Scenario;
using sim::Simulator;

namespace {

const QJsonValue kGone(QJsonValue::Undefined);

} // namespace

class SimulatorTest : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        if (QTest::currentTestFailed())
            qInfo() << m_simulator->violations();
    }
    void init()
    {
        m_simulator = std::make_unique<Simulator>();
        QVERIFY(m_simulator->start());
    }

    void wholeSessionWithoutViolations();
    void approvalIsPolledFor();
    void tokenLogsInUntilRevoked();
    void faultsReplaceReplies();
    void serversStopAndComeBackOnTheirPorts();
    void stoppingEndsDelays();
    void controlPageSwitchesAndShows();
    void everySituationIsEnteredAndLeft();
    void aReplyTricklesUntilTheServerStops();
    void filterDocumentHasTheAskedSize();

private:
    std::unique_ptr<Simulator> m_simulator;
};

void SimulatorTest::wholeSessionWithoutViolations()
{
    Client client(*m_simulator);
    QCOMPARE(client.exchange("privacy").json().value("veltaro_privacy_version").toString(),
             QStringLiteral("20250115"));
    const QJsonObject found = client.exchange("lookup").json();
    QCOMPARE(found.value("orchDomain").toString(), m_simulator->orchRoot());
    QCOMPARE(found.value("customerId").toInt(), 1001);
    QCOMPARE(client.exchange("lookup backup").json(), found);
    for (const char* name : {"config", "upgrade", "notice", "logos"})
        QCOMPARE(client.exchange(name).json().value("code").toInt(-1), 0);

    Request document = client.request("key");
    document.headers.remove("customerId");
    document.url =
        QUrl(client.exchange("error texts").json().value("errorResourceDownloadUrl").toString());
    QVERIFY(send(document).json().contains("wrongPassword"));

    QVERIFY(client.logIn());
    const QJsonObject session = client.exchange("connect").json();
    QCOMPARE(session.value("customerId").toInt(), 1001);
    QCOMPARE(session.value("heartbeatUrl").toString(), client.request("heartbeat").url.toString());
    QVERIFY(client.exchange("heartbeat").json().value("success").toBool());

    Request filter = client.request("key");
    filter.headers.insert("X-TQ-AUTH-HEADER", client.token);
    filter.url = QUrl(session.value("mobileTrafficDownloadUrl").toString());
    QCOMPARE(send(filter).json().value("blackIpSet").toArray().size(), 3);

    QVERIFY(m_simulator->sessions().first().connected);
    client.exchange("disconnect");
    QVERIFY(!m_simulator->sessions().first().connected);
    QCOMPARE(client.exchange("signout").status, 200);
    QCOMPARE(m_simulator->violations(), QStringList());
}

void SimulatorTest::approvalIsPolledFor()
{
    Client client(*m_simulator);
    QVERIFY(!client.logIn("carol@acme.example", "Wait-a-bit3"));
    Request login = client.login("carol@acme.example", "Wait-a-bit3");
    const QJsonObject waiting = send(login).json();
    const QString id = waiting.value("requestIdForPoll").toString();
    QVERIFY(!id.isEmpty());
    const Request poll = client.poll(waiting.value("authResultCheckUrl").toString());

    member("requestIdForPoll", id)(login);
    QVERIFY(!send(login).json().contains("X-TQ-AUTH-HEADER"));
    QVERIFY(send(poll).json().value("resultCode").toInt() != 0);
    QCOMPARE(send(poll).json().value("resultCode").toInt(-1), 0);
    QVERIFY(send(login).json().contains("X-TQ-AUTH-HEADER"));
    QCOMPARE(m_simulator->violations(), QStringList());
    send(poll);
    QVERIFY(m_simulator->violations().value(0).contains("does not wait"));
}

void SimulatorTest::tokenLogsInUntilRevoked()
{
    Client client(*m_simulator);
    QVERIFY(client.logIn());
    Request login = client.login("alice@acme.example", "***");
    member("encryptPassword", kGone)(login);
    login.headers.insert("X-TQ-AUTH-HEADER", client.token);
    QCOMPARE(send(login).json().value("X-TQ-AUTH-HEADER").toString().toUtf8(), client.token);

    client.exchange("connect");
    m_simulator->revokeSessions(3);
    for (const Request& request : {login, client.request("heartbeat"), client.request("connect")}) {
        const Answer answer = send(request);
        QCOMPARE(answer.status, 401);
        QCOMPARE(answer.json().value("code").toInt(), 401);
        QCOMPARE(answer.json().value("parameters").toObject().value("invalidReasonCode").toInt(),
                 3);
    }
    // Whoever was refused has no token left to sign out with.
    client.token = "";
    QCOMPARE(client.exchange("signout").status, 401);
    QCOMPARE(m_simulator->violations(), QStringList());
}

void SimulatorTest::faultsReplaceReplies()
{
    Client client(*m_simulator);
    const QString lookup = QStringLiteral("/api/mobile/v1/orchinfo");
    const auto with = [&](const Fault& fault) {
        m_simulator->clearFaults();
        m_simulator->setFault("primary:" + lookup, fault);
        return client.exchange("lookup");
    };
    QCOMPARE(with(Fault::withStatus(502)).status, 502);
    QCOMPARE(with(Fault::withBody("<html>")).body, QByteArray("<html>"));
    QCOMPARE(with(Fault::dropped()).error, QNetworkReply::RemoteHostClosedError);
    Fault huge;
    huge.hugeBytes = 3000001;
    QCOMPARE(with(huge).body.size(), 3000001);
    Fault redirect;
    redirect.redirect = m_simulator->backupUrl();
    QCOMPARE(with(redirect).location, m_simulator->backupUrl().toUtf8());
    Fault once = Fault::withStatus(500);
    once.times = 1;
    QCOMPARE(with(once).status, 500);
    QCOMPARE(client.exchange("lookup").status, 200);
    QCOMPARE(client.exchange("lookup backup").status, 200);
    QCOMPARE(m_simulator->violations(), QStringList());

    // With the key withheld, credentials in plain are what a client has left.
    m_simulator->setFault("/s/mobile/pubkey/obtain", Fault::withBody("{\"key\":\"nonsense\"}"));
    client.exchange("key");
    client.key.clear();
    QVERIFY(send(client.login("alice@acme.example", "Wonder-land1"))
                .json()
                .contains("X-TQ-AUTH-HEADER"));
    QCOMPARE(m_simulator->violations(), QStringList());
}

void SimulatorTest::serversStopAndComeBackOnTheirPorts()
{
    Client client(*m_simulator);
    m_simulator->stopEnd(End::LookupPrimary);
    QCOMPARE(client.exchange("lookup").error, QNetworkReply::ConnectionRefusedError);
    QCOMPARE(client.exchange("lookup backup").status, 200);
    QVERIFY(m_simulator->startEnd(End::LookupPrimary));
    QCOMPARE(client.exchange("lookup").status, 200);
    Simulator second;
    QVERIFY(!second.start({0, 0, QUrl(m_simulator->orchRoot()).port()}));
}

void SimulatorTest::stoppingEndsDelays()
{
    Client client(*m_simulator);
    m_simulator->setFault("/s/mobile/pubkey/obtain", Fault::withDelay(3600 * 1000));
    QNetworkAccessManager manager;
    QNetworkRequest wire(client.request("key").url);
    const QScopedPointer<QNetworkReply> reply(manager.get(wire));
    QTRY_COMPARE(m_simulator->count("/s/mobile/pubkey/obtain"), 1);
    QVERIFY(!reply->isFinished());
    m_simulator->stop();
    QTRY_VERIFY(reply->isFinished());
}

void SimulatorTest::controlPageSwitchesAndShows()
{
    QTemporaryDir directory;
    m_simulator->watchDatapath(directory.path());
    sim::ControlPage page(*m_simulator);
    QVERIFY(page.start());
    Request command;
    command.url = QUrl(page.url() + "sim/switch");
    command.setJson({{"fault", QJsonObject{{"path", "/s/mobile/v1/upgrade"}, {"status", 502}}},
                     {"datapath", QJsonObject{{"tunnels", "down"}, {"tx_bps", 1000}}},
                     {"filterSize", QJsonObject{{"inclusive", 7}}},
                     {"scenario", QJsonObject{{"connectReply", QJsonObject{{"cpeId", 5}}}}}});
    QCOMPARE(send(command).status, 200);
    Client client(*m_simulator);
    QCOMPARE(client.exchange("upgrade").status, 502);
    QVERIFY(client.logIn());
    QCOMPARE(client.exchange("connect").json().value("cpeId").toInt(), 5);

    Request question;
    question.method = "GET";
    question.url = QUrl(page.url() + "sim/state");
    const QJsonObject state = send(question).json();
    QCOMPARE(state.value("datapath").toObject().value("tx_bps").toString(), QStringLiteral("1000"));
    const QJsonArray clients = state.value("clients").toArray();
    QVERIFY(clients.at(0).toObject().value("connected").toBool());
    QCOMPARE(state.value("requests").toArray().size(), 4);
    QCOMPARE(state.value("violations").toArray().size(), 0);

    command.setJson({{"nonsense", 1}, {"scenario", QJsonObject{{"rsaTypes", "x"}}}});
    const Answer refused = send(command);
    QCOMPARE(refused.status, 400);
    QCOMPARE(refused.json().value("refused").toArray(), (QJsonArray{"nonsense", "rsaTypes"}));
    question.url = QUrl(page.url());
    QVERIFY(send(question).body.contains("/sim/switch"));
}

void SimulatorTest::everySituationIsEnteredAndLeft()
{
    sim::ControlPage page(*m_simulator);
    const QTemporaryDir datapath;
    m_simulator->watchDatapath(datapath.path());
    const QJsonObject well = m_simulator->scenario().toJson();
    QVERIFY(sim::situations().size() > 20);
    for (const sim::Situation& situation : sim::situations()) {
        const QString name = situation.name;
        // There is no datapath to die; documents of every size have a test of their own.
        if (situation.command.contains("crashDatapath") || situation.command.contains("filterSize"))
            continue;
        QCOMPARE(page.carryOut({{"situation", name}}), QStringList());
        const Scenario scenario = m_simulator->scenario();
        const bool changed = scenario.toJson() != well || !scenario.faults.isEmpty() ||
                             !m_simulator->isRunning(End::LookupPrimary) ||
                             !sim::readBehaviour(datapath.path()).isEmpty() ||
                             situation.command.contains("revoke") ||
                             situation.command.contains("order");
        QVERIFY2(changed, qPrintable(name));
        QCOMPARE(page.carryOut({{"well", true}}), QStringList());
        QCOMPARE(m_simulator->scenario().toJson(), well);
        QVERIFY(m_simulator->scenario().faults.isEmpty());
        QVERIFY(sim::readBehaviour(datapath.path()).isEmpty());
        QVERIFY(m_simulator->isRunning(End::LookupPrimary));
    }
    QCOMPARE(page.carryOut({{"situation", "no such thing"}}), QStringList{"situation"});

    Client client(*m_simulator);
    QVERIFY(client.logIn());
    client.exchange("connect");
    page.carryOut({{"situation", "Disconnect, no reason"}});
    QCOMPARE(client.exchange("heartbeat").json().value("actionDataList").toArray().size(), 1);
    page.carryOut({{"situation", "Disconnect, no reason"}});
    page.carryOut({{"well", true}});
    QCOMPARE(client.exchange("heartbeat").json().value("actionDataList").toArray().size(), 0);

    page.carryOut({{"situation", "Maintenance running"}});
    const QJsonObject notice = client.exchange("notice").json();
    const double now = notice.value("currentTime").toDouble();
    QVERIFY(notice.value("startTime").toDouble() < now && now < notice.value("endTime").toDouble());
}

void SimulatorTest::aReplyTricklesUntilTheServerStops()
{
    Client client(*m_simulator);
    m_simulator->setFault("/api/mobile/auth/config", Fault::trickled(5, R"({"code":0})"));
    QCOMPARE(client.exchange("config").body, QByteArray(R"({"code":0})"));
}

void SimulatorTest::filterDocumentHasTheAskedSize()
{
    const QJsonObject document =
        QJsonDocument::fromJson(sim::makeFilterDocument(70000, 300, 20)).object();
    const auto distinct = [&](const char* list) {
        QSet<QString> texts;
        for (const QJsonValue& entry : document.value(QLatin1String(list)).toArray())
            texts.insert(entry.toString());
        return texts.size();
    };
    QCOMPARE(distinct("whiteIpSet"), 70000);
    QCOMPARE(distinct("blackIpSet"), 300);
    QCOMPARE(document.value("blackIpSet").toArray().size(), 320);
}

QTEST_GUILESS_MAIN(SimulatorTest)
#include "SimulatorTest.moc"
