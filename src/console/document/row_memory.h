// The setting that tells how much memory the rows of all recordsets may take together.
// Read once at the start, set by the window's menu; user-interface thread.
#pragma once

#include <cstddef>
#include <optional>

class QSettings;

namespace orvane::console {

/// Name of the setting, in megabytes.
inline constexpr const char* kRowMemorySetting = "rowMemoryMegabytes";

/// What the setting may be.
inline constexpr int kLeastRowMegabytes = 16;
inline constexpr int kMostRowMegabytes = 1 << 30;

/// In bytes; none where it is not set, or is no whole number of megabytes that it may be.
std::optional<std::size_t> RowMemory(const QSettings& settings);
/// In megabytes; none takes the setting away.
void RowMemory(QSettings& settings, std::optional<int> megabytes);

}  // namespace orvane::console
