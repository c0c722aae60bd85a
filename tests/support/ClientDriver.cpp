#include "support/ClientDriver.h"

#include "support/Wait.h"

#include <QRegularExpression>

namespace support {

ClientDriver::ClientDriver(const AccessibilityBus& bus, const StagedProgram& program)
    : m_program(program), m_app(bus, [&program] { return program.pid(); })
{
}

bool ClientDriver::acceptPrivacy()
{
    const QString accept = QStringLiteral("Accept");
    return m_app.press(accept) &&
           waitFor([&] { return !m_app.find(Kind::Button, accept).isValid(); });
}

bool ClientDriver::enterCustomer(const QString& customerId)
{
    return m_app.type(QStringLiteral("Customer ID"), customerId) &&
           m_app.press(QStringLiteral("Continue")) &&
           m_app.await(Kind::Field, QStringLiteral("Username")).isValid() && awaitText(customerId);
}

bool ClientDriver::tickAutoLogin()
{
    const AccessibleNode box = m_app.await(Kind::CheckBox, QStringLiteral("Auto Login"));
    return box.isChecked() || (box.press() && waitFor([&] { return box.isChecked(); }));
}

bool ClientDriver::logIn(const QString& username, const QString& password)
{
    return m_app.type(QStringLiteral("Username"), username) &&
           m_app.type(QStringLiteral("Password"), password) &&
           m_app.press(QStringLiteral("Login")) &&
           m_app.await(Kind::Button, QStringLiteral("Home")).isValid();
}

bool ClientDriver::awaitConnected(int timeoutMs)
{
    return m_app.await(Kind::Button, QStringLiteral("Stop"), timeoutMs).isValid();
}

bool ClientDriver::awaitTraffic(int timeoutMs)
{
    return waitFor([this] { return sendRate() > 0 && receiveRate() > 0; }, timeoutMs);
}

bool ClientDriver::confirm()
{
    return m_app.press(QStringLiteral("Yes"));
}

bool ClientDriver::stop()
{
    return m_app.press(QStringLiteral("Stop")) && confirm() &&
           m_app.await(Kind::Button, QStringLiteral("Connect")).isValid();
}

bool ClientDriver::quit()
{
    return m_app.press(QStringLiteral("Quit")) && m_app.press(QStringLiteral("Quit Application")) &&
           confirm() && waitFor([this] { return m_program.pid() == 0; });
}

double ClientDriver::rate(const QString& label) const
{
    static const QRegularExpression number(QStringLiteral("\\d+(\\.\\d+)?"));
    const QRegularExpressionMatch match =
        number.match(m_app.findDescribed(Kind::Label, label).name());
    return match.hasMatch() ? match.captured().toDouble() : -1;
}

double ClientDriver::sendRate() const
{
    return rate(QStringLiteral("Send rate"));
}

double ClientDriver::receiveRate() const
{
    return rate(QStringLiteral("Receive rate"));
}

bool ClientDriver::awaitText(const QString& part, int timeoutMs) const
{
    return waitFor(
        [&] {
            // Long texts are broken into lines for the eye.
            const QString all = m_app.labels().join(QLatin1Char(' '));
            return all.simplified().contains(part.simplified());
        },
        timeoutMs);
}

bool ClientDriver::isResponsive() const
{
    return !m_app.windows().isEmpty();
}

} // namespace support
