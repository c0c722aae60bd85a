#include "diagnosis/DisplayReport.h"

#include "app/ProcessRun.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFont>
#include <QGuiApplication>
#include <QScreen>
#include <QSysInfo>

namespace {

constexpr int kProbeMs = 3000;
constexpr int kSeparator = 44;
constexpr qreal kUsualDpi = 96;
constexpr const char* kVariables[] = {"QT_AUTO_SCREEN_SCALE_FACTOR",
                                      "QT_SCALE_FACTOR",
                                      "QT_SCREEN_SCALE_FACTORS",
                                      "QT_FONT_DPI",
                                      "QT_SCALE_FACTOR_ROUNDING_POLICY",
                                      "QT_ENABLE_HIGHDPI_SCALING",
                                      "GDK_SCALE",
                                      "GDK_DPI_SCALE",
                                      "XCURSOR_SIZE"};

class Report
{
public:
    void add(const QString& line) { lines.append(line); }

    template <class Value>
    void add(const char* label, const Value& value)
    {
        QString line;
        QDebug(&line).noquote().nospace() << label << ' ' << value;
        lines.append(line);
    }

    void environment(const char* label, const char* variable)
    {
        add(label, qEnvironmentVariable(variable));
    }

    void title(const char* text)
    {
        const QString separator(kSeparator, QLatin1Char('='));
        lines += {separator, QLatin1String(text), separator};
    }

    /// The lines of a text that hold one of the words, trimmed; how many there are.
    int matching(const QString& text, const QString& lead, const QStringList& words)
    {
        int found = 0;
        const QStringList all = text.split(QLatin1Char('\n'));
        for (const QString& line : all) {
            for (const QString& word : words) {
                if (!line.contains(word, Qt::CaseInsensitive))
                    continue;
                add(lead + line.trimmed());
                ++found;
                break;
            }
        }
        return found;
    }

    QStringList lines;
};

QString word(bool yes)
{
    return yes ? QStringLiteral("true") : QStringLiteral("false");
}

QString gsetting(const char* schema, const char* key)
{
    const ProcessRun run =
        runProcess(QStringLiteral("gsettings"),
                   {QStringLiteral("get"), QLatin1String(schema), QLatin1String(key)}, kProbeMs);
    return run.finished ? QString::fromUtf8(run.output).trimmed() : QString();
}

void addSystem(Report& report)
{
    report.add(QStringLiteral("\n[System Info]"));
    report.add("  OS:", QSysInfo::prettyProductName());
    report.add("  Kernel:", QSysInfo::kernelVersion());
    report.environment("  Desktop Environment:", "XDG_CURRENT_DESKTOP");
    report.environment("  Session Type:", "XDG_SESSION_TYPE");
    report.environment("  WAYLAND_DISPLAY:", "WAYLAND_DISPLAY");
    report.environment("  DISPLAY:", "DISPLAY");
}

void addQt(Report& report, const DisplayValues& values)
{
    report.add(QStringLiteral("\n[Qt Configuration]"));
    report.add("  Qt Version:", qVersion());
    report.add("  AA_EnableHighDpiScaling:", word(values.highDpiScaling));
    report.add("  AA_UseHighDpiPixmaps:", word(values.highDpiPixmaps));
    report.add("  HighDpiScaleFactorRoundingPolicy:", values.roundingPolicy);
    report.add("  Platform Plugin:", values.platformName);
    report.add(QStringLiteral("\n[DPI Environment Variables]"));
    for (const char* variable : kVariables)
        report.add(QStringLiteral("  %1: \"%2\"")
                       .arg(QLatin1String(variable), qEnvironmentVariable(variable)));
}

void addScreen(Report& report, int index, const DisplayValues::Screen& screen)
{
    report.add(QStringLiteral("\n  --- Screen %1 : %2 ---").arg(index).arg(screen.name));
    report.add("    Physical Size (mm):", screen.physicalSize);
    report.add("    Geometry (px):", screen.geometry);
    report.add("    Available Geometry (px):", screen.availableGeometry);
    report.add("    Virtual Geometry:", screen.virtualGeometry);
    const char* const labels[] = {"    Physical DPI X:", "    Physical DPI Y:", "    Physical DPI:",
                                  "    Logical DPI X:",  "    Logical DPI Y:",  "    Logical DPI:"};
    for (int i = 0; i < screen.dpi.size(); ++i)
        report.add(labels[i], screen.dpi[i]);
    report.add("    Device Pixel Ratio:", screen.ratio);
    report.add("    Refresh Rate:", QStringLiteral("%1 Hz").arg(screen.refreshRate));
    report.add("    Scale Factor Estimate (logicalDPI/96):", screen.dpi.last() / kUsualDpi);
}

void addScreens(Report& report, const DisplayValues& values)
{
    report.add(QStringLiteral("\n[Screen Info]"));
    report.add("  Screen Count:", values.screens.size());
    report.add("  Primary Screen:", values.primary);
    for (int i = 0; i < values.screens.size(); ++i)
        addScreen(report, i, values.screens[i]);
}

void addApplication(Report& report, const DisplayValues& values)
{
    report.add(QStringLiteral("\n[Application Info]"));
    report.add("  App Device Pixel Ratio:", values.ratio);
    report.add("  Default Font:", values.font);
    report.add("  Default Font Family:", values.fontFamily);
    report.add("  Default Font PointSize:", values.fontPointSize);
    report.add("  Default Font PixelSize:", values.fontPixelSize);
    report.add("  Desktop Width (logical):", values.desktop.width());
    report.add("  Desktop Height (logical):", values.desktop.height());
}

void addProbes(Report& report, const DisplayProbes& probes)
{
    report.add(QStringLiteral("\n[X11 DPI Configuration]"));
    const QStringList words{QStringLiteral("dpi"), QStringLiteral("Xft"),
                            QStringLiteral("scaling")};
    if (!probes.xrdbAnswered)
        report.add(QStringLiteral("    (Unable to query xrdb)"));
    else if (report.matching(probes.xrdb, QStringLiteral("    "), words) == 0)
        report.add(QStringLiteral("    (No DPI/Xft related entries found)"));

    report.add(QStringLiteral("\n[Desktop Environment Scaling]"));
    const auto addUnlessEmpty = [&report](const char* label, const QString& value) {
        if (!value.isEmpty())
            report.add(label, value);
    };
    addUnlessEmpty("  GNOME scaling-factor:", probes.scalingFactor);
    addUnlessEmpty("  GNOME text-scaling-factor:", probes.textScalingFactor);
    addUnlessEmpty("  GNOME mutter experimental-features:", probes.mutterFeatures);
    report.matching(probes.kdeglobals, QStringLiteral("  KDE: "),
                    {QStringLiteral("ScaleFactor"), QStringLiteral("forceFontDPI")});
}

} // namespace

DisplayValues DisplayValues::collect()
{
    DisplayValues values;
    values.highDpiScaling = QCoreApplication::testAttribute(Qt::AA_EnableHighDpiScaling);
    values.highDpiPixmaps = QCoreApplication::testAttribute(Qt::AA_UseHighDpiPixmaps);
    values.roundingPolicy = int(QGuiApplication::highDpiScaleFactorRoundingPolicy());
    values.platformName = QGuiApplication::platformName();
    const auto screens = QGuiApplication::screens();
    for (const QScreen* screen : screens)
        values.screens.append(
            {screen->name(), screen->physicalSize(), screen->geometry(),
             screen->availableGeometry(), screen->virtualGeometry(),
             QVector<qreal>{screen->physicalDotsPerInchX(), screen->physicalDotsPerInchY(),
                            screen->physicalDotsPerInch(), screen->logicalDotsPerInchX(),
                            screen->logicalDotsPerInchY(), screen->logicalDotsPerInch()},
             screen->devicePixelRatio(), screen->refreshRate()});
    if (const QScreen* const primary = QGuiApplication::primaryScreen()) {
        values.primary = primary->name();
        values.desktop = primary->virtualSize();
    }
    values.ratio = qApp->devicePixelRatio();
    const QFont font = QGuiApplication::font();
    values.font = font.toString();
    values.fontFamily = font.family();
    values.fontPointSize = font.pointSize();
    values.fontPixelSize = font.pixelSize();
    return values;
}

DisplayProbes DisplayProbes::collect()
{
    DisplayProbes probes;
    const ProcessRun xrdb =
        runProcess(QStringLiteral("xrdb"), {QStringLiteral("-query")}, kProbeMs);
    probes.xrdbAnswered = xrdb.finished;
    probes.xrdb = QString::fromUtf8(xrdb.output);
    probes.scalingFactor = gsetting("org.gnome.desktop.interface", "scaling-factor");
    probes.textScalingFactor = gsetting("org.gnome.desktop.interface", "text-scaling-factor");
    probes.mutterFeatures = gsetting("org.gnome.mutter", "experimental-features");
    QFile kde(QDir::homePath() + QStringLiteral("/.config/kdeglobals"));
    if (kde.open(QIODevice::ReadOnly))
        probes.kdeglobals = QString::fromUtf8(kde.readAll());
    return probes;
}

QStringList displayReport(const DisplayValues& values, const DisplayProbes& probes)
{
    Report report;
    report.title("       DPI / Display Diagnostics");
    addSystem(report);
    addQt(report, values);
    addScreens(report, values);
    addApplication(report, values);
    addProbes(report, probes);
    report.title("       Diagnostics Complete");
    return report.lines;
}
