#pragma once

#include <QIcon>
#include <QString>

class QWidget;

/// The style sheet of a window family ("login", "main" or "dialogs"): the rules that all windows
/// share followed by the family's own. Read from the resource tree once for each family; empty
/// for an unknown one. GUI thread.
QString styleSheetFor(const char* window);

/// Gives a widget one of the looks that the style sheets know, as the dynamic property "role":
///  - push buttons: "primary", "secondary", "link";
///  - labels: "text", "title", "heading", "secondary", "hint", "value", "accent",
///    "cell", "activeCell";
///  - line edits: "field"; frames: "card", "line"; text boxes: "panel".
/// Takes effect at once, also on a widget that is already shown.
void setRole(QWidget* widget, const char* role);

/// Gives a widget the tool tip `text`, which may come from a service: markup in it is shown as it
/// was written, and a screen reader hears the same text as description.
void setPlainToolTip(QWidget* widget, const QString& text);

/// A picture of the resource tree by its name below ":/Ostrana/res/", for example
/// "right1x.png" or "btnleft.ico", with its double-size variant or all its sizes; null when there
/// is none of that name. Reads PNG and ICO and nothing else, which keeps Qt from loading every
/// image plugin it has: style sheet pictures (url(...)) do that, so the first window has none.
QIcon pictureIcon(const QString& name);

/// An icon in two states: `base`.png, and `base`_on.png while checked, hovered or focused.
QIcon stateIcon(const QString& base);
