#include "platform/case_folding.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace orvane::platform {
namespace {

struct Folding {
  char32_t from;
  std::array<char32_t, 3> to;  // ended by 0
};

constexpr Folding kFoldings[] = {
#include "platform/case_folding_table.inc"
};

struct Decoded {
  char32_t point = 0;
  std::size_t nBytes = 0;  // 0: not well-formed
};

bool IsContinuation(unsigned char byte) {
  return (byte & 0xC0U) == 0x80U;
}

Decoded Decode(std::string_view sText) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(sText[i]); };
  const unsigned char lead = byte(0);
  std::size_t nBytes = 0;
  char32_t point = 0;
  char32_t smallest = 0;
  if (lead >= 0xC2 && lead <= 0xDF) {
    nBytes = 2, point = lead & 0x1FU, smallest = 0x80;
  } else if (lead >= 0xE0 && lead <= 0xEF) {
    nBytes = 3, point = lead & 0x0FU, smallest = 0x800;
  } else if (lead >= 0xF0 && lead <= 0xF4) {
    nBytes = 4, point = lead & 0x07U, smallest = 0x10000;
  } else {
    return {};
  }
  if (sText.size() < nBytes) return {};
  for (std::size_t i = 1; i < nBytes; ++i) {
    if (!IsContinuation(byte(i))) return {};
    point = (point << 6U) | (byte(i) & 0x3FU);
  }
  if (point < smallest || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) return {};
  return {point, nBytes};
}

void Append(Text& sResult, char32_t point) {
  const auto put = [&](char32_t bits) { sResult += static_cast<char>(bits); };
  if (point < 0x80) {
    put(point);
  } else if (point < 0x800) {
    put(0xC0U | (point >> 6U));
    put(0x80U | (point & 0x3FU));
  } else if (point < 0x10000) {
    put(0xE0U | (point >> 12U));
    put(0x80U | ((point >> 6U) & 0x3FU));
    put(0x80U | (point & 0x3FU));
  } else {
    put(0xF0U | (point >> 18U));
    put(0x80U | ((point >> 12U) & 0x3FU));
    put(0x80U | ((point >> 6U) & 0x3FU));
    put(0x80U | (point & 0x3FU));
  }
}

const Folding* FindFolding(char32_t point) {
  const auto* const found = std::lower_bound(
      std::begin(kFoldings), std::end(kFoldings), point,
      [](const Folding& folding, char32_t wanted) { return folding.from < wanted; });
  return found != std::end(kFoldings) && found->from == point ? found : nullptr;
}

}  // namespace

Text FoldCase(std::string_view sText) {
  Text sResult;
  sResult.reserve(sText.size());
  while (!sText.empty()) {
    const auto lead = static_cast<unsigned char>(sText.front());
    if (lead < 0x80) {
      sResult += (lead >= 'A' && lead <= 'Z') ? static_cast<char>(lead + ('a' - 'A'))
                                              : static_cast<char>(lead);
      sText.remove_prefix(1);
      continue;
    }
    const Decoded decoded = Decode(sText);
    if (decoded.nBytes == 0) {
      sResult += sText.front();
      sText.remove_prefix(1);
      continue;
    }
    if (const Folding* const folding = FindFolding(decoded.point)) {
      for (const char32_t point : folding->to) {
        if (point != 0) Append(sResult, point);
      }
    } else {
      sResult.append(sText.substr(0, decoded.nBytes));
    }
    sText.remove_prefix(decoded.nBytes);
  }
  return sResult;
}

}  // namespace orvane::platform
