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
///  - labels: "text", "title", "heading", "secondary", "hint", "value", "accent";
///  - line edits: "field"; frames: "card", "line"; text boxes: "panel".
/// Takes effect at once, also on a widget that is already shown.
void setRole(QWidget* widget, const char* role);

/// A picture of the resource tree by its name below ":/Ostrana/res/", for example
/// "right1x.png"; its double-size variant is used on dense screens.
QIcon pictureIcon(const QString& name);

/// An icon in two states: `base`.png, and `base`_on.png while checked, hovered or selected.
QIcon stateIcon(const QString& base);
