// Which catalog of which historian a subcommand works on.
// Used by every subcommand that reads or writes rows.
#pragma once

#include <filesystem>

#include "provider/engines/file_engine.h"
#include "provider/historian/catalog_record.h"
#include "provider/historian/historian.h"

namespace orvane::tools {

/// A server as the command line names it.
struct ServerPlace {
  std::filesystem::path root;
  platform::Text sServer;
  provider::historian::KnownHistorians known{};  ///< those that were there once
};

/// Opens the server's historian.
provider::historian::Historian OpenHistorian(const ServerPlace& place,
                                             provider::engines::FileEngine& engine);

/// The catalog of that name. Fails when there is none or it is the historian's own.
provider::historian::CatalogRecord FindCatalog(const ServerPlace& place,
                                               const platform::Text& sCatalog);
/// The same, but makes the catalog, with that description, when there is none.
provider::historian::CatalogRecord FindOrMakeCatalog(const ServerPlace& place,
                                                     const platform::Text& sCatalog,
                                                     const platform::Text& sDescription);

/// The table of that name, ASCII letters without regard to case. Fails when there is none.
provider::engines::TableSchema FindTable(const provider::historian::CatalogRecord& record,
                                         const platform::Text& sTable);

}  // namespace orvane::tools
