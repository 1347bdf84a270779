#include "platform/one_line.h"

#include <algorithm>

#include "platform/utf8.h"

namespace orvane::platform {
namespace {

constexpr std::string_view kHex = "0123456789ABCDEF";

// Controls beyond ASCII, separators of lines and paragraphs, marks of direction, and the mark of
// byte order, which cannot be seen.
bool IsActing(char32_t code) {
  return (code >= 0x80 && code <= 0x9F) || (code >= 0x200E && code <= 0x200F) ||
         (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069) || code == 0xFEFF;
}

void AppendByte(Text& sLine, unsigned char cByte) {
  sLine.append("\\x").append(1, kHex[cByte >> 4U]).append(1, kHex[cByte & 0x0FU]);
}

void AppendCode(Text& sLine, char32_t code) {
  sLine += "\\u{";
  for (unsigned uShift = 24; uShift > 0;) {
    uShift -= 4;
    const char32_t rest = code >> uShift;
    // Four digits at least.
    if (rest != 0 || uShift < 16) sLine += kHex[rest & 0x0FU];
  }
  sLine += '}';
}

void AppendPlain(Text& sLine, char c) {
  switch (c) {
    case '\n':
      sLine += "\\n";
      break;
    case '\r':
      sLine += "\\r";
      break;
    case '\t':
      sLine += "\\t";
      break;
    case '\\':
      sLine += "\\\\";
      break;
    default:
      if (static_cast<unsigned char>(c) < 0x20 || c == 0x7F) {
        AppendByte(sLine, static_cast<unsigned char>(c));
      } else {
        sLine += c;
      }
  }
}

}  // namespace

Text OneLine(std::string_view sText, std::size_t nMost) {
  Text sLine;
  sLine.reserve(std::min(sText.size(), nMost));
  for (std::size_t nTaken = 0; !sText.empty();) {
    char32_t code = 0;
    const std::size_t nLength = std::max<std::size_t>(FirstCharacter(sText, code), 1);
    if (nTaken + nLength > nMost) return sLine += "...";
    const char cFirst = sText.front();
    if (static_cast<unsigned char>(cFirst) < 0x80) {
      AppendPlain(sLine, cFirst);
    } else if (nLength == 1) {
      AppendByte(sLine, static_cast<unsigned char>(cFirst));
    } else if (IsActing(code)) {
      AppendCode(sLine, code);
    } else {
      sLine += sText.substr(0, nLength);
    }
    sText.remove_prefix(nLength);
    nTaken += nLength;
  }
  return sLine;
}

}  // namespace orvane::platform
