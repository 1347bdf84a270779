// Reads the version resource of an executable or library: the fixed file-information record in
// the section ".orvane.version" of a 64-bit little-endian ELF file.
// The file comes from outside and may be anything: whatever is wrong with it, there is no version.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>

#include "platform/file_version.h"

namespace orvane::component {

/// Fills the whole buffer from the file at the offset; false when there is not that much.
using ReadAt = std::function<bool(std::uint64_t nOffset, std::span<std::byte> buffer)>;

std::optional<platform::FixedFileInfo> ReadVersionSection(const ReadAt& readAt);
std::optional<platform::FixedFileInfo> ReadVersionSection(std::span<const std::byte> file);
/// Nothing as well when the file cannot be read.
std::optional<platform::FixedFileInfo> ReadVersionSection(const std::filesystem::path& path);

}  // namespace orvane::component
