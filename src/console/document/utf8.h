// Tells UTF-8 text from other bytes.
// Used where a document is written or read; any thread.
#pragma once

#include <string_view>

namespace orvane::console {

/// True when the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing beyond
/// U+10FFFF. The empty text is.
bool IsUtf8(std::string_view sBytes);

}  // namespace orvane::console
