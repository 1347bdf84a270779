#include "provider/shown_names.h"

#include <algorithm>

#include "provider/dialect/translator.h"
#include "provider/engines/same_catalog.h"

namespace orvane::provider {

using platform::Text;

ShownCatalog ShownNames::Catalog(const engines::Catalog& catalog) const {
  // The historian's own catalogs have no identity and keep their names, as do those whose record
  // another program has left without one: a catalog is never listed under nothing.
  if (m_options.HistoriansByGuid() && !catalog.sIdentity.empty()) {
    return {catalog.sIdentity, catalog.sName, false};
  }
  return {Table(catalog.sName), catalog.sDescription, catalog.bSystem};
}

Text ShownNames::Table(const Text& sTable) const {
  return m_options.IdentifierPrefixes() ? Text(dialect::kIdentifierPrefix) + sTable : sTable;
}

const engines::Catalog* ShownNames::Find(std::span<const engines::Catalog> catalogs,
                                         const Text& sName) const {
  const auto named = [&](const Text& sWanted, auto nameOf) {
    auto found = std::ranges::find(catalogs, sWanted, nameOf);
    if (found == catalogs.end()) {
      found = std::ranges::find_if(catalogs, [&](const engines::Catalog& catalog) {
        return engines::IsSameCatalog(nameOf(catalog), sWanted);
      });
    }
    return found == catalogs.end() ? nullptr : &*found;
  };
  const auto shown = [this](const engines::Catalog& catalog) { return Catalog(catalog).sName; };
  const auto own = [](const engines::Catalog& catalog) { return catalog.sName; };
  // What is listed as Orv_X is X, also beside one that is really called Orv_X.
  if (const auto* const catalog = named(sName, shown)) return catalog;
  if (const auto* const catalog = named(Plain(sName), own)) return catalog;
  return named(sName, own);
}

Text ShownNames::Plain(const Text& sName) const {
  return m_options.IdentifierPrefixes() ? dialect::WithoutPrefix(sName) : sName;
}

}  // namespace orvane::provider
