// The seals of a document, which tell whether it is as a console wrote it, and the parts that have
// one each: so a change of one server changes no line of another one.
// Used by the writer and the reader of the format; pure functions.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/types.h"

namespace orvane::console {

/// What is told of a document that can be read whole.
enum class DocumentSeal : std::uint8_t {
  Whole,   ///< it is as it was written
  Broken,  ///< it was changed since: merged, edited, mailed
};

/// The seal of these bytes: BLAKE2b with 256 bits, in hexadecimal digits.
platform::Text SealOf(std::string_view sBytes);

/// The part that a property belongs to: its name up to the first "_" behind a digit, as items are
/// numbered; empty for a property of the section itself.
std::string_view PartOf(std::string_view sName);

}  // namespace orvane::console
