// The names under which a connection shows catalogs and tables, and knows them, by its options.
// Used by a session; one thread at a time.
#pragma once

#include "provider/engines/engine.h"
#include "provider/schema_rowsets.h"
#include "provider/session_options.h"

namespace orvane::provider {

class ShownNames {
 public:
  /// The options may change; they must outlive this.
  explicit ShownNames(const SessionOptions& options) : m_options(options) {}

  ShownCatalog Catalog(const engines::Catalog& catalog) const;
  platform::Text Table(const platform::Text& sTable) const;
  /// The catalog that is meant by the name, null for none: the one that is shown under it, else the
  /// one of that name without its prefix, else with it. Of several whose names differ in their case
  /// alone it is the one that is written so, else the first.
  const engines::Catalog* Find(std::span<const engines::Catalog> catalogs,
                               const platform::Text& sName) const;
  /// The name without the prefix that the option "Identifier Prefixes" lets stand before it.
  platform::Text Plain(const platform::Text& sName) const;

 private:
  const SessionOptions& m_options;
};

}  // namespace orvane::provider
