// The historian's catalogs and tables as the translator asks for them, one statement long.
// Made by the session; one thread at a time.
#pragma once

#include <stop_token>
#include <vector>

#include "provider/dialect/translator.h"
#include "provider/engines/engine.h"
#include "provider/historian/catalog_record.h"
#include "provider/shown_names.h"

namespace orvane::provider {

class KnownSchema final : public dialect::SchemaSource {
 public:
  /// The session reads the tables; it and the names must outlive this.
  KnownSchema(std::vector<historian::CatalogRecord> records, engines::EngineSession& session,
              const ShownNames& names, std::stop_token stop)
      : m_records(std::move(records)),
        m_session(session),
        m_names(names),
        m_stop(std::move(stop)) {}

  std::optional<dialect::KnownCatalog> FindCatalog(const platform::Text& sName) override;
  std::optional<dialect::KnownTable> FindTable(const dialect::KnownCatalog& catalog,
                                               const platform::Text& sTable) override;
  /// The catalog that was found under that name of its own.
  const historian::CatalogRecord& Record(const platform::Text& sName) const;

 private:
  std::vector<historian::CatalogRecord> m_records;
  engines::EngineSession& m_session;
  const ShownNames& m_names;
  std::stop_token m_stop;
};

}  // namespace orvane::provider
