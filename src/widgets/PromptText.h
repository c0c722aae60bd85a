#pragma once

#include <QString>

/// The widest text, in pixels of the label's font, that a prompt shows on one line.
constexpr int kPromptLineWidth = 460;

/// The text of a prompt in the lines it is shown in. A text wider than kPromptLineWidth is broken
/// once: in a Chinese interface at its middle character, otherwise after the first space, "." or
/// "," from its middle on; without one of these it stays whole. No character is lost.
/// `width` is the measured width of `text`.
QString breakPromptText(const QString& text, int width, bool chinese);

/// The first `longest` units of a text that is longer, with an ellipsis for the rest; a character
/// is not cut in two. Servers may send texts of any length; what a glance can take in is enough.
QString shortenedText(const QString& text, int longest);

/// A name, which has no spaces, so that a label may break it after any character.
QString breakable(const QString& name);
