// Text on a terminal that takes the place of what it showed before.
// Used by the command that watches; pure but for the size.
#pragma once

#include <optional>
#include <string_view>

#include "platform/types.h"

namespace orvane::tools {

struct ScreenSize {
  std::size_t nLines = 0;
  std::size_t nColumns = 0;
};

/// None where the file is no terminal.
std::optional<ScreenSize> SizeOfScreen(int nFile);
/// What clears the screen and shows as much of the text, which is UTF-8, as it has room for: its
/// first lines, and of each the first characters. Without a size all of the text.
platform::Text ScreenAnew(std::string_view sText, ScreenSize size);

}  // namespace orvane::tools
