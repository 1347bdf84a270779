#include "tools/orvane/screen.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>

#include "platform/utf8.h"

namespace orvane::tools {

using platform::Text;

namespace {

/// To the first place, and all behind it away.
constexpr const char* kScreenAnew = "\x1B[H\x1B[2J\x1B[3J";

/// The first characters of the line.
std::string_view Beginning(std::string_view sLine, std::size_t nCharacters) {
  std::size_t nBytes = 0;
  while (nCharacters-- > 0 && nBytes < sLine.size()) {
    char32_t code = 0;
    nBytes += std::max<std::size_t>(1, platform::FirstCharacter(sLine.substr(nBytes), code));
  }
  return sLine.substr(0, nBytes);
}

}  // namespace

std::optional<ScreenSize> SizeOfScreen(int nFile) {
  if (isatty(nFile) == 0) return std::nullopt;
  winsize size{};
  if (ioctl(nFile, TIOCGWINSZ, &size) != 0) return ScreenSize();
  return ScreenSize{size.ws_row, size.ws_col};
}

Text ScreenAnew(std::string_view sText, ScreenSize size) {
  Text sShown = kScreenAnew;
  if (size.nLines == 0 || size.nColumns == 0) return sShown.append(sText);
  // The cursor stands in the last line.
  for (std::size_t nLine = 1; nLine < size.nLines && !sText.empty(); ++nLine) {
    const std::size_t nEnd = std::min(sText.find('\n'), sText.size());
    sShown.append(Beginning(sText.substr(0, nEnd), size.nColumns)).append("\n");
    sText.remove_prefix(std::min(nEnd + 1, sText.size()));
  }
  return sShown;
}

}  // namespace orvane::tools
