#include "support/Scene.h"

#include <QFile>

namespace support {

bool Scene::start()
{
    if (!m_desktop.start()) {
        m_error = m_desktop.error();
        return false;
    }
    m_program = std::make_unique<StagedProgram>(m_desktop.environment());
    if (!m_program->stage()) {
        m_error = m_program->error();
        return false;
    }
    if (!m_service.start(m_program->folder())) {
        m_error = QStringLiteral("The simulated service did not start");
        return false;
    }
    m_program->setVariables(m_service.clientVariables());
    m_bus = std::make_unique<AccessibilityBus>(m_desktop.accessibilityBus());
    m_bus->parkPointer();
    m_driver = std::make_unique<ClientDriver>(*m_bus, *m_program);
    return true;
}

bool Scene::logInByHand(const QString& customer, const QString& username, const QString& password,
                        bool remember)
{
    if (!m_program->start())
        return false;
    const bool agreed = m_program->setting(QStringLiteral("AGREE_PRIVACY")).toInt() == 1;
    return (agreed || m_driver->acceptPrivacy()) && m_driver->enterCustomer(customer) &&
           (!remember || m_driver->tickAutoLogin()) && m_driver->logIn(username, password);
}

bool Scene::rememberLogin()
{
    const QStringList keys = {QStringLiteral("TOKEN"),      QStringLiteral("AUTHURL"),
                              QStringLiteral("CUSTOMERID"), QStringLiteral("CUSTOMERIDSTR"),
                              QStringLiteral("USERNAME"),   QStringLiteral("PASSWORD"),
                              QStringLiteral("AUTO_LOGIN"), QStringLiteral("AGREE_PRIVACY")};
    QFile::remove(m_program->settingsFile());
    m_account = m_service.account();
    if (!logInByHand(m_account.customer, m_account.username, m_account.password, true) ||
        !m_driver->awaitConnected() || !m_driver->quit())
        return false;
    for (const QString& key : keys)
        m_saved.insert(key, m_program->setting(key));
    return true;
}

bool Scene::startRemembered()
{
    m_program->remove(QStringLiteral("ui.log"));
    m_program->writeSettings(m_saved);
    return m_program->start();
}

QString Scene::token() const
{
    return m_saved.value(QStringLiteral("TOKEN")).toString();
}

} // namespace support
