#include "tools/orvane_historian/opened_catalog.h"

#include "platform/failure.h"
#include "provider/engines/sqlite/sqlite_engine.h"
#include "provider/historian/data_folder.h"
#include "provider/historian/historian.h"

namespace orvane::tools {

using platform::Failure;
using platform::Text;
using provider::historian::CatalogRecord;
using provider::historian::Historian;
namespace failure = platform::failure;

namespace {

std::optional<CatalogRecord> Find(Historian& historian, const Text& sCatalog) {
  auto record = historian.Find(sCatalog, {});
  if (record && record->bOwn) {
    throw Failure(failure::kInvalidArgument, "The catalog " + record->sName +
                                                 " belongs to the historian itself; name one of "
                                                 "your own.");
  }
  return record;
}

}  // namespace

Historian OpenHistorian(const ServerPlace& place, provider::engines::FileEngine& engine) {
  return {place.root,
          provider::historian::ServerFromDataSource(place.sServer),
          engine,
          {},
          place.known};
}

CatalogRecord FindCatalog(const ServerPlace& place, const Text& sCatalog) {
  provider::engines::SqliteEngine engine;
  Historian historian = OpenHistorian(place, engine);
  if (auto record = Find(historian, sCatalog)) return *std::move(record);
  throw Failure(failure::kInvalidArgument, "There is no catalog \"" + sCatalog +
                                               "\" on this server; create it first, for example "
                                               "in the console.");
}

CatalogRecord FindOrMakeCatalog(const ServerPlace& place, const Text& sCatalog,
                                const Text& sDescription) {
  provider::engines::SqliteEngine engine;
  Historian historian = OpenHistorian(place, engine);
  if (auto record = Find(historian, sCatalog)) return *std::move(record);
  try {
    return historian.CreateCatalog(sCatalog, {}, 0, {}, sDescription);
  } catch (const Failure& failed) {
    // Another program was faster.
    if (failed.Number() != failure::kKeyExists) throw;
    if (auto record = Find(historian, sCatalog)) return *std::move(record);
    throw;
  }
}

provider::engines::TableSchema FindTable(const CatalogRecord& record, const Text& sTable) {
  provider::engines::SqliteEngine engine;
  const auto catalog = provider::historian::EngineCatalog(record, false);
  auto tables = engine.Open(catalog, {})->Schema(catalog, {sTable, true}, {});
  if (tables.empty()) {
    throw Failure(failure::kInvalidArgument, "There is no table \"" + sTable +
                                                 "\" in the catalog " + record.sName +
                                                 "; name one that it has.");
  }
  return std::move(tables.front());
}

}  // namespace orvane::tools
