#include "app/Appearance.h"
#include "app/CommandLine.h"
#include "app/ConfigUtil.h"
#include "app/DeepinShadowEffectListener.h"
#include "app/LocalServer.h"
#include "app/Log.h"
#include "app/SingleApp.h"
#include "app/Startup.h"
#include "app/Termination.h"
#include "login/DlgLogin.h"
#include "main/DatapathFile.h"
#include "main/DlgMain.h"
#include "res/Font.h"
#include "res/Pictures.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QSystemSemaphore>
#include <QTranslator>

#include <cstdio>
#include <memory>

// The log ends with main: what libraries say while they are unloaded would find it gone.
struct LogEnd
{
    ~LogEnd() { qInstallMessageHandler(nullptr); }
};

// Of two copies started together exactly one listens: the semaphore is held across probe and
// listen.
static bool anotherCopyRuns(QSystemSemaphore& guard)
{
    guard.acquire();
    const bool running = SingleApp::instance()->isAreadyRun();
    guard.release();
    return running;
}

// A copy that this one has started in its own place goes on with what stands on disk.
static void leave()
{
    if (SingleApp::instance())
        leaveDatapathFiles();
    SingleApp::release();
}

static int runSession(QApplication& app, const Termination& termination)
{
    // Closed windows do not end the session: it lives on in the tray.
    QApplication::setQuitOnLastWindowClosed(false);
    DlgMain mainWindow(nullptr);
    QObject::connect(&termination, &Termination::wanted, &mainWindow, &DlgMain::quitUI);
    mainWindow.show();
    const int result = app.exec();
    leave();
    return result;
}

static bool isAnswered(int argc, char* argv[])
{
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    const QByteArray answer = commandline::answer(arguments).toLocal8Bit();
    std::fwrite(answer.constData(), 1, size_t(answer.size()), stdout);
    return !answer.isEmpty();
}

int main(int argc, char* argv[])
{
    if (isAnswered(argc, argv))
        return 0;
    const LogEnd logEnd;
    startup::prepare();
    appearance::prepare();
    initPictures();
    initFont();
    QApplication app(argc, argv);
    QApplication::setDesktopFileName(QStringLiteral("com.orvek.veltaro"));
    startup::joinScreenReader();
    ConfigUtil::createConfigPath();
    QSystemSemaphore guard(QStringLiteral("com.orvek.ostrana"), 1, QSystemSemaphore::Create);
    appearance::applyPalette(app);
    appearance::applyStyleSheet(app);
    appearance::applyFont(app);
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, true);
    qInstallMessageHandler(&Log::messageOut);
    QTranslator translator;
    appearance::applyLanguage(app, translator);

    if (anotherCopyRuns(guard))
        return 0;

    if (isDeepinDesktop(qEnvironmentVariable("XDG_CURRENT_DESKTOP")))
        DeepinShadowEffectListener::instance()->checkOnStart();

    // The login window goes before the session begins: no late answer of its requests may act then.
    auto login = std::make_unique<DlgLogin>(nullptr);
    QObject::connect(SingleApp::instance()->getLocalServer(), &LocalServer::showWanted, login.get(),
                     [window = login.get()] {
                         window->showNormal();
                         window->raise();
                         window->activateWindow();
                     });
    const Termination termination;
    QObject::connect(&termination, &Termination::wanted, login.get(), &DlgLogin::rejectWithDialogs);
    const bool accepted = login->exec() == QDialog::Accepted;
    login.reset();
    if (accepted)
        return runSession(app, termination);
    leave();
    return 0;
}
