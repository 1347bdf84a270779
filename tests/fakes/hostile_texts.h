// Names and values that would be more than that if anybody forgot to write them as such.
// For tests of whatever composes statements; one thread.
#pragma once

#include <array>
#include <random>

#include "platform/types.h"

namespace orvane::fakes {

class HostileTexts {
 public:
  explicit HostileTexts(std::uint64_t uSeed) : m_random(uSeed) {}

  /// Never empty, and no longer than every server keeps names.
  platform::Text Next() {
    static constexpr std::array kPieces = {"'",
                                           "\"",
                                           ";",
                                           "--",
                                           "/*",
                                           "*/",
                                           "\\",
                                           "$$",
                                           "$1",
                                           "?",
                                           " ",
                                           "\n",
                                           "x",
                                           "E'",
                                           "U&",
                                           "(",
                                           ")",
                                           ",",
                                           "%",
                                           ":a",
                                           "[",
                                           "]",
                                           "`",
                                           "''",
                                           "\"\"",
                                           "\\'",
                                           "#",
                                           "@",
                                           "{}",
                                           "\xC3\xA9",
                                           "NULL",
                                           "a; DROP TABLE P..Kept; --",
                                           "'; DELETE FROM P..Kept; --",
                                           "\"; DROP TABLE Kept; --",
                                           "\\'; DROP TABLE Kept; --"};
    platform::Text sText;
    const auto nPieces = std::uniform_int_distribution<int>(1, 6)(m_random);
    for (int n = 0; n < nPieces; ++n) {
      const platform::Text sPiece =
          kPieces[std::uniform_int_distribution<std::size_t>(0, kPieces.size() - 1)(m_random)];
      if (sText.size() + sPiece.size() <= 50) sText += sPiece;
    }
    return sText.empty() ? "'" : sText;
  }

 private:
  std::mt19937_64 m_random;
};

}  // namespace orvane::fakes
