// The text of a tool tip: as much of a long value as a screen can show, and how to see the rest.
// Used by the cells and the column names; user-interface thread.
#pragma once

#include <QString>

namespace orvane::controls {

/// No tip shows more of a text.
inline constexpr qsizetype kMostTipCharacters = 1500;

/// The text as it is to be handed to a tool tip. Of a text that is too long the beginning, with a
/// line that says so and ends in sHow, which tells where to find it whole. Words of any length are
/// broken, so that no tip is wider than the screen. Where only the beginning of a text is at hand,
/// nWhole says how many characters the text has.
QString TipText(const QString& sText, const QString& sHow, qsizetype nWhole = 0);

/// The beginning of a text, for a place among others in a line.
QString Brief(const QString& sText);

}  // namespace orvane::controls
