#pragma once

#include "support/AccessibleApp.h"
#include "support/StagedProgram.h"

namespace support {

/// A person in front of the client: reads what the windows show and presses what they offer.
/// Every step waits for what it needs and says whether it really saw the outcome.
class ClientDriver
{
public:
    ClientDriver(const AccessibilityBus& bus, const StagedProgram& program);

    /// Accepts the privacy agreement; true once its dialog has gone.
    bool acceptPrivacy();

    /// Types the customer ID and continues; true once the login page shows it.
    bool enterCustomer(const QString& customerId);

    /// Ticks "Auto Login" on the login page; true once it is ticked.
    bool tickAutoLogin();

    /// Types name and password and logs in; true once the main window is there.
    bool logIn(const QString& username, const QString& password);

    /// True once the main window shows an established connection.
    bool awaitConnected(int timeoutMs = 20000);

    /// True once the rates are both above zero.
    bool awaitTraffic(int timeoutMs = 20000);

    /// Stops the connection and confirms; true once the client offers to connect again.
    bool stop();

    /// Leaves by the quit page and confirms; true once the process has ended.
    bool quit();

    /// What a rate label shows, as a number; -1 while it shows none.
    double sendRate() const;
    double receiveRate() const;

    /// Waits until a label contains `part`, such as the text of the top prompt.
    bool awaitText(const QString& part, int timeoutMs = 10000) const;

    /// Whether the client answers at all: its event loop is not blocked.
    bool isResponsive() const;

    const AccessibleApp& app() const { return m_app; }

private:
    bool confirm();
    double rate(const QString& label) const;

    const StagedProgram& m_program;
    AccessibleApp m_app;
};

} // namespace support
