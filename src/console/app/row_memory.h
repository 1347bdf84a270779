// The setting that tells how much memory the rows of all recordsets may take together.
// Read once at the start; user-interface thread.
#pragma once

#include <cstddef>
#include <optional>

class QSettings;

namespace orvane::console {

/// Name of the setting, in megabytes.
inline constexpr const char* kRowMemorySetting = "rowMemoryMegabytes";

/// In bytes; none where it is not set, or is no whole number of at least 16 megabytes.
std::optional<std::size_t> RowMemory(const QSettings& settings);

}  // namespace orvane::console
