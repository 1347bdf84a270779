#include "provider/engines/written_place.h"

#include <algorithm>
#include <iterator>

namespace orvane::provider::engines {

std::size_t CharacterOf(std::string_view sText, std::size_t nByte) {
  return 1 +
         static_cast<std::size_t>(std::ranges::count_if(sText.substr(0, nByte), [](char character) {
           return (static_cast<unsigned char>(character) & 0xC0U) != 0x80U;
         }));
}

std::size_t WrittenPlace(const EngineStatement& statement, std::size_t nByte) {
  const auto& written = statement.written;
  const auto behind = std::ranges::upper_bound(written.places, nByte, {},
                                               &std::pair<std::size_t, std::size_t>::first);
  if (behind == written.places.begin()) return CharacterOf(statement.sSql, nByte);
  const auto [nBegin, nWritten] = *std::prev(behind);
  // What stands there instead of a piece is as long as it likes.
  const std::size_t nEnd = behind == written.places.end() ? written.sText.size() : behind->second;
  return CharacterOf(written.sText,
                     std::min(nWritten + (nByte - nBegin), std::max(nWritten, nEnd)));
}

}  // namespace orvane::provider::engines
