// A server's catalogs and tables as the translator asks for them, one statement long.
// Made by the session; one thread at a time.
#pragma once

#include <stop_token>
#include <vector>

#include "provider/dialect/translator.h"
#include "provider/engines/engine.h"
#include "provider/shown_names.h"

namespace orvane::provider {

class KnownSchema final : public dialect::SchemaSource {
 public:
  /// The session reads the tables; it and the names must outlive this.
  KnownSchema(std::vector<engines::Catalog> catalogs, engines::EngineSession& session,
              const ShownNames& names, std::stop_token stop)
      : m_catalogs(std::move(catalogs)),
        m_session(session),
        m_names(names),
        m_stop(std::move(stop)) {}

  std::optional<dialect::KnownCatalog> FindCatalog(const platform::Text& sName) override;
  std::optional<dialect::KnownTable> FindTable(const dialect::KnownCatalog& catalog,
                                               const platform::Text& sTable) override;
  /// The catalog that was found under that name of its own.
  const engines::Catalog& Catalog(const platform::Text& sName) const;

 private:
  std::vector<engines::Catalog> m_catalogs;
  engines::EngineSession& m_session;
  const ShownNames& m_names;
  std::stop_token m_stop;
};

}  // namespace orvane::provider
