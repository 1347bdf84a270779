// Registers a component's library in a registry folder, and takes it out again.
// The work of orvane-regsvr; the tests of the host use it too. One thread.
#pragma once

#include <filesystem>
#include <vector>

#include "platform/types.h"

namespace orvane::component {

/// Has the library describe its classes and writes them into the folder. Returns their progids.
/// Fails with kComponent when the library is no usable component, has no class, or the folder
/// cannot be written.
std::vector<platform::Text> RegisterLibrary(const std::filesystem::path& library,
                                            const std::filesystem::path& folder);

/// Has the library withdraw its classes from the folder. Returns their progids. A library that is
/// gone can withdraw nothing: the classes that the folder has of it are removed instead, and it
/// fails with kComponent when there are none.
std::vector<platform::Text> UnregisterLibrary(const std::filesystem::path& library,
                                              const std::filesystem::path& folder);

}  // namespace orvane::component
