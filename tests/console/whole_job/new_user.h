// What a user has who never used the program: empty folders, no desktop, a historian of his own.
#pragma once

#include <filesystem>

#include "platform/types.h"

namespace orvane::console {

/// Points the environment at empty folders beneath the folder, and at no desktop's services.
void BeginAsNewUser(const std::filesystem::path& folder);
/// Registers the components of this build tree beneath the folder and returns their registry.
std::filesystem::path RegisterComponents(const std::filesystem::path& folder);
/// Runs statements on a catalog's file beside the program, as whoever records samples does. Fails
/// with a sentence, std::runtime_error.
void WriteToCatalog(const platform::Text& sServer, const platform::Text& sCatalog,
                    const platform::Text& sSql);
/// The first value of the last row that statements on the file give; empty when there is none.
platform::Text ReadFromCatalog(const platform::Text& sServer, const platform::Text& sCatalog,
                               const platform::Text& sSql);

}  // namespace orvane::console
