// The names under which a connection shows catalogs and tables, and knows them, by its options.
// Used by a session; one thread at a time.
#pragma once

#include "provider/historian/catalog_record.h"
#include "provider/schema_rowsets.h"
#include "provider/session_options.h"

namespace orvane::provider {

class ShownNames {
 public:
  /// The options may change; they must outlive this.
  explicit ShownNames(const SessionOptions& options) : m_options(options) {}

  ShownCatalog Catalog(const historian::CatalogRecord& record) const;
  platform::Text Table(const platform::Text& sTable) const;
  /// Whether the catalog is meant by the name.
  bool IsKnownAs(const historian::CatalogRecord& record, const platform::Text& sName) const;
  /// The name without the prefix that the option "Identifier Prefixes" lets stand before it.
  platform::Text Plain(const platform::Text& sName) const;

 private:
  const SessionOptions& m_options;
};

}  // namespace orvane::provider
