// The program behind `./dev demo`: the real client against the simulated service. On a desktop it
// opens the client and says what to type; without one, or with --headless, it starts a desktop of
// its own, drives the client from outside and keeps a picture of every step.
#include "support/Scene.h"
#include "support/Wait.h"

#include <cstdio>
#include <functional>

#include <QCoreApplication>
#include <QDir>
#include <QStringList>

using support::Kind;

namespace {

void say(const QString& text)
{
    std::printf("%s\n", qPrintable(text));
    std::fflush(stdout);
}

int failed(const QString& why)
{
    std::fprintf(stderr, "The demo cannot start: %s\n", qPrintable(why));
    return 2;
}

/// On the user's own desktop, in settings of its own.
int showToUser()
{
    support::StagedProgram program(QProcessEnvironment::systemEnvironment());
    if (!program.stage())
        return failed(program.error());
    support::SimProcess service;
    if (!service.start(program.folder()))
        return failed(QStringLiteral("the simulated service did not start"));
    program.setVariables(service.clientVariables());
    if (!program.start())
        return failed(QStringLiteral("the client did not start"));

    const support::SimAccount account = service.account();
    say(QStringLiteral(
            "\nVeltaro is opening. Type:\n"
            "    Customer ID   %1\n"
            "    Username      %2\n"
            "    Password      %3\n\n"
            "Watch and switch the simulated service at %4\n"
            "The demo ends when you quit the client (left bar: Quit, Quit Application).\n")
            .arg(account.customer, account.username, account.password, service.controlPage()));
    // A logout starts the client anew, so it is the folder that is watched, not one process.
    while (!support::waitFor([&] { return program.pid() == 0; }, 60000)) {
    }
    return 0;
}

/// Goes through the main job and keeps what it saw.
class Tour
{
public:
    explicit Tour(support::Scene& scene) : m_scene(scene), m_folder(QDir(VELTARO_DEMO_FOLDER)) {}

    bool run();
    QString folder() const { return m_folder.path(); }

private:
    /// One line of the table: done only when `action` saw what it names.
    bool step(const QString& name, const std::function<bool()>& action);
    void picture(const QString& name);
    bool visit(const QString& page);

    support::Scene& m_scene;
    QDir m_folder;
    int m_pictures = 0;
};

bool Tour::step(const QString& name, const std::function<bool()>& action)
{
    const bool seen = action();
    picture(name);
    say(name.leftJustified(24) + (seen ? QStringLiteral("seen") : QStringLiteral("NOT SEEN")));
    if (!seen)
        say(m_scene.app().dump());
    return seen;
}

void Tour::picture(const QString& name)
{
    QRect area;
    const QVector<support::AccessibleNode> windows = m_scene.app().windows();
    for (const support::AccessibleNode& window : windows)
        area |= window.extents();
    if (area.isEmpty())
        return;
    // What was just changed has to reach the screen: the picture counts once it stands still.
    // The animated button never does, so a second is enough.
    QImage last;
    support::waitFor(
        [&] {
            const QImage now = m_scene.desktop().screen(area);
            const bool still = now == last;
            last = now;
            return still;
        },
        1000);
    QString file = name;
    file.replace(QLatin1Char(' '), QLatin1Char('-'));
    last.save(m_folder.filePath(
        QStringLiteral("%1-%2.png").arg(++m_pictures, 2, 10, QLatin1Char('0')).arg(file)));
}

bool Tour::visit(const QString& page)
{
    // Every page but the home page carries its name as a title.
    const bool there =
        m_scene.app().press(page) &&
        (page == QLatin1String("Home") || m_scene.app().await(Kind::Label, page).isValid());
    picture(QStringLiteral("page ") + page.toLower());
    return there;
}

bool Tour::run()
{
    m_folder.removeRecursively();
    m_folder.mkpath(QStringLiteral("."));
    support::ClientDriver& driver = m_scene.driver();
    const support::SimAccount account = m_scene.service().account();
    const auto opened = [&] {
        return m_scene.program().start() &&
               m_scene.app().await(Kind::Button, QStringLiteral("Accept")).isValid();
    };
    return step(QStringLiteral("client opened"), opened) &&
           step(QStringLiteral("privacy accepted"), [&] { return driver.acceptPrivacy(); }) &&
           step(QStringLiteral("customer found"),
                [&] { return driver.enterCustomer(account.customer); }) &&
           step(QStringLiteral("logged in"),
                [&] { return driver.logIn(account.username, account.password); }) &&
           step(QStringLiteral("connected"), [&] { return driver.awaitConnected(); }) &&
           step(QStringLiteral("rates above zero"), [&] { return driver.awaitTraffic(); }) &&
           visit(QStringLiteral("Setting")) && visit(QStringLiteral("Log")) &&
           visit(QStringLiteral("About")) && visit(QStringLiteral("Home")) &&
           step(QStringLiteral("stopped"), [&] { return driver.stop(); }) &&
           visit(QStringLiteral("Quit")) &&
           step(QStringLiteral("quit"), [&] { return driver.quit(); }) &&
           step(QStringLiteral("no rule broken"),
                [&] { return m_scene.service().violations().isEmpty(); });
}

int drive()
{
    support::Scene scene;
    if (!scene.start())
        return failed(scene.error());
    Tour tour(scene);
    const bool allSeen = tour.run();
    say(QStringLiteral("\nPictures of every step: ") + tour.folder());
    return allSeen ? 0 : 1;
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    const bool desktop =
        qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    const bool headless = QCoreApplication::arguments().contains(QStringLiteral("--headless"));
    return desktop && !headless ? showToUser() : drive();
}
