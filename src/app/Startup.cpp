#include "app/Startup.h"

#include "app/Platform.h"

#include <QAccessible>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QEvent>
#include <QFile>
#include <QFileInfo>

namespace {

// Qt adds the program's folder to its library paths while the application object is made, and
// looks the first plugin up before that object is complete: there is no moment in between to take
// the folder out. But Qt repeats what was taken out beforehand, provided that it was in the list
// then; QT_PLUGIN_PATH is the way to get it there.
void keepPluginsOutOfProgramFolder()
{
    const char variable[] = "QT_PLUGIN_PATH";
    const QString folder = QFileInfo(QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))).path();
    const bool given = qEnvironmentVariableIsSet(variable);
    const QByteArray users = qgetenv(variable);
    qputenv(variable, QFile::encodeName(folder) + ':' + users);
    QCoreApplication::removeLibraryPath(folder);
    if (given)
        qputenv(variable, users);
    else
        qunsetenv(variable);
}

// Takes the order to come up from Qt's accessibility bridge while the bridge has no bus yet.
class BridgeDelay : public QObject
{
protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        return event->type() == QEvent::MetaCall &&
               qstrcmp(object->metaObject()->className(), "QSpiAccessibleBridge") == 0 &&
               !QDBusConnection(QStringLiteral("a11y")).isConnected();
    }
};

} // namespace

void startup::prepare()
{
    // The windows are painted without OpenGL; loading its drivers would double the time to the
    // first window and the memory.
    platform().setForOurselves("QT_XCB_GL_INTEGRATION", "none");
    keepPluginsOutOfProgramFolder();
}

void startup::joinScreenReader()
{
    // The bridge, made here, asks for the address of its bus and orders itself to come up without
    // waiting for the answer; one that came up without a bus never tries again. The answer makes it
    // come up anyway, so that the early order can go.
    QAccessible::isActive();
    BridgeDelay delay;
    QCoreApplication::instance()->installEventFilter(&delay);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
}
