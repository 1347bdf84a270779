// The files of catalogs: making them with their first tables, and telling whether they are sound.
// A file is its maker's alone until he shares it, and keeps its journal only while it is written:
// whoever reads it leaves nothing beside it.
// In the provider only this, held_catalog_file and the engine reach for SQLite itself.
#pragma once

#include <filesystem>
#include <string_view>

namespace orvane::provider::historian {

/// Makes a database file and runs the statements in it. The file appears under its name only when
/// it is complete. Fails with failure::kKeyExists when there is a file already, with kNoRights or
/// kStorage when it cannot be written.
void MakeCatalogFile(const std::filesystem::path& file, std::string_view sStatements);

/// The same, but the file takes the place of one that may be there, and is open to whom the file
/// like is open. Fails with kNoRights, and nothing changed, when that cannot be given.
void ReplaceCatalogFile(const std::filesystem::path& file, std::string_view sStatements,
                        const std::filesystem::path& like);

/// A name beside the file's own that nobody else uses, for a file that is not yet, or no longer,
/// to be found under its own.
std::filesystem::path HiddenName(const std::filesystem::path& file);
/// True for a name that HiddenName gives, or one of the files that belong to such a one.
bool IsHiddenName(std::string_view sFileName);

/// Makes the database under a name of its own.
void MakeHidden(const std::filesystem::path& file, const std::filesystem::path& hidden,
                std::string_view sStatements);
/// Gives the complete hidden file its name as well, or, where files have one name only, its name in
/// place of the hidden one. Fails as MakeCatalogFile does.
void NameHidden(const std::filesystem::path& hidden, const std::filesystem::path& file);
/// True for a file that MakeHidden made with those statements, that holds no rows yet, and that has
/// lost that hidden name to NameHidden.
bool WasHidden(const std::filesystem::path& file, const std::filesystem::path& hidden,
               std::string_view sStatements);

/// True when the file's folder is that folder or one below it, wherever links on its path lead.
bool ReallyLiesIn(const std::filesystem::path& file, const std::filesystem::path& folder);

/// Moves a file and what belongs to it; one that is gone meanwhile is no failure. What is moved
/// away cannot be opened without what belongs to it at any moment.
void HideFiles(const std::filesystem::path& file, const std::filesystem::path& hidden);
void UnhideFiles(const std::filesystem::path& hidden, const std::filesystem::path& file);

/// Removes a file that nobody has open and what belongs to it.
void RemoveCatalogFile(const std::filesystem::path& file);

/// True when the file is a database with tables and without damage, also when that cannot be told
/// because another program holds it.
bool IsSoundCatalogFile(const std::filesystem::path& file);

/// Fails for a file, or one to be made in a folder, that the system refused to write.
[[noreturn]] void FailToWriteCatalogFile(const std::filesystem::path& file, int nSystemError,
                                         int nNativeError);

}  // namespace orvane::provider::historian
