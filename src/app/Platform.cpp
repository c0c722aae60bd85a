#include "app/Platform.h"

#include "app/SingleApp.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QLocale>
#include <QProcess>

Platform::Platform()
    : clock(&QDateTime::currentMSecsSinceEpoch),
      isChinese([] { return QLocale::system().language() == QLocale::Chinese; }), programDir([] {
          // Asked for with every log line; Qt would take the path apart anew each time.
          static const QString folder = QCoreApplication::applicationDirPath();
          return folder;
      }),
      relaunch([](const QStringList& words) {
          SingleApp::release();
          QProcess::startDetached(QCoreApplication::applicationFilePath(), words);
          QCoreApplication::quit();
      }),
      arguments(&QCoreApplication::arguments), quit(&QCoreApplication::quit),
      openUrl(&QDesktopServices::openUrl),
      startDetached([](const QString& program, const QProcessEnvironment& environment) {
          QProcess process;
          process.setProgram(program);
          process.setProcessEnvironment(environment);
          return process.startDetached();
      })
{
}

QString Platform::programFile(const QString& name) const
{
    return programDir() + QLatin1Char('/') + name;
}

Platform& platform()
{
    static Platform instance;
    return instance;
}
