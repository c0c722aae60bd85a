#pragma once

#include <QPushButton>

namespace TQ {

/// The button that has a code sent; while the next code must be waited for it shows the seconds.
/// GUI thread.
class SendCodeButton : public QPushButton
{
    Q_OBJECT

public:
    explicit SendCodeButton(QWidget* parent);

    /// "Send Code", ready or not.
    void showIdle(bool ready);
    /// The seconds left until it is ready.
    void showCountdown(int seconds);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace TQ
