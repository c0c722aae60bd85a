#include "sim/Behaviour.h"

#include <QFile>
#include <QProcess>
#include <QSaveFile>

namespace sim {

namespace {

constexpr char kBehaviour[] = "/datapath.behaviour";
constexpr char kViolations[] = "/datapath.violations";
constexpr char kCalls[] = "/tarvelin.calls";

QStringList lines(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
}

} // namespace

Behaviour readBehaviour(const QString& directory)
{
    Behaviour behaviour;
    for (const QString& line : lines(directory + kBehaviour)) {
        const int equals = line.indexOf('=');
        if (equals > 0)
            behaviour.insert(line.left(equals), line.mid(equals + 1));
    }
    return behaviour;
}

bool writeBehaviour(const QString& directory, const Behaviour& behaviour)
{
    QByteArray text;
    for (auto it = behaviour.begin(); it != behaviour.end(); ++it)
        text += (it.key() + '=' + it.value() + '\n').toUtf8();
    QSaveFile file(directory + kBehaviour);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
}

QStringList datapathViolations(const QString& directory)
{
    return directory.isEmpty() ? QStringList() : lines(directory + kViolations);
}

void clearDatapathViolations(const QString& directory)
{
    if (!directory.isEmpty())
        QFile::remove(directory + kViolations);
}

bool crashDatapath(const QString& directory)
{
    return !directory.isEmpty() && QProcess::execute(directory + "/tarvelin", {"-D", "crash"}) == 0;
}

QStringList scriptCalls(const QString& directory)
{
    return lines(directory + kCalls);
}

} // namespace sim
