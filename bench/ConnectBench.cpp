// What an attempt and a heartbeat cost in the main window, with the simulated service in the same
// process and the stand-in datapath as processes, against what the service and the datapath's
// control script take by themselves.
#include "Measure.h"

#include "app/ConfigUtil.h"
#include "app/Platform.h"
#include "app/ProcessRun.h"
#include "app/SingleApp.h"
#include "branding/LogoList.h"
#include "login/DlgLogin.h"
#include "main/DlgMain.h"
#include "main/SessionRules.h"
#include "orch/HostIdentity.h"
#include "orch/OrchIdentity.h"
#include "orch/OrchRequests.h"
#include "sim/Behaviour.h"
#include "support/WindowParts.h"
#include "support/WindowScene.h"

#include <chrono>
#include <cstdio>

#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QStackedWidget>

namespace {

constexpr int kPatienceMs = 60000;

bool await(const std::function<bool()>& condition)
{
    QElapsedTimer waited;
    waited.start();
    while (!condition()) {
        if (waited.elapsed() > kPatienceMs)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return true;
}

class Bench
{
public:
    Bench()
    {
        m_scene.stageDatapath();
        m_scene.logIn();
        sim::writeBehaviour(m_scene.folder(), {{"agent_gap_ms", "0"}});
        SingleApp::instance()->startInstance();
        m_window = std::make_unique<DlgMain>(nullptr);
        m_window->show();
        fireOften();
    }

    bool isReady() { return awaitText("Stop") && disconnect(); }

    /// Milliseconds from the press to the connection, the filter document downloaded.
    double connectOnce()
    {
        m_scene.service.edit([this](sim::Scenario& scenario) {
            scenario.connectReply.insert(QStringLiteral("mobileTrafficVersion"), ++m_version);
        });
        return timed([this] {
            m_window->on_btnConnect_clicked();
            return awaitText("Stop");
        });
    }

    bool disconnect()
    {
        m_window->disconnect(true, ipc::DisConnNormalReason);
        return awaitText("Connect");
    }

    /// The same exchanges and the control script's start by themselves.
    double floorOfConnect()
    {
        const QString auth = ConfigUtil::getvalue(ConfigUtil::AUTHURL, QString()).toString();
        const QString token = ConfigUtil::getvalue(ConfigUtil::TOKEN, QString()).toString();
        const double needed = timed([&] {
            const QByteArray reply = exchange(orchrequest::connectSession(
                auth, storedIdentity(), ipc::DisConnNormalReason, QString()));
            const QString url = QJsonDocument::fromJson(reply)
                                    .object()
                                    .value(QStringLiteral("mobileTrafficDownloadUrl"))
                                    .toString();
            const QByteArray filter = exchange(orchrequest::filterDocument(url, storedIdentity()));
            QFile file(m_scene.file(QStringLiteral("floor.conf")));
            return file.open(QIODevice::WriteOnly) &&
                   file.write(QJsonDocument::fromJson(filter).toJson(QJsonDocument::Compact)) > 0 &&
                   script(session::datapathStartArguments(Util::getSerial(), token, QString()));
        });
        script(session::datapathStopArguments());
        return needed;
    }

    /// A poll that sends a heartbeat, until its answer is dealt with.
    double heartbeatOnce()
    {
        const qint64 later = platform().now().addSecs(60).toMSecsSinceEpoch();
        platform().clock = [later] { return later; };
        return timed([this] {
            fireTimer(m_window.get(), "m_StatCountTimer");
            return await([this] {
                return m_window->findChildren<QNetworkAccessManager*>(QStringLiteral("heartbeat"))
                    .isEmpty();
            });
        });
    }

    double floorOfHeartbeat()
    {
        const QString url = m_scene.service.orchRoot() + QStringLiteral("/api/mobile/v2/heartbeat");
        return timed([&] {
            return !exchange(orchrequest::heartbeat(url, storedIdentity(), false)).isEmpty();
        });
    }

    sim::Simulator& service() { return m_scene.service; }

private:
    // Nothing here but the tick wakes the loop that looks for the button's text.
    void fireOften() { m_tick.start(1); }

    bool awaitText(const char* text)
    {
        const auto* button = part<QPushButton>(m_window.get(), "btnConnect");
        return await([&] { return button->text() == QLatin1String(text); });
    }

    bool script(const QStringList& arguments) const
    {
        return runProcess(m_scene.file(QStringLiteral("tarvelin")), arguments, kPatienceMs)
                   .exitCode == 0;
    }

    QByteArray exchange(const OrchRequest& request)
    {
        QNetworkReply* const reply = sendOrchRequest(m_network, request);
        await([reply] { return reply->isFinished(); });
        reply->deleteLater();
        return reply->readAll();
    }

    static double timed(const std::function<bool()>& work)
    {
        using Clock = std::chrono::steady_clock;
        const Clock::time_point start = Clock::now();
        if (!work())
            std::fprintf(stderr, "A step was not reached; its figure means nothing.\n");
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }

    WindowScene m_scene;
    QNetworkAccessManager m_network;
    std::unique_ptr<DlgMain> m_window;
    QTimer m_tick;
    int m_version = 100;
};

void measureConnect(Bench& bench, const Report& report, const QString& what, int rounds)
{
    QVector<double> attempts;
    QVector<double> floors;
    for (int round = 0; round < rounds; ++round) {
        attempts.append(bench.connectOnce());
        bench.disconnect();
        floors.append(bench.floorOfConnect());
    }
    report({what, median(attempts), median(floors), QStringLiteral("ms"), QString()});
}

/// The customer's step, from Continue to the login page.
double customerStep()
{
    DlgLogin window(nullptr);
    window.show();
    const auto* page = part<QStackedWidget>(&window, "stackedWidget");
    part<QLineEdit>(&window, "customerId")->setText(QStringLiteral("acme"));
    return milliseconds([&] {
        window.on_btnContinue_clicked();
        if (!await([page] { return page->currentIndex() == DlgLogin::DLG_LOGIN_PAGE; }))
            std::fprintf(stderr, "The login page was not reached; its figure means nothing.\n");
    });
}

} // namespace

void benchCustomer(const Report& report)
{
    WindowScene scene;
    scene.logIn();
    ConfigUtil::writeValue(ConfigUtil::PASSWORD, QString());
    QTimer tick; // wakes the loop that looks for the page
    tick.start(1);
    const auto offerLogos = [&scene](bool offered) {
        scene.service.edit([offered](sim::Scenario& scenario) {
            scenario.authConfigReply.insert(QStringLiteral("supportCusResource"), offered);
            for (const char* name : {kRoundLogo, kMainLogo})
                scenario.logos.insert(QLatin1String(name),
                                      QJsonObject{{"width", 300}, {"height", 80}});
        });
    };
    const auto step = [&](bool logos) {
        offerLogos(logos);
        return customerStep();
    };
    step(true); // fills the cache
    QVector<double> with;
    QVector<double> without;
    for (int round = 0; round < 25; ++round) {
        with.append(step(true));
        without.append(step(false));
    }
    report({QStringLiteral("customer step, logos in the cache"), median(with), median(without),
            QStringLiteral("ms"), QStringLiteral("at most 5 ms more")});
}

void benchConnect(const Report& report)
{
    Bench bench;
    if (!bench.isReady()) {
        std::fprintf(stderr, "No attempt to measure: the window did not connect.\n");
        return;
    }
    measureConnect(bench, report, QStringLiteral("connect button to connected"), 15);

    bench.service().edit([](sim::Scenario& scenario) {
        QJsonArray actions;
        for (int i = 0; i < 10; ++i)
            actions.append(
                QJsonObject{{"action", 7}, {"reason_en", "Later"}, {"reason_zh", "稍后"}});
        scenario.heartbeatReply.insert(QStringLiteral("actionDataList"), actions);
    });
    bench.connectOnce();
    QVector<double> beats;
    QVector<double> floors;
    for (int round = 0; round < 50; ++round) {
        beats.append(bench.heartbeatOnce());
        floors.append(bench.floorOfHeartbeat());
    }
    report({QStringLiteral("a heartbeat with ten actions"), median(beats), median(floors),
            QStringLiteral("ms"), QString()});
    bench.disconnect();

    bench.service().edit([](sim::Scenario& scenario) {
        scenario.filterDocument = sim::makeFilterDocument(400000, 600000);
    });
    measureConnect(bench, report, QStringLiteral("the same with a filter of 1000000 entries"), 3);
}
