#pragma once

class QDialog;
class QString;
class QWidget;

/// Moves `dialog` so that its middle stands over the middle of the window that holds `parent`,
/// within the screen. Without a parent the middle of the dialog's screen is taken.
void centerOver(QWidget* dialog, const QWidget* parent);

/// Runs a dialog modally and deletes it. False when it was declined, and when it went together with
/// its window meanwhile: whoever uses the window afterwards checks that it is still there.
bool runAndDelete(QDialog* dialog);

/// Lets a screen reader say `text` for a panel that appears without being asked for or taking the
/// focus.
void announce(QWidget* panel, const QString& text);

/// Paints the white card with rounded corners (radius 4 px) and a fine border that frameless
/// dialogs and floating panels stand on. Call from the widget's paint event.
void paintCard(QWidget* widget);

/// Cuts a top-level window to the pixels that paintCard() touches, so that the corners look
/// right without a compositing window manager too. Call whenever the size changes.
void cutToCard(QWidget* window);
