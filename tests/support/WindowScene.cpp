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
    QFile::resize(ConfigUtil::getConfigPath() + QStringLiteral("setting.conf"), 0);
    const QString path = m_folder.path();
    platform() = Platform();
    platform().programDir = [path] { return path; };
    platform().isChinese = [] { return false; };
    platform().arguments = [] { return QStringList{QStringLiteral("veltaro")}; };
    platform().quit = [this] { ++quits; };
    platform().relaunch = [this](const QStringList& arguments) {
        started << arguments.join(QLatin1Char(' '));
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
    if (QFile::exists(file(QStringLiteral("tarvelin"))))
        QProcess::execute(file(QStringLiteral("tarvelin")),
                          {QStringLiteral("-D"), QStringLiteral("stop")});
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
    const QStringList programs = QStringLiteral(VELTARO_DATAPATH_PROGRAMS).split(QLatin1Char('|'));
    for (const QString& program : programs)
        QFile::copy(program, file(QFileInfo(program).fileName()));
    QFile owner(file(QStringLiteral("standin.owner")));
    if (owner.open(QIODevice::WriteOnly))
        owner.write(QByteArray::number(QCoreApplication::applicationPid()));
    for (const char* folder : {"tools", "tmp"})
        QDir(m_folder.path()).mkdir(QLatin1String(folder));
    for (const char* tool : {"ping", "ifconfig", "ip"})
        stageTool(QLatin1String(tool), QByteArray("echo ") + tool + " \"$@\"");
    qputenv("PATH", file(QStringLiteral("tools:")).toUtf8() + m_path);
    qputenv("TMPDIR", file(QStringLiteral("tmp")).toUtf8());
}

void WindowScene::stageTool(const QString& name, const QByteArray& script)
{
    QFile tool(file(QStringLiteral("tools/")) + name);
    if (tool.open(QIODevice::WriteOnly))
        tool.write("#!/bin/sh\n" + script + '\n');
    tool.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
}

void WindowScene::logIn()
{
    const QString token = service.issueToken(username, Util::getSerial());
    const QVector<QPair<QString, QVariant>> left = {
        {ConfigUtil::TOKEN, token},
        {ConfigUtil::USERNAME, username},
        {ConfigUtil::PASSWORD, QString(password.size(), QLatin1Char('*'))},
        {ConfigUtil::CUSTOMERIDSTR, customer},
        {ConfigUtil::CUSTOMERID, QStringLiteral("1001")},
        {ConfigUtil::AUTHURL, service.authUrl()},
        {ConfigUtil::AGREE_PRIVACY, 1},
        {ConfigUtil::PRIVACY_VERSION, service.scenario().privacyVersion},
        {ConfigUtil::REMEMBER_PASSWORD, 2},
        {ConfigUtil::AUTO_LOGIN, 2},
    };
    for (const auto& value : left)
        ConfigUtil::writeValue(value.first, value.second);
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
