#pragma once

#include <QDateTime>
#include <QSize>
#include <QWidget>

class QLabel;
class QTimer;

/// Shows how long the connection has been up. It takes kPlace on its window; with days in front it
/// becomes as wide as its text needs, its left edge staying. GUI thread.
class widgeChronometer : public QWidget
{
    Q_OBJECT

public:
    static constexpr QSize kPlace{98, 34}; ///< px

    explicit widgeChronometer(QWidget* parent);

    /// Shows itself and counts from zero.
    void start();

    /// Hides itself and stops counting.
    void stop();

    /// The display for a number of seconds: hours, minutes and seconds, with the days in front
    /// from one day on. Translated.
    static QString timeText(qint64 seconds);

private slots:
    void onChangeTimeTick();

private:
    void showTime(qint64 seconds);

    QTimer* m_Timer;
    QDateTime m_TimeRecord; ///< when counting began
    qint64 m_Second = 0;    ///< the same in seconds since the epoch
    QLabel* labelClock;
    QLabel* labelTime;
};
