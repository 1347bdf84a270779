// An embedded historian: a folder with the system catalog, the catalog of functions and the
// catalogs that its users made. One object a connection; calls come one at a time.
#pragma once

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "provider/engines/engine.h"
#include "provider/historian/catalog_record.h"

namespace orvane::provider::historian {

class Historian {
 public:
  /// Opens the historian of that name under the root; the default server is made when it is not
  /// there. Fails with kServerNotFound, kNoRights, kNotADatabase or kBusy.
  Historian(const std::filesystem::path& root, const platform::Text& sServer,
            engines::Engine& engine, std::stop_token stop);

  /// Makes the folder and files of a historian, all of it or nothing. Fails with
  /// failure::kKeyExists when there is one already.
  static void Make(const std::filesystem::path& root, const platform::Text& sServer);

  const std::filesystem::path& Folder() const { return m_folder; }

  /// All catalogs, its own included, in the order of their case-folded names, ties by bytes. One
  /// statement.
  std::vector<CatalogRecord> Catalogs(std::stop_token stop);
  /// One catalog by its name, case does not count. One statement.
  std::optional<CatalogRecord> Find(const platform::Text& sName, std::stop_token stop);

  /// Makes a catalog with its first tables and gives what is known of it. The path is the folder
  /// for its file, absolute, or empty for the historian's own. Fails with kInvalidArgument for a
  /// bad name, path or size, kKeyExists, kNoRights or kStorage.
  CatalogRecord CreateCatalog(const platform::Text& sName, const platform::Text& sPath,
                              std::int64_t llKilobytes, std::stop_token stop);
  /// Drops a catalog. Its file goes too when it lies in the historian's folder; elsewhere it stays
  /// where it is. What fails or is stopped has changed nothing. Fails with kInvalidArgument for a
  /// catalog that is not there or is the historian's own, and with kBusy while another program uses
  /// it, wherever its file lies.
  void DropCatalog(const platform::Text& sName, std::stop_token stop);

 private:
  std::vector<CatalogRecord> ReadRecords(std::stop_token stop);
  void CheckNew(const CatalogRecord& record, std::stop_token stop);
  void Register(const CatalogRecord& record, const std::filesystem::path& stored,
                std::stop_token stop);

  std::filesystem::path m_folder;
  std::unique_ptr<engines::EngineSession> m_session;  ///< on the system catalog
};

/// As the engine reaches the catalog.
engines::Catalog EngineCatalog(const CatalogRecord& record, platform::Boolean bReadOnly);

}  // namespace orvane::provider::historian
