#pragma once

#include <QDebug>
#include <QString>

/// The marker of messages meant for the user's activity log, put in front of the text.
constexpr char kDisplay[] = "<DISPLAY> ";

/// Display entries at each level: the text appears in the activity log and in the log file.
/// Texts of information entries that begin with "NOTICE" become notices. Any thread.
inline void logDisplayInfo(const QString& text)
{
    qInfo().noquote().nospace() << kDisplay << text;
}
inline void logDisplayWarning(const QString& text)
{
    qWarning().noquote().nospace() << kDisplay << text;
}
inline void logDisplayCritical(const QString& text)
{
    qCritical().noquote().nospace() << kDisplay << text;
}

/// A marked debug message: it reaches the log file only, without the marker.
inline void logDisplayDebug(const QString& text)
{
    qDebug().noquote().nospace() << kDisplay << text;
}
