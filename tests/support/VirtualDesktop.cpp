#include "support/VirtualDesktop.h"

#include "support/Wait.h"

#include <QDBusConnection>
#include <QDBusInterface>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QFile>
#include <QtEndian>

namespace support {

namespace {

constexpr char kLauncher[] = "/usr/libexec/at-spi-bus-launcher";

// A session bus that anyone of this user may use and that starts no service by itself.
constexpr char kBusConfiguration[] = R"(<!DOCTYPE busconfig PUBLIC
 "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=%1</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

/// The first line that `process` prints; empty when it ends or stays silent.
QString firstLine(ChildProcess& process)
{
    waitFor([&] { return process.canReadLine() || process.state() == QProcess::NotRunning; });
    return QString::fromUtf8(process.readLine()).trimmed();
}

} // namespace

VirtualDesktop::VirtualDesktop(Accessibility accessibility)
    : m_accessibility(accessibility), m_home(QDir::tempPath() + QStringLiteral("/desk-XXXXXX")),
      m_xServer(std::make_unique<ChildProcess>()), m_dbus(std::make_unique<ChildProcess>()),
      m_launcher(std::make_unique<ChildProcess>())
{
    cleanUpAfterDeath(m_home.path());
}

VirtualDesktop::~VirtualDesktop()
{
    m_launcher->end(true);
    m_dbus->end(false);
    m_xServer->end(true);
}

bool VirtualDesktop::start()
{
    const QDir home(m_home.path());
    const char* const folders[] = {"config", "runtime", "tmp", "screen", "bus"};
    for (const char* folder : folders)
        home.mkdir(QLatin1String(folder));
    QFile::setPermissions(home.filePath(QStringLiteral("runtime")),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return startDisplay() && startSessionBus() &&
           (m_accessibility == Accessibility::Off || startAccessibility());
}

bool VirtualDesktop::fail(const QString& what, const ChildProcess& process)
{
    m_error = what + QStringLiteral(" did not start: ") + process.errorString();
    return false;
}

bool VirtualDesktop::startDisplay()
{
    m_xServer->setStandardErrorFile(m_home.filePath(QStringLiteral("xserver.log")));
    m_xServer->start(QStringLiteral("Xvfb"),
                     {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-screen"),
                      QStringLiteral("0"), QStringLiteral("1280x800x24"), QStringLiteral("-dpi"),
                      QStringLiteral("96"), QStringLiteral("-wr"), QStringLiteral("-fbdir"),
                      m_home.filePath(QStringLiteral("screen")), QStringLiteral("-nolisten"),
                      QStringLiteral("tcp"), QStringLiteral("-noreset")});
    const QString number = firstLine(*m_xServer);
    if (number.isEmpty())
        return fail(QStringLiteral("The X server (Xvfb)"), *m_xServer);
    m_display = QLatin1Char(':') + number;
    return true;
}

bool VirtualDesktop::startSessionBus()
{
    QFile configuration(m_home.filePath(QStringLiteral("bus.conf")));
    if (!configuration.open(QIODevice::WriteOnly))
        return fail(QStringLiteral("The session bus"), *m_dbus);
    configuration.write(QString::fromLatin1(kBusConfiguration)
                            .arg(m_home.filePath(QStringLiteral("bus")))
                            .toUtf8());
    configuration.close();
    m_dbus->setProcessEnvironment(environment());
    m_dbus->setStandardErrorFile(m_home.filePath(QStringLiteral("bus.log")));
    m_dbus->start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                   QStringLiteral("--config-file=") + configuration.fileName()});
    m_sessionBus = firstLine(*m_dbus);
    return !m_sessionBus.isEmpty() || fail(QStringLiteral("The session bus"), *m_dbus);
}

bool VirtualDesktop::startAccessibility()
{
    const QString connectionName = QStringLiteral("desktop") + m_display;
    QDBusConnection bus = QDBusConnection::connectToBus(m_sessionBus, connectionName);
    m_launcher->setProcessEnvironment(environment());
    m_launcher->setStandardErrorFile(m_home.filePath(QStringLiteral("launcher.log")));
    m_launcher->start(QLatin1String(kLauncher), {QStringLiteral("--launch-immediately")});

    const QString service = QStringLiteral("org.a11y.Bus");
    waitFor([&] {
        const QDBusMessage ask = QDBusMessage::createMethodCall(
            service, QStringLiteral("/org/a11y/bus"), service, QStringLiteral("GetAddress"));
        const QDBusReply<QString> address = bus.call(ask);
        m_accessibilityBus = address.value();
        return !m_accessibilityBus.isEmpty() || m_launcher->state() == QProcess::NotRunning;
    });
    // Programs bring their accessible tree up when they find both of these set.
    const QString switches[] = {QStringLiteral("IsEnabled"), QStringLiteral("ScreenReaderEnabled")};
    for (const QString& name : switches) {
        QDBusMessage set = QDBusMessage::createMethodCall(
            service, QStringLiteral("/org/a11y/bus"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Set"));
        set << QStringLiteral("org.a11y.Status") << name << QVariant::fromValue(QDBusVariant(true));
        bus.call(set);
    }
    QDBusConnection::disconnectFromBus(connectionName);
    return !m_accessibilityBus.isEmpty() ||
           fail(QStringLiteral("The accessibility bus"), *m_launcher);
}

QProcessEnvironment VirtualDesktop::environment() const
{
    const QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment result = session();
    // Sanitizer and coverage settings of the caller reach the programs under test.
    const QStringList kept = {QStringLiteral("PATH"),          QStringLiteral("ASAN_OPTIONS"),
                              QStringLiteral("UBSAN_OPTIONS"), QStringLiteral("TSAN_OPTIONS"),
                              QStringLiteral("GCOV_PREFIX"),   QStringLiteral("USER")};
    for (const QString& name : kept) {
        if (own.contains(name))
            result.insert(name, own.value(name));
    }
    result.insert(QStringLiteral("HOME"), m_home.path());
    result.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    result.insert(QStringLiteral("TMPDIR"), m_home.filePath(QStringLiteral("tmp")));
    result.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.filePath(QStringLiteral("config")));
    result.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home.filePath(QStringLiteral("runtime")));
    result.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
    result.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    return result;
}

QProcessEnvironment VirtualDesktop::session() const
{
    QProcessEnvironment result;
    result.insert(QStringLiteral("DISPLAY"), m_display);
    result.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_sessionBus);
    return result;
}

QImage VirtualDesktop::screen(const QRect& area) const
{
    QFile file(m_home.filePath(QStringLiteral("screen/Xvfb_screen0")));
    if (!file.open(QIODevice::ReadOnly))
        return QImage();
    const QImage whole = imageFromWindowDump(file.readAll());
    return area.isNull() ? whole : whole.copy(area.intersected(whole.rect()));
}

bool VirtualDesktop::screenshot(const QString& path, const QRect& area) const
{
    return screen(area).save(path, "PNG");
}

QImage imageFromWindowDump(const QByteArray& dump)
{
    // XWDFile.h of the X protocol headers: 25 big-endian words, the window's name, the colour
    // map in entries of 12 bytes, then the lines.
    enum Word {
        HeaderSize,
        Version,
        Format,
        Depth,
        Width,
        Height,
        BitsPerPixel = 11,
        Pitch,
        Colours = 19,
        Words = 25
    };
    constexpr int kDumpVersion = 7;
    constexpr int kColourSize = 12;
    const auto word = [&](int index) {
        return static_cast<qint64>(qFromBigEndian<quint32>(dump.constData() + index * 4));
    };
    if (dump.size() < Words * 4 || word(Version) != kDumpVersion || word(BitsPerPixel) != 32)
        return QImage();
    const qint64 start = word(HeaderSize) + word(Colours) * kColourSize;
    if (word(Pitch) < word(Width) * 4 || dump.size() < start + word(Pitch) * word(Height))
        return QImage();
    const auto* pixels = reinterpret_cast<const uchar*>(dump.constData() + start);
    return QImage(pixels, static_cast<int>(word(Width)), static_cast<int>(word(Height)),
                  static_cast<int>(word(Pitch)), QImage::Format_RGB32)
        .copy();
}

} // namespace support
