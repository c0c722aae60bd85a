#pragma once

#include "support/ClientDriver.h"
#include "support/SimProcess.h"
#include "support/StagedProgram.h"
#include "support/VirtualDesktop.h"

#include <memory>
#include <QVariantMap>

namespace support {

/// Everything a person would have: a desktop, the installed client, and a service to talk to.
/// Started once and used for several runs of the client.
class Scene
{
public:
    /// False with `error()` when a piece does not start.
    bool start();
    QString error() const { return m_error; }

    VirtualDesktop& desktop() { return m_desktop; }
    StagedProgram& program() { return *m_program; }
    SimProcess& service() { return m_service; }
    ClientDriver& driver() { return *m_driver; }
    const AccessibleApp& app() const { return m_driver->app(); }

    /// Starts the client and goes the way of a new user by hand: agreement, customer, login.
    /// With `remember` the "Auto Login" box is ticked, so that the next start needs no hand.
    bool logInByHand(const QString& customer, const QString& username, const QString& password,
                     bool remember);

    /// Forgets all settings, logs the service's first account in by hand, lets it connect and
    /// quits; what the login saved is kept for startRemembered().
    bool rememberLogin();

    /// Starts the client with a new log and the settings that rememberLogin() left, so that it
    /// logs in by itself.
    bool startRemembered();

    /// The account that rememberLogin() used.
    const SimAccount& account() const { return m_account; }

    /// The session token that rememberLogin() left.
    QString token() const;

private:
    VirtualDesktop m_desktop;
    SimProcess m_service;
    QString m_error;
    SimAccount m_account;
    QVariantMap m_saved; ///< settings after a login
    std::unique_ptr<StagedProgram> m_program;
    std::unique_ptr<AccessibilityBus> m_bus;
    std::unique_ptr<ClientDriver> m_driver;
};

} // namespace support
