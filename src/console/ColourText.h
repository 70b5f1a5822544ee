#pragma once
// The game's colour codes: a caret and a character set the colour of the text behind it
// ("^1" red, "^2" green, ... "^7" white). Rendered as rich text or stripped.
#include <QString>

namespace steward {

/// The text as HTML: each coloured run in a span with its colour, everything escaped.
/// "^^" and a caret at the end stay as they are; "^7" (white) and the text before the
/// first code take the widget's own colour, so that they stay readable on a light
/// background. Line breaks become <br>.
QString colourCodesToHtml(const QString& text);
/// The text without its colour codes.
QString stripColourCodes(const QString& text);
/// The colour, as #rrggbb, of the code character behind a caret; empty for white.
QString colourOfCode(QChar code);

} // namespace steward
