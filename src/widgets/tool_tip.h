// Texts of others, such as names, paths and statements, as tool tips that show them as they are.
// User-interface thread.
#pragma once

#include <QString>

namespace orvane::widgets {

/// What a tool tip takes to show the text: words of any length are broken, so that no tip is wider
/// than the screen, and of a text too long for a tip it has the beginning and says where the rest
/// can be read. A text that looks like mark-up, or needs lines to be broken, becomes mark-up.
QString ToolTipOf(const QString& sText);

}  // namespace orvane::widgets
