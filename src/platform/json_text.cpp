#include "platform/json_text.h"

#include <algorithm>

namespace orvane::platform {
namespace {

void AppendEscape(Text& sTo, char c) {
  constexpr std::string_view kLetters = "\"\"\\\\\bb\ff\nn\rr\tt";
  constexpr std::string_view kDigits = "0123456789abcdef";
  sTo += '\\';
  for (std::size_t i = 0; i < kLetters.size(); i += 2) {
    if (kLetters[i] != c) continue;
    sTo += kLetters[i + 1];
    return;
  }
  const auto uCode = static_cast<unsigned char>(c);
  sTo.append("u00").append(1, kDigits[uCode >> 4U]).append(1, kDigits[uCode & 0x0FU]);
}

}  // namespace

void AppendJsonString(Text& sTo, std::string_view sText) {
  const auto isPlain = [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 && c != '"' && c != '\\';
  };
  sTo += '"';
  // Most texts are plain, and are copied in runs.
  for (auto position = sText.begin();;) {
    const auto runEnd = std::find_if_not(position, sText.end(), isPlain);
    sTo.append(position, runEnd);
    if (runEnd == sText.end()) break;
    AppendEscape(sTo, *runEnd);
    position = runEnd + 1;
  }
  sTo += '"';
}

}  // namespace orvane::platform
