// Tells UTF-8 text from other bytes, and takes it apart.
// Used wherever texts from outside are read, written or shown; pure functions, any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace orvane::platform {

/// The number of bytes of the first character, with its number in code; 0 when the bytes do not
/// begin with a well-formed one (an overlong form, a surrogate, something beyond U+10FFFF) and for
/// the empty text.
std::size_t FirstCharacter(std::string_view sBytes, char32_t& code) noexcept;

/// True when the bytes are well-formed characters and nothing else. The empty text is.
bool IsUtf8(std::string_view sBytes) noexcept;

}  // namespace orvane::platform
