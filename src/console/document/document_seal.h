// The seals of a document, which tell whether it is as a console wrote it, and the parts that have
// one each: so a change of one item changes no line of another one.
// Used by the writer and the reader of the format; no thread of their own.
#pragma once

#include <QCryptographicHash>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/types.h"

namespace orvane::console {

/// What is told of a document that can be read whole.
enum class DocumentSeal : std::uint8_t {
  Whole,   ///< it is as it was written
  Broken,  ///< it was changed since: merged, edited, mailed
};

/// Forms one seal after the other: BLAKE2b with 256 bits, in hexadecimal digits.
class SealMaker {
 public:
  void Add(std::string_view sBytes);
  /// The seal of all that was added since the last one.
  platform::Text Take();
  void Clear() { m_hash.reset(); }

 private:
  QCryptographicHash m_hash{QCryptographicHash::Blake2b_256};
};

/// The seal of these bytes.
platform::Text SealOf(std::string_view sBytes);

/// Bytes of a part's name: every property of a part has them in its own name.
constexpr std::size_t kLongestPart = 256;

/// The part that a property belongs to: its name up to the last "_", as the names of items and of
/// lists of them end; empty for a property of the section itself. Nothing is deeper than 16 parts,
/// and no part has more than kLongestPart bytes.
std::string_view PartOf(std::string_view sName);
/// The part above, of which there may be none.
std::string_view PartAbove(std::string_view sPart);
/// How the end of a part names it: what its name adds to that of the part above.
std::string_view EndNameOf(std::string_view sPart);

}  // namespace orvane::console
