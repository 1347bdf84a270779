// The files of catalogs: making them with their first tables, and taking them away.
// In the provider only this and the engine reach for SQLite itself.
#pragma once

#include <filesystem>
#include <memory>
#include <stop_token>
#include <string_view>
#include <vector>

#include "platform/types.h"

struct sqlite3;

namespace orvane::provider::historian {

/// Makes a database file ready for many readers beside one writer and runs the statements in it.
/// The file appears under its name only when it is complete. Fails with failure::kKeyExists when
/// there is a file already, with kNoRights or kStorage when it cannot be written.
void MakeCatalogFile(const std::filesystem::path& file, std::string_view sStatements);

/// The same, but the file takes the place of one that is there.
void ReplaceCatalogFile(const std::filesystem::path& file, std::string_view sStatements);

/// Removes a file that nobody has open and what belongs to it.
void RemoveCatalogFile(const std::filesystem::path& file);

/// True when the file is a database with tables and without damage, also when that cannot be told
/// because another program holds it.
bool IsSoundCatalogFile(const std::filesystem::path& file);

/// What is to become of a catalog's file when the catalog is dropped.
enum class DroppedFile { Goes, Stays };

/// The file of a catalog that is about to be dropped: nobody else can open it while this lives. It
/// stays as it was unless it is removed.
class HeldCatalogFile {
 public:
  /// An absent file is no failure, nor is one that this user may not write: it cannot be held.
  /// Fails with failure::kBusy when any other connection has it open, and with kNoRights when it
  /// is to go and could not be removed. A stop request ends the wait for others.
  HeldCatalogFile(std::filesystem::path file, DroppedFile fate, const platform::Text& sCatalog,
                  const std::stop_token& stop);
  HeldCatalogFile(const HeldCatalogFile&) = delete;
  HeldCatalogFile& operator=(const HeldCatalogFile&) = delete;
  ~HeldCatalogFile();

  /// Removes the file and what belongs to it; fails with failure::kStorage when it is still there.
  void Remove();

 private:
  struct CloseDatabase {
    void operator()(sqlite3* database) const;
  };

  std::filesystem::path m_file;
  std::unique_ptr<sqlite3, CloseDatabase> m_database;  ///< has the file for itself
};

/// Tables of a new catalog: Tags, Data and Data2.
extern const std::string_view kNewCatalog;
/// Tables of the system catalog: Historians.
extern const std::string_view kNewSystemCatalog;

}  // namespace orvane::provider::historian
