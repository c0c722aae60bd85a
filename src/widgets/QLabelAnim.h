#pragma once

#include <QLabel>
#include <QPixmap>

class QTimer;

/// The angle of a spinner one tick later, in degrees from 0 to 359: 36 ticks make a turn.
int nextSpinnerAngle(int angle);

/// A picture that turns around its middle while something is under way. It stands still until
/// start() and costs nothing then. GUI thread.
class QLabelAnim : public QLabel
{
    Q_OBJECT

public:
    explicit QLabelAnim(QWidget* parent = nullptr);

    /// The picture to turn, drawn in its own size in the middle of the label.
    void init(QPixmap pixmap);
    void start();
    void stop();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void advance();

    QPixmap m_Pixmap;
    QTimer* m_AnimTimer;
    int angle = 0; ///< degrees
};
