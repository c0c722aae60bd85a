#include "support/Scene.h"

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

} // namespace support
