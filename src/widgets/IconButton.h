#pragma once

#include <QIcon>
#include <QPushButton>

/// A button that is nothing but a picture of 16 x 16, such as a window's close button: `base`.png,
/// and `base`_on.png under the pointer, pressed or with the focus. A style sheet set on the button
/// itself takes over the drawing.
class IconButton : public QPushButton
{
    Q_OBJECT

public:
    /// `base` names the pictures; `title` is the accessible name.
    IconButton(const char* base, const QString& title, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QIcon m_picture;
};
