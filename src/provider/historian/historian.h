// An embedded historian: a folder with the system catalog, the catalog of functions and the
// catalogs that its users made. One object a connection; calls come one at a time.
#pragma once

#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

#include "provider/engines/file_engine.h"
#include "provider/historian/catalog_record.h"
#include "provider/historian/known_historians.h"

namespace orvane::provider::historian {

class Historian {
 public:
  /// The folder in it for the files of catalogs that have no path of their own.
  static constexpr const char* kCatalogsFolder = "catalogs";

  /// Opens the historian of that name under the root, and finishes what programs that broke off
  /// left there. The default server is made when it was never there before. Fails with
  /// kServerNotFound, kNoRights, kNotADatabase or kBusy.
  Historian(const std::filesystem::path& root, const platform::Text& sServer,
            engines::FileEngine& engine, std::stop_token stop, const KnownHistorians& known = {});

  /// Makes the folder and files of a historian, all of it or nothing, also where one was before.
  /// Fails with failure::kKeyExists when there is one already. What is made is known from then on.
  static void Make(const std::filesystem::path& root, const platform::Text& sServer,
                   const KnownHistorians& known = {});

  const std::filesystem::path& Folder() const { return m_folder; }

  /// All catalogs, its own included, in the order of their case-folded names, ties by bytes. One
  /// statement.
  std::vector<CatalogRecord> Catalogs(std::stop_token stop);
  /// One catalog by its name, case does not count. One statement.
  std::optional<CatalogRecord> Find(const platform::Text& sName, std::stop_token stop);

  /// Makes a catalog with its first tables and gives what is known of it. The path is the folder
  /// for its file, absolute, or empty for the historian's own. Fails with kInvalidArgument for a
  /// bad name, path or size, kKeyExists, kNoRights or kStorage. The description is listed with it.
  CatalogRecord CreateCatalog(const platform::Text& sName, const platform::Text& sPath,
                              std::int64_t llKilobytes, std::stop_token stop,
                              const platform::Text& sDescription = {});
  /// Drops a catalog. Its file goes too when it lies in the historian's folder; elsewhere it stays
  /// where it is. What fails or is stopped has changed nothing. Fails with kInvalidArgument for a
  /// catalog that is not there or is the historian's own, and with kBusy while another program
  /// works on it, wherever its file lies.
  void DropCatalog(const platform::Text& sName, std::stop_token stop);

  /// Takes in a file that was a catalog before, here or in another historian. Fails with
  /// kInvalidArgument for a bad name or a file that is no catalog, with kKeyExists for a name or a
  /// file that the historian has already, and with kServerNotFound or kNoRights.
  CatalogRecord AttachCatalog(const platform::Text& sName, const std::filesystem::path& file,
                              std::stop_token stop);
  /// Lets go of a catalog, whose file stays wherever it lies; otherwise as DropCatalog.
  CatalogRecord DetachCatalog(const platform::Text& sName, std::stop_token stop);

 private:
  std::vector<CatalogRecord> ReadRecords(std::stop_token stop);
  void CheckSystemCatalog(const platform::Text& sServer, std::stop_token stop);
  void PutRight(std::stop_token stop);
  void FinishChanges();
  void FinishChangesNow() noexcept;
  void CheckNew(const CatalogRecord& record, std::stop_token stop);
  void Register(const CatalogRecord& record, std::stop_token stop);
  /// The words for what is done with a catalog that is forgotten.
  struct Forgetting {
    const char* sVerb;
    const char* sVerbed;
    const char* sAdvice;  ///< where there is no such catalog
  };
  CatalogRecord Forget(const platform::Text& sName, const Forgetting& how, std::stop_token stop);

  std::filesystem::path m_folder;
  std::unique_ptr<engines::FileSession> m_session;  ///< on the system catalog
};

/// As the engine reaches the catalog.
engines::Catalog EngineCatalog(const CatalogRecord& record, platform::Boolean bReadOnly);

/// Fails with kInvalidArgument for a path that does not begin with "/": whoever sends it stands in
/// another folder.
void RequireComplete(const platform::Text& sPath);

}  // namespace orvane::provider::historian
