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

bool ShownNames::IsKnownAs(const engines::Catalog& catalog, const Text& sName) const {
  if (engines::IsSameCatalog(catalog.sName, sName)) return true;
  const Text sPlain = Plain(sName);
  if (engines::IsSameCatalog(catalog.sName, sPlain)) return true;
  return m_options.HistoriansByGuid() && !catalog.sIdentity.empty() &&
         engines::IsSameCatalog(catalog.sIdentity, sPlain);
}

const engines::Catalog* ShownNames::Find(std::span<const engines::Catalog> catalogs,
                                         const Text& sName) const {
  const Text sPlain = Plain(sName);
  auto found = std::ranges::find_if(catalogs, [&](const engines::Catalog& catalog) {
    return catalog.sName == sName || catalog.sName == sPlain;
  });
  if (found == catalogs.end()) {
    found = std::ranges::find_if(catalogs,
                                 [&](const auto& catalog) { return IsKnownAs(catalog, sName); });
  }
  return found == catalogs.end() ? nullptr : &*found;
}

Text ShownNames::Plain(const Text& sName) const {
  return m_options.IdentifierPrefixes() ? dialect::WithoutPrefix(sName) : sName;
}

}  // namespace orvane::provider
