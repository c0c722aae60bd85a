#pragma once

#include <QString>

class QLabel;
class QPushButton;
class QSize;
class QWidget;

/// The pieces that windows and dialogs are put together from. Each belongs to `parent` and carries
/// `name` as its object name; `role` is one of the looks of setRole(), "" for none. GUI thread.

/// Gives a widget its object name and returns it.
template <class Widget>
Widget* named(Widget* widget, const char* name)
{
    widget->setObjectName(QLatin1String(name));
    return widget;
}

/// A label that shows its text as it is, markup too.
QLabel* makeLabel(QWidget* parent, const char* name, const char* role,
                  const QString& text = QString());

/// A label that shows the picture `file` of the resource tree (see pictureIcon()) at this size.
QLabel* makePicture(QWidget* parent, const char* name, const QString& file, const QSize& size);

QPushButton* makeButton(QWidget* parent, const char* name, const char* role, const QString& text);

/// The same for a dialog: the pointer over it is a hand.
QPushButton* makeDialogButton(QWidget* parent, const char* name, const char* role,
                              const QString& text);
