#pragma once

#include "support/ChildProcess.h"

#include <memory>
#include <QImage>
#include <QProcessEnvironment>
#include <QRect>
#include <QTemporaryDir>

namespace support {

/// A desktop session of its own: an X server without a screen, a session bus and, when asked for,
/// an accessibility bus that believes a screen reader is running. Nothing of it touches the user's
/// session, and it ends with this process. It has no window manager: windows stay where they are
/// put, and the one clicked last gets the keys.
class VirtualDesktop
{
public:
    /// Off: no accessibility bus, as for most people.
    enum class Accessibility { On, Off };

    explicit VirtualDesktop(Accessibility accessibility = Accessibility::On);
    ~VirtualDesktop();

    /// Starts everything; false with `error()` when a piece does not come up within ten seconds.
    bool start();
    QString error() const { return m_error; }

    /// What a program needs to run on this desktop, in English, with a home, a configuration
    /// folder and a temporary folder of its own.
    QProcessEnvironment environment() const;

    /// Only what tells a program which desktop to run on, for one that ran on another before.
    QProcessEnvironment session() const;

    QString accessibilityBus() const { return m_accessibilityBus; }

    /// What the screen shows now, or the part of it within `area`.
    QImage screen(const QRect& area = QRect()) const;

    /// Saves `screen(area)` as PNG.
    bool screenshot(const QString& path, const QRect& area = QRect()) const;

private:
    bool startDisplay();
    bool startSessionBus();
    bool startAccessibility();
    bool fail(const QString& what, const ChildProcess& process);

    Accessibility m_accessibility;
    QTemporaryDir m_home;
    QString m_error;
    QString m_display;
    QString m_sessionBus;
    QString m_accessibilityBus;
    std::unique_ptr<ChildProcess> m_xServer;
    std::unique_ptr<ChildProcess> m_dbus;
    std::unique_ptr<ChildProcess> m_launcher;
};

/// Reads an X window dump of 32 bits a pixel, the form in which the X server keeps its screen in
/// a file; a null image when the bytes are no such dump.
QImage imageFromWindowDump(const QByteArray& dump);

} // namespace support
