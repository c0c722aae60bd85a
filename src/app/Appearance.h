#pragma once

class QApplication;
class QTranslator;

/// What every window of the program shares: colours, basic style, font and language. GUI thread.
namespace appearance {

/// Chooses the scaling. Call before the application object exists.
void prepare();

/// The palette's text colours and the steady text cursor.
void applyPalette(QApplication& app);

/// The rules that hold in every window.
void applyStyleSheet(QApplication& app);

/// The embedded font, when it can be loaded; otherwise the platform's font stays. The font
/// database works on the resource's own bytes, so that the font stands in memory once.
void applyFont(QApplication& app);

/// Installs the Chinese translations when the system language is Chinese: the program's, and, for
/// field menus and network errors, Qt's own, which lives as long as `translator`.
void applyLanguage(QApplication& app, QTranslator& translator);

} // namespace appearance
