#include "dispatch/DispatchTool.h"

#include "app/Platform.h"
#include "app/ProcessRun.h"

#include <QRegularExpression>

namespace dispatchtool {

namespace {

constexpr int kAnswerMs = 30000;

QString tool()
{
    return platform().programFile(QStringLiteral("dispatch"));
}

// What may stand between double quotes on a command line without being acted upon (POSIX shell,
// 2.2.3).
QString escaped(QString text)
{
    static const QRegularExpression special(QStringLiteral("([\\\\\"$`])"));
    return text.replace(special, QStringLiteral("\\\\1"));
}

QByteArray ask(const QStringList& arguments)
{
    return runProcess(tool(), arguments, kAnswerMs).output;
}

} // namespace

QString commandText(Command command)
{
    switch (command) {
    case Command::StartEngineCapture:
        return QStringLiteral("set_orvek_pcapEnable/\"engine=0 1\"");
    case Command::StopEngineCapture:
        return QStringLiteral("set_orvek_pcapEnable/\"engine=0 0\"");
    case Command::StartDatapathCapture:
        return QStringLiteral("set_dp_pcap/1");
    case Command::StopDatapathCapture:
        return QStringLiteral("set_dp_pcap/0");
    }
    return {};
}

QString captureFolderText(const QString& folder)
{
    return QStringLiteral("set_pcap_dir/\"") + escaped(folder) + QLatin1Char('"');
}

void run(const QString& argumentText)
{
    const QString line = QLatin1Char('"') + escaped(tool()) + QStringLiteral("\" ") + argumentText;
    // As system() does it, but with the session's environment. Whether it succeeded the tool does
    // not say.
    runProcess(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), line}, -1);
}

QString captureFolder()
{
    return parseCaptureFolder(ask({QStringLiteral("get_pcap_dir")}));
}

void writeReport(const QString& folder, const QString& fileName)
{
    ask({QStringLiteral("diagnose"), folder + fileName});
}

QString parseCaptureFolder(const QByteArray& output)
{
    const int marker = output.indexOf("##############");
    const int start = marker < 0 ? -1 : output.indexOf('\n', marker);
    const int end = start < 0 ? -1 : output.indexOf('\n', start + 1);
    return end < 0 ? QString() : QString::fromLocal8Bit(output.mid(start + 1, end - start - 1));
}

} // namespace dispatchtool
