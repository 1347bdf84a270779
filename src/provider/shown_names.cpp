#include "provider/shown_names.h"

#include "provider/dialect/translator.h"

namespace orvane::provider {

using historian::CatalogRecord;
using platform::Text;

ShownCatalog ShownNames::Catalog(const CatalogRecord& record) const {
  // The historian's own catalogs have no identity and keep their names, as do those whose record
  // another program has left without one: a catalog is never listed under nothing.
  if (m_options.HistoriansByGuid() && !record.sIdentity.empty()) {
    return {record.sIdentity, record.sName, false};
  }
  return {Table(record.sName), record.sDescription, record.bOwn};
}

Text ShownNames::Table(const Text& sTable) const {
  return m_options.IdentifierPrefixes() ? Text(dialect::kIdentifierPrefix) + sTable : sTable;
}

bool ShownNames::IsKnownAs(const CatalogRecord& record, const Text& sName) const {
  if (historian::IsSameCatalog(record.sName, sName)) return true;
  const Text sPlain = Plain(sName);
  if (historian::IsSameCatalog(record.sName, sPlain)) return true;
  return m_options.HistoriansByGuid() && !record.sIdentity.empty() &&
         historian::IsSameCatalog(record.sIdentity, sPlain);
}

Text ShownNames::Plain(const Text& sName) const {
  return m_options.IdentifierPrefixes() ? dialect::WithoutPrefix(sName) : sName;
}

}  // namespace orvane::provider
