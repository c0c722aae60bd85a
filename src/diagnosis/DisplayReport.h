#pragma once

#include <QRect>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QVector>

/// The display of this desktop as problems with scaling are found by.

/// What only the GUI thread may ask for.
struct DisplayValues
{
    struct Screen
    {
        QString name;
        QSizeF physicalSize; ///< mm
        QRect geometry;
        QRect availableGeometry;
        QRect virtualGeometry;
        QVector<qreal> dpi; ///< physical x, y, both; logical x, y, both
        qreal ratio = 1;
        qreal refreshRate = 0; ///< Hz
    };

    bool highDpiScaling = false;
    bool highDpiPixmaps = false;
    int roundingPolicy = 0;
    QString platformName;
    QString primary; ///< the primary screen's name
    QVector<Screen> screens;
    qreal ratio = 1;
    QString font; ///< its description
    QString fontFamily;
    int fontPointSize = 0;
    int fontPixelSize = 0;
    QSize desktop;

    /// GUI thread.
    static DisplayValues collect();
};

/// What other programs and files say.
struct DisplayProbes
{
    bool xrdbAnswered = false;
    QString xrdb; ///< the X server's resources
    QString scalingFactor;
    QString textScalingFactor;
    QString mutterFeatures;
    QString kdeglobals;

    /// Runs short programs, at most 3 s each. Any thread.
    static DisplayProbes collect();
};

/// The report, a line each. Reads the environment. Any thread.
QStringList displayReport(const DisplayValues& values, const DisplayProbes& probes);
