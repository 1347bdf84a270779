// The files of catalogs: making them with their first tables, and taking them away.
// The only place besides the engine that reaches for SQLite itself.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace orvane::provider::historian {

/// Makes a database file ready for many readers beside one writer and runs the statements in it.
/// The file appears under its name only when it is complete. Fails with failure::kKeyExists when
/// there is a file already, with kNoRights or kStorage when it cannot be written.
void MakeCatalogFile(const std::filesystem::path& file, std::string_view sStatements);

/// Removes the file and what belongs to it; an absent one is no failure. Fails with
/// failure::kBusy, having removed nothing, when any other connection has it open.
void RemoveCatalogFile(const std::filesystem::path& file, const platform::Text& sCatalog);

/// Tables of a new catalog: Tags, Data and Data2.
extern const std::string_view kNewCatalog;
/// Tables of the system catalog: Historians.
extern const std::string_view kNewSystemCatalog;

}  // namespace orvane::provider::historian
