#include "support/WindowScene.h"

#include "app/ConfigUtil.h"
#include "app/Log.h"
#include "app/Platform.h"
#include "orch/HostIdentity.h"
#include "orch/OrchErrRes.h"
#include "orch/OrchIpc.h"

#include <QTest>

WindowScene::WindowScene()
{
    OrchErrRes::release(); // error texts of an earlier scene
    ConfigUtil::createConfigPath();
    QFile::resize(ConfigUtil::getConfigPath() + "setting.conf", 0);
    const QString path = m_folder.path();
    platform() = Platform();
    platform().programDir = [path] { return path; };
    platform().isChinese = [] { return false; };
    platform().arguments = [] { return QStringList{"veltaro"}; };
    platform().quit = [this] { ++quits; };
    platform().relaunch = [this](const QStringList& arguments) {
        started << arguments.join(' ');
        ++quits;
    };
    m_previous = qInstallMessageHandler(&Log::messageOut);

    service.start();
    service.watchDatapath(path);
    qputenv("VELTARO_LOOKUP_PRIMARY", service.primaryUrl().toUtf8());
    qputenv("VELTARO_LOOKUP_BACKUP", service.backupUrl().toUtf8());
    ipc::OrchIpc::instance()->setMainAuthUrl(service.authUrl());
}

WindowScene::~WindowScene()
{
    if (QFile::exists(file("tarvelin")))
        QProcess::execute(file("tarvelin"), {"-D", "stop"});
    qputenv("PATH", m_path);
    qputenv("TMPDIR", m_tmp);
    qInstallMessageHandler(m_previous);
    platform() = Platform();
}

QByteArray WindowScene::read(const QString& name) const
{
    QFile wanted(file(name));
    return wanted.open(QIODevice::ReadOnly) ? wanted.readAll() : QByteArray();
}

void WindowScene::stageDatapath()
{
    const QStringList programs = QString(VELTARO_DATAPATH_PROGRAMS).split('|');
    for (const QString& program : programs)
        QFile::copy(program, file(QFileInfo(program).fileName()));
    QFile owner(file("standin.owner"));
    if (owner.open(QIODevice::WriteOnly))
        owner.write(QByteArray::number(QCoreApplication::applicationPid()));
    for (const char* folder : {"tools", "tmp"})
        QDir(m_folder.path()).mkdir(folder);
    for (const char* tool : {"ping", "ifconfig", "ip"})
        stageTool(tool, QByteArray("echo ") + tool + " \"$@\"");
    qputenv("PATH", file("tools:").toUtf8() + m_path);
    qputenv("TMPDIR", file("tmp").toUtf8());
}

void WindowScene::stageTool(const QString& name, const QByteArray& script)
{
    QFile tool(file("tools/" + name));
    if (tool.open(QIODevice::WriteOnly))
        tool.write("#!/bin/sh\n" + script + '\n');
    tool.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
}

void WindowScene::logIn()
{
    using C = ConfigUtil;
    C::writeValue(C::TOKEN, service.issueToken(username, Util::getSerial()));
    C::writeValue(C::USERNAME, username);
    C::writeValue(C::PASSWORD, QString(password.size(), '*'));
    C::writeValue(C::CUSTOMERIDSTR, customer);
    C::writeValue(C::CUSTOMERID, "1001");
    C::writeValue(C::AUTHURL, service.authUrl());
    C::writeValue(C::AGREE_PRIVACY, 1);
    C::writeValue(C::PRIVACY_VERSION, service.scenario().privacyVersion);
    C::writeValue(C::REMEMBER_PASSWORD, 2);
    C::writeValue(C::AUTO_LOGIN, 2);
}

ModalGuard::ModalGuard(const char* className, std::function<void(QDialog*)> act)
    : m_class(className), m_act(std::move(act))
{
    look();
}

ModalGuard::~ModalGuard()
{
    if (!m_seen)
        QTest::qFail("no " + m_class, __FILE__, __LINE__);
}

void ModalGuard::look()
{
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog && dialog->isVisible() && m_class == dialog->metaObject()->className()) {
        m_seen = true;
        m_act(dialog);
        return;
    }
    QTimer::singleShot(10, this, &ModalGuard::look);
}
