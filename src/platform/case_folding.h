// Unicode case folding for keys: the same for every locale of the process.
// Used wherever names are compared without regard to case. Pure function, any thread.
#pragma once

#include <string_view>

#include "platform/types.h"

namespace orvane::platform {

/// Folds UTF-8 text with the full, locale-independent mapping of the Unicode character
/// database (statuses C and F of its CaseFolding.txt). Two texts are the same key exactly when
/// their foldings are equal. Bytes that are not well-formed UTF-8 are kept as they are.
Text FoldCase(std::string_view sText);

}  // namespace orvane::platform
