#pragma once

#include <QMouseEvent>
#include <QPoint>
#include <QWidget>
#include <QWindow>

/// Moving a frameless window with the left button: call beginDrag() from its mouse press event and
/// continueDrag() from its mouse move event. `anchor` is kept by the window in between: the
/// pointer's place relative to the window's top left corner.

/// Takes hold of the window and accepts the event; false for other buttons. Where the desktop moves
/// windows itself it takes over here (on Wayland no other way exists), and no mouse move follows.
inline bool beginDrag(QPoint& anchor, QMouseEvent* event, const QWidget* window)
{
    if (event->button() != Qt::LeftButton)
        return false;
    anchor = event->globalPos() - window->frameGeometry().topLeft();
    if (QWindow* handle = window->windowHandle())
        handle->startSystemMove();
    event->accept();
    return true;
}

/// Moves the window along and accepts the event; false while the left button is up.
inline bool continueDrag(const QPoint& anchor, QMouseEvent* event, QWidget* window)
{
    if (!(event->buttons() & Qt::LeftButton))
        return false;
    window->move(event->globalPos() - anchor);
    event->accept();
    return true;
}
