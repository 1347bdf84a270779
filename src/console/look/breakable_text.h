// Text of others in a label that wraps: a word of any length, such as a path, must not hold a
// window open. Used by the waiting panel and by the page that stands in the place of a view.
#pragma once

#include <QString>

namespace orvane::console {

/// The text with places to break the line, not seen, in words of more characters than that.
QString Breakable(const QString& sText, int nLongWord);

}  // namespace orvane::console
