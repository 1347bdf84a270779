// Where something that an engine refuses stands in the statement as its user wrote it.
// Used by engines for their sentences; pure functions, on any thread.
#pragma once

#include <cstddef>
#include <string_view>

#include "provider/engines/engine.h"

namespace orvane::provider::engines {

/// The number, from 1, of the character that begins at this byte of a text in UTF-8.
std::size_t CharacterOf(std::string_view sText, std::size_t nByte);
/// The number of the character in the statement as it was written for a byte of the engine's text
/// of it; of what stands there instead of a piece, one in that piece. Where nobody wrote it
/// otherwise, the number in the engine's text.
std::size_t WrittenPlace(const EngineStatement& statement, std::size_t nByte);

}  // namespace orvane::provider::engines
