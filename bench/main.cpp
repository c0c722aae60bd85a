// Prints the figures of the program's parts, each beside its floor; program.py has the chapters of
// the whole program. Arguments choose chapters by name; none means all. Nothing here fails a build:
// the figures are for reading.
#include "Measure.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

#include <QApplication>
#include <QStringList>
#include <QTemporaryDir>

double median(QVector<double> values)
{
    if (values.isEmpty())
        return 0;
    const auto middle = values.begin() + values.size() / 2;
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double milliseconds(const std::function<void()>& work)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

Pair interleaved(int rounds, const std::function<void()>& subject,
                 const std::function<void()>& floor)
{
    QVector<double> subjects;
    QVector<double> floors;
    subject();
    floor();
    for (int round = 0; round < rounds; ++round) {
        subjects.append(milliseconds(subject));
        floors.append(milliseconds(floor));
    }
    return {median(subjects), median(floors)};
}

static void print(const Figure& figure)
{
    QString line = figure.what.leftJustified(46) +
                   QStringLiteral("%1 %2").arg(figure.value, 11, 'f', 2).arg(figure.unit, -10);
    if (figure.floor >= 0) {
        line += QStringLiteral("floor %1").arg(figure.floor, 11, 'f', 2);
        if (figure.floor > 0)
            line += QStringLiteral("  x %1").arg(figure.value / figure.floor, 5, 'f', 2);
    }
    if (!figure.aim.isEmpty())
        line += QStringLiteral("   (aim: %1)").arg(figure.aim);
    std::printf("%s\n", qPrintable(line));
    std::fflush(stdout);
}

int main(int argc, char* argv[])
{
    const QTemporaryDir settings; // nobody's real ones
    qputenv("XDG_CONFIG_HOME", settings.path().toUtf8());
    // Windows are measured without a screen.
    QVector<char*> arguments(argv, argv + argc);
    char platformOption[] = "-platform";
    char offscreen[] = "offscreen";
    arguments << platformOption << offscreen << nullptr;
    int count = arguments.size() - 1;
    QApplication app(count, arguments.data());
    const QVector<QPair<QString, void (*)(const Report&)>> chapters = {
        {QStringLiteral("dispatch"), &benchDispatch}, {QStringLiteral("log"), &benchLog},
        {QStringLiteral("history"), &benchHistory},   {QStringLiteral("logpage"), &benchLogPage},
        {QStringLiteral("filter"), &benchFilter},     {QStringLiteral("customer"), &benchCustomer},
        {QStringLiteral("connect"), &benchConnect}};
    const QStringList chosen = QCoreApplication::arguments().mid(1);
    for (const auto& chapter : chapters) {
        if (chosen.isEmpty() || chosen.contains(chapter.first))
            chapter.second(&print);
    }
    return 0;
}
