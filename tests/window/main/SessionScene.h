#pragma once

#include "app/SingleApp.h"
#include "main/DlgMain.h"
#include "monitor/MonitorDatapath.h"
#include "sim/Behaviour.h"
#include "window/SceneTest.h"

constexpr char kConnect[] = "/api/mobile/v2/connect";
constexpr char kDisconnect[] = "/api/mobile/v2/disconnect";
constexpr char kHeartbeat[] = "/api/mobile/v2/heartbeat";
constexpr char kFilter[] = "/files/ip-filter.json";

/// A main window on its scene with the stand-in datapath, and what a user does with it.
class SessionScene : public SceneTest
{
public:
    void init() override
    {
        SceneTest::init();
        scene().stageDatapath();
        scene().logIn();
        SingleApp::instance()->startInstance();
    }

protected:
    DlgMain* main() const { return static_cast<DlgMain*>(window.get()); }

    void open()
    {
        window = std::make_unique<DlgMain>(nullptr);
        window->show();
    }

    void openConnected()
    {
        open();
        awaitConnected();
    }

    QString connectText() const { return button("btnConnect")->text(); }
    bool isConnected() const { return connectText() == "Stop"; }
    void awaitIdle() { QTRY_COMPARE(connectText(), "Connect"); }

    /// Waits for the connection and takes over its timers.
    void awaitConnected()
    {
        QTRY_COMPARE_WITH_TIMEOUT(connectText(), "Stop", 15000);
        QVERIFY(timer("m_StatCountTimer")->isActive());
        timer("m_StatCountTimer")->stop();
        monitor::MonitorDatapath::instance()->stop();
    }

    void poll() { fire("m_StatCountTimer"); }

    /// Presses the connect button and answers the question.
    void stop()
    {
        ModalGuard question("dlgStopPrompt");
        button("btnConnect")->click();
        QVERIFY(question.seen());
    }

    void stopAndWait()
    {
        stop();
        awaitIdle();
    }

    /// Lets the datapath behave in this way from now on.
    void behave(const sim::Behaviour& behaviour) const
    {
        QVERIFY(sim::writeBehaviour(scene().folder(), behaviour));
    }
    QStringList scriptCalls() const { return sim::scriptCalls(scene().folder()); }

    /// What the service answers connect requests with, beside the usual.
    void grant(const QString& member, const QJsonValue& value)
    {
        service().edit([&](sim::Scenario& now) { now.connectReply.insert(member, value); });
    }

    /// Moves the clock ahead for good.
    static void advance(int seconds) { setClock(platform().clock() + seconds * 1000LL); }

    /// The reason that the last request to `path` carries.
    int reasonOf(const char* path) const { return sent(path).value("mobileActionLogType").toInt(); }
};
