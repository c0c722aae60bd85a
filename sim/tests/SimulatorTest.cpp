#include "sim/Behaviour.h"
#include "sim/ControlPage.h"
#include "sim/Situations.h"

#include <QTcpSocket>
#include <QtTest>

/// What a person does with the service: the control page and its situations.
class SimulatorTest : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_service = std::make_unique<sim::Simulator>();
        m_service->watchDatapath(m_folder.path());
        m_page = std::make_unique<sim::ControlPage>(*m_service);
        QVERIFY(m_service->start() && m_page->start());
    }

    void everySituationIsEnteredAndLeft()
    {
        const auto state = [this] {
            QJsonObject shown = m_page->state(0);
            shown.remove("accounts"); // whose authenticators show another code every 30 s
            return shown;
        };
        const QJsonObject well = state();
        QVERIFY(sim::situations().size() > 20);
        for (const sim::Situation& situation : sim::situations()) {
            // There is no datapath to die; filter documents and orders have no state to be seen.
            const auto has = [&](const char* name) { return situation.command.contains(name); };
            if (has("crashDatapath") || has("filterSize") || has("order") || has("revoke"))
                continue;
            QCOMPARE(m_page->carryOut({{"situation", situation.name}}), QStringList());
            QVERIFY2(state() != well || !m_service->isRunning(sim::End::LookupPrimary),
                     qPrintable(situation.name));
            QCOMPARE(m_page->carryOut({{"well", true}}), QStringList());
            QCOMPARE(state(), well);
            QVERIFY(m_service->isRunning(sim::End::LookupPrimary));
        }
    }

    void commandsAreCarriedOutAndShown()
    {
        const QJsonObject command{
            {"faults", QJsonArray{QJsonObject{{"path", "/a"}, {"status", 502}}}},
            {"datapath", QJsonObject{{"tunnels", "down"}, {"tx_bps", 1000}}},
            {"filterSize", QJsonObject{{"inclusive", 70000}, {"exclusive", 2}, {"duplicates", 1}}},
            {"scenario", QJsonObject{{"connectReply", QJsonObject{{"cpeId", 5}}}}}};
        QCOMPARE(m_page->carryOut(command), QStringList());
        const auto filter = QJsonDocument::fromJson(m_service->scenario().filterDocument);
        QCOMPARE(filter["whiteIpSet"].toArray().size(), 70000);
        QCOMPARE(filter["blackIpSet"].toArray().size(), 3);
        const QJsonObject shown = m_page->state(1);
        QCOMPARE(shown["faults"]["/a"]["status"].toInt(), 502);
        QCOMPARE(shown["datapath"]["tx_bps"].toString(), QStringLiteral("1000"));
        QCOMPARE(shown["scenario"]["connectReply"]["cpeId"].toInt(), 5);
        QCOMPARE(shown["accounts"][0]["username"].toString(), QStringLiteral("alice@acme.example"));
        QCOMPARE(m_page->carryOut({{"nonsense", 1},
                                   {"situation", "no such thing"},
                                   {"scenario", QJsonObject{{"rsaTypes", "x"}}}}),
                 (QStringList{"nonsense", "rsaTypes", "situation"}));
    }

    void thePageIsServed()
    {
        QTcpSocket browser;
        browser.connectToHost("127.0.0.1", quint16(QUrl(m_page->url()).port()));
        browser.write("GET / HTTP/1.1\r\n\r\n");
        while (browser.waitForReadyRead()) {
        }
        const QByteArray answer = browser.readAll();
        QVERIFY(answer.startsWith("HTTP/1.1 200") && answer.contains("/sim/switch"));
    }

private:
    QTemporaryDir m_folder;
    std::unique_ptr<sim::Simulator> m_service;
    std::unique_ptr<sim::ControlPage> m_page;
};

QTEST_GUILESS_MAIN(SimulatorTest)
#include "SimulatorTest.moc"
