#include "console/document/utf8.h"

#include <QStringDecoder>

namespace orvane::console {

bool IsUtf8(std::string_view sBytes) {
  const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
  if (std::all_of(sBytes.begin(), sBytes.end(), isAscii)) return true;
  return QUtf8StringView(sBytes.data(), static_cast<qsizetype>(sBytes.size())).isValidUtf8();
}

}  // namespace orvane::console
