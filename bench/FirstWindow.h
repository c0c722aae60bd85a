#pragma once

#include <QProcessEnvironment>
#include <QString>

/// What a program's start looked like from outside.
struct FirstWindow
{
    double milliseconds = -1; ///< from the start of the process until the X server shows a window
    double memoryMb = -1;     ///< resident, once the program had come to rest
};

/// Starts `program`, measures, and kills it. Only the X server and /proc are asked, so every
/// program is measured alike. Negative values when no window came within ten seconds.
FirstWindow measureFirstWindow(const QString& program, const QProcessEnvironment& environment);

/// The processor time, in clock ticks, that a process uses in `seconds` once it has come to rest;
/// negative when it ended.
double ticksOver(qint64 pid, int seconds);
