#pragma once

#include <QByteArray>
#include <QString>

/// The datapath's command-line tool "dispatch" in the program's folder, through which the diagnosis
/// sends text commands to the dispatch service.
namespace dispatchtool {

/// Commands without an answer. They go through the system shell, so that the tool receives what
/// stands in double quotes as part of one argument.
enum class Command {
    StartEngineCapture,
    StopEngineCapture,
    StartDatapathCapture,
    StopDatapathCapture
};

/// The argument text of a command, double quotes included.
QString commandText(Command command);

/// The argument text that sets the folder for captures. Characters that the shell would act upon
/// within double quotes are escaped: no folder's name can become a command.
QString captureFolderText(const QString& folder);

/// Runs the tool with an argument text and waits for it. Any thread but the GUI's.
void run(const QString& argumentText);

/// Asks for the capture folder; empty when the tool does not say. Waits at most 30 s.
QString captureFolder();

/// Lets the service write its report as `folder` + `fileName` (which begins with "/"). Waits at
/// most 30 s.
void writeReport(const QString& folder, const QString& fileName);

/// The capture folder in the tool's answer: the line after the first one that holds the marker
/// "##############". Empty when the marker or a line feed is missing.
QString parseCaptureFolder(const QByteArray& output);

} // namespace dispatchtool
