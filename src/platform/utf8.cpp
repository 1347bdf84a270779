#include "platform/utf8.h"

#include <algorithm>

namespace orvane::platform {

std::size_t FirstCharacter(std::string_view sBytes, char32_t& code) noexcept {
  if (sBytes.empty()) return 0;
  const auto at = [&](std::size_t n) { return static_cast<unsigned char>(sBytes[n]); };
  const unsigned uLead = at(0);
  code = uLead;
  if (uLead < 0x80) return 1;
  std::size_t nLength = 0;
  char32_t least = 0;
  if (uLead >= 0xC2 && uLead <= 0xDF) {
    nLength = 2, least = 0x80, code = uLead & 0x1FU;
  } else if (uLead >= 0xE0 && uLead <= 0xEF) {
    nLength = 3, least = 0x800, code = uLead & 0x0FU;
  } else if (uLead >= 0xF0 && uLead <= 0xF4) {
    nLength = 4, least = 0x10000, code = uLead & 0x07U;
  } else {
    return 0;
  }
  if (nLength > sBytes.size()) return 0;
  for (std::size_t n = 1; n < nLength; ++n) {
    if ((at(n) & 0xC0U) != 0x80U) return 0;
    code = (code << 6U) | (at(n) & 0x3FU);
  }
  const bool bSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < least || code > 0x10FFFF || bSurrogate ? 0 : nLength;
}

bool IsUtf8(std::string_view sBytes) noexcept {
  // Most texts are plain.
  const auto isPlain = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  const auto first = std::find_if_not(sBytes.begin(), sBytes.end(), isPlain);
  sBytes.remove_prefix(static_cast<std::size_t>(first - sBytes.begin()));
  while (!sBytes.empty()) {
    char32_t code = 0;
    const std::size_t nLength = FirstCharacter(sBytes, code);
    if (nLength == 0) return false;
    sBytes.remove_prefix(nLength);
  }
  return true;
}

}  // namespace orvane::platform
