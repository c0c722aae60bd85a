#include "app/Platform.h"

#include "app/SingleApp.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QLocale>
#include <QProcess>

#include <sys/socket.h>

static std::optional<uid_t> peerOf(int descriptor)
{
    ucred peer = {};
    socklen_t size = sizeof peer;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0)
        return std::nullopt;
    return peer.uid;
}

Platform::Platform()
    : clock(&QDateTime::currentMSecsSinceEpoch),
      isChinese([] { return QLocale::system().language() == QLocale::Chinese; }), programDir([] {
          // Asked for with every log line; Qt would take the path apart anew each time.
          static const QString folder = QCoreApplication::applicationDirPath();
          return folder;
      }),
      relaunch([](const QStringList& words) {
          SingleApp::release();
          QProcess process;
          process.setProgram(QCoreApplication::applicationFilePath());
          process.setArguments(words);
          process.setProcessEnvironment(platform().sessionEnvironment());
          process.startDetached();
          QCoreApplication::quit();
      }),
      arguments(&QCoreApplication::arguments), quit(&QCoreApplication::quit),
      openUrl([](const QUrl& address) {
          // The opener takes over our environment; our libraries have read theirs by now.
          platform().dropOwnVariables();
          return QDesktopServices::openUrl(address);
      }),
      startDetached([](const QString& program, const QProcessEnvironment& environment) {
          QProcess process;
          process.setProgram(program);
          process.setProcessEnvironment(environment);
          return process.startDetached();
      }),
      peerUser(&peerOf)
{
}

QString Platform::programFile(const QString& name) const
{
    return programDir() + QLatin1Char('/') + name;
}

void Platform::setForOurselves(const char* name, const QByteArray& value)
{
    if (qEnvironmentVariableIsSet(name))
        return;
    qputenv(name, value);
    m_ownVariables << QLatin1String(name);
}

QProcessEnvironment Platform::sessionEnvironment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString& name : m_ownVariables)
        environment.remove(name);
    return environment;
}

void Platform::dropOwnVariables()
{
    for (const QString& name : m_ownVariables)
        qunsetenv(name.toLatin1().constData());
}

Platform& platform()
{
    static Platform instance;
    return instance;
}
