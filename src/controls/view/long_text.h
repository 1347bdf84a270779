// A text for other programs that grows piece by piece, as UTF-8 as values are written in, and how
// long it has become. Used by copying; user-interface thread.
#pragma once

#include <cstddef>
#include <utility>

#include "platform/types.h"

namespace orvane::controls {

/// As much as other programs take without a stall, in characters of 16 bits, as they count them.
inline constexpr std::size_t kMostCopiedCharacters = 32'000'000;

class LongText {
 public:
  /// What comes next is appended here.
  platform::Text& Next() { return m_sText; }
  bool IsTooLong() {
    // None has more than three bytes, and bytes that are no text take one for each.
    if (m_sText.size() <= kMostCopiedCharacters) return false;
    if (m_sText.size() > kMostCopiedCharacters * 3) return true;
    for (; m_nCounted < m_sText.size(); ++m_nCounted) {
      const auto byte = static_cast<unsigned char>(m_sText[m_nCounted]);
      // What follows in a character begins with the bits 10; the longest ones are two.
      if ((byte & 0xC0U) != 0x80U) m_nCharacters += byte >= 0xF0U ? 2 : 1;
    }
    return m_nCharacters > kMostCopiedCharacters;
  }
  platform::Text Take() { return std::exchange(m_sText, {}); }

 private:
  platform::Text m_sText;
  std::size_t m_nCounted = 0;  ///< bytes of which the characters are counted
  std::size_t m_nCharacters = 0;
};

}  // namespace orvane::controls
