// Answers a connection's requests for schema rowsets from what its engine tells.
// The columns of a catalog's tables are read together with the list of its tables: whoever lists
// tables asks for the columns of each next. Used by a session; one thread at a time.
#pragma once

#include <memory>
#include <span>
#include <stop_token>

#include "provider/engines/engine.h"
#include "provider/session_place.h"
#include "provider/shown_names.h"

namespace orvane::provider {

/// What one request is answered from.
struct SchemaReach {
  engines::EngineSession& session;
  std::stop_token stop;
};

class SchemaReader {
 public:
  /// The place, the options and the names must outlive this.
  SchemaReader(const SessionPlace& place, const SessionOptions& options, const ShownNames& names);
  ~SchemaReader();

  /// The rowset; a null restriction, or one of an empty text, is unset. Fails with
  /// failure::kNotSupported for a rowset that there is not.
  platform::RecordsetPtr Open(platform::SchemaNumber schema,
                              std::span<const platform::Value> vtRestrictions,
                              const SchemaReach& reach);
  /// Drops what was read ahead: something may have changed.
  void Forget();

 private:
  // Restrictions by their places.
  class Restrictions;
  struct Listing;

  // The listing when it answers for that catalog and is not too old, otherwise null.
  Listing* ListingOf(const platform::Text& sCatalog);
  std::vector<engines::Catalog> Catalogs(const platform::Value& vtCatalog,
                                         const SchemaReach& reach) const;
  std::vector<engines::TableSchema> Tables(const engines::Catalog& catalog,
                                           const platform::Value& vtTable, const SchemaReach& reach,
                                           platform::Boolean bIndexes = false) const;

  platform::RecordsetPtr OpenCatalogs(const Restrictions& restrictions, const SchemaReach& reach);
  platform::RecordsetPtr OpenTables(const Restrictions& restrictions, const SchemaReach& reach);
  platform::RecordsetPtr OpenColumns(const Restrictions& restrictions, const SchemaReach& reach);
  platform::RecordsetPtr OpenPrimaryKeys(const Restrictions& restrictions,
                                         const SchemaReach& reach);
  platform::RecordsetPtr OpenIndexes(const Restrictions& restrictions, const SchemaReach& reach);

  const SessionPlace& m_place;
  const SessionOptions& m_options;
  const ShownNames& m_names;
  std::unique_ptr<Listing> m_listing;
};

}  // namespace orvane::provider
