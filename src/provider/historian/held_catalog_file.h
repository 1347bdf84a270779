// The file of a catalog that is about to be dropped or let go of.
// Used by the historian for one call; in the provider only this, catalog_file and the engine reach
// for SQLite itself.
#pragma once

#include <filesystem>
#include <optional>
#include <stop_token>

#include "platform/types.h"
#include "provider/engines/sqlite/sqlite_handle.h"
#include "provider/historian/recorder_lock.h"

namespace orvane::provider::historian {

/// While this lives nobody else reads or writes the file, and no recorder begins. The file stays
/// as it is.
class HeldCatalogFile {
 public:
  /// An absent file is no failure, nor is one that this user may not write: it cannot be held.
  /// Fails with failure::kBusy while another program reads or writes it or records into it. A stop
  /// request ends the wait for others.
  HeldCatalogFile(const std::filesystem::path& file, const platform::Text& sCatalog,
                  const std::stop_token& stop);
  HeldCatalogFile(const HeldCatalogFile&) = delete;
  HeldCatalogFile& operator=(const HeldCatalogFile&) = delete;
  ~HeldCatalogFile() = default;

 private:
  std::optional<RecorderLock> m_recorder;
  engines::SqliteHandle m_database;  ///< has the file for itself
};

}  // namespace orvane::provider::historian
