#pragma once

#include "app/ConfigUtil.h"
#include "app/Platform.h"
#include "app/SingleApp.h"
#include "main/DlgMain.h"
#include "monitor/MonitorDatapath.h"
#include "sim/Behaviour.h"
#include "support/WindowParts.h"
#include "support/WindowScene.h"

#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>

/// A main window on its scene with the stand-in datapath, and what a user does with it. The
/// functions that wait fail the running test when nothing comes.
class SessionScene : public WindowScene
{
public:
    std::unique_ptr<DlgMain> window;

    SessionScene()
    {
        stageDatapath();
        logIn();
        SingleApp::instance()->startInstance();
    }

    /// Takes a scene down and returns what its service found wrong, a line each.
    static QString end(std::unique_ptr<SessionScene>& scene)
    {
        scene->window.reset();
        const QStringList violations = scene->service.violations();
        scene.reset();
        return violations.join(QLatin1Char('\n'));
    }

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

    /// Waits for the connection and takes over its timers.
    void awaitConnected()
    {
        QTRY_COMPARE_WITH_TIMEOUT(connectText(), QStringLiteral("Stop"), 15000);
        timer("m_StatCountTimer")->stop();
        monitor::MonitorDatapath::instance()->stop();
    }

    // Presses the connect button and answers the question.
    void stop()
    {
        ModalGuard question("dlgStopPrompt", [](QDialog* dialog) { dialog->accept(); });
        button("btnConnect")->click();
        QVERIFY(question.seen());
    }

    /// Lets the datapath behave in this way from now on.
    void behave(const sim::Behaviour& behaviour) const
    {
        QVERIFY(sim::writeBehaviour(folder(), behaviour));
    }

    /// Moves the clock ahead for good.
    static void advance(int seconds)
    {
        const QDateTime later = platform().now().addSecs(seconds);
        platform().clock = [later] { return later.toMSecsSinceEpoch(); };
    }

    void fire(const char* name) { fireTimer(window.get(), name); }

    template <class Widget>
    Widget* child(const char* name) const
    {
        return part<Widget>(window.get(), name);
    }

    QPushButton* button(const char* name) const { return child<QPushButton>(name); }
    QTimer* timer(const char* name) const { return child<QTimer>(name); }
    QString connectText() const { return button("btnConnect")->text(); }
    QString prompt() const { return promptText(window.get()); }

    /// The reason that the last request to `path` carries.
    int reasonOf(const char* path) const
    {
        return service.lastRequest(path).json().value("mobileActionLogType").toInt();
    }
};
