// Whether a library's file is whole: the loader maps it and reads where its headers say, and is
// killed where the file has nothing. Used before a library is loaded. Any thread.
#pragma once

#include <filesystem>

namespace orvane::component {

/// Fails with kComponent when the file is no regular one, or an ELF file that is cut off or whose
/// headers point outside of it. A file of another kind passes: the loader says what it thinks.
void RequireWholeLibrary(const std::filesystem::path& path);

}  // namespace orvane::component
