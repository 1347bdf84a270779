// A text from outside as it may stand in a line of a log or in a sentence: it stays on that line
// and does nothing to whoever reads it. Used by the logs and where a sentence quotes what a file
// holds; pure function, any thread.
#pragma once

#include <limits>
#include <string_view>

#include "platform/types.h"

namespace orvane::platform {

/// The text with every line break and control character escaped, and so the marks that turn the
/// direction of writing and bytes that are no UTF-8: \n, \r, \t, \\, else \x1B for a byte and
/// \u{2028} for a character. Of a longer text the first nMost bytes and "..." are given.
Text OneLine(std::string_view sText, std::size_t nMost = std::numeric_limits<std::size_t>::max());

}  // namespace orvane::platform
