#pragma once

#include <QObject>

/// The system's request to end, as a desktop sends it when its session is over: SIGTERM, SIGHUP
/// and SIGINT. A second one ends the process at once. One object in a program; GUI thread.
class Termination : public QObject
{
    Q_OBJECT

public:
    Termination();

signals:
    void wanted();
};
