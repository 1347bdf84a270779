// One open connection to an embedded historian: statements through the dialect to the engine,
// schema rowsets, and the extended options.
// Driven by the connection layer; calls come one at a time, from changing threads.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>

#include "ado/provider.h"
#include "provider/dialect/catalog_statement.h"
#include "provider/dialect/translator.h"
#include "provider/engines/engine.h"
#include "provider/historian/historian.h"
#include "provider/schema_rowsets.h"
#include "provider/session_options.h"
#include "provider/statement_log.h"

namespace orvane::provider {

/// What a session stands on.
struct SessionPlace {
  std::filesystem::path root;  ///< folder of all historians
  std::shared_ptr<engines::Engine> engine;
  std::function<platform::Timestamp()> clock;  ///< what "*" means
};

class HistorianSession final : public ado::Session {
 public:
  /// Opens the historian that the settings name as "Data Source".
  HistorianSession(SessionPlace place, const ado::ConnectionSettings& settings,
                   std::stop_token stop);
  ~HistorianSession() override;

  ado::StatementResult Execute(const ado::Statement& statement, std::stop_token stop) override;
  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const platform::Value> vtRestrictions,
                                    std::stop_token stop) override;
  platform::Value PropertyValue(const platform::Text& sName) const override;
  void PropertyValue(const platform::Text& sName, const platform::Value& vtValue) override;
  void Close() override;

 private:
  class Schema;
  // Restrictions by their places; an unset one, also an empty text, is null.
  class Restrictions;
  // The columns of a catalog's tables, read together with the list of its tables. Whoever lists
  // tables asks for the columns of each next; any other call, or a pause, drops what is left.
  struct Listing;

  template <class Call>
  auto Logged(Call&& call);
  historian::Historian& Opened();

  ado::StatementResult RunTranslated(const ado::Statement& statement, std::stop_token stop);
  engines::EngineResult RunWithinLimit(const engines::EngineStatement& statement,
                                       std::stop_token stop);
  void RunCatalogStatement(const dialect::CatalogStatement& statement, std::stop_token stop);
  // The listing when it answers for that catalog and is not too old, otherwise null.
  Listing* ListingOf(const platform::Text& sCatalog);

  ShownCatalog Shown(const historian::CatalogRecord& record) const;
  platform::Text ShownTable(const platform::Text& sTable) const;
  bool IsKnownAs(const historian::CatalogRecord& record, const platform::Text& sName) const;
  std::vector<historian::CatalogRecord> RestrictedCatalogs(const platform::Value& vtCatalog,
                                                           std::stop_token stop);
  std::vector<engines::TableSchema> TablesOf(const historian::CatalogRecord& record,
                                             const platform::Value& vtTable, std::stop_token stop);

  platform::RecordsetPtr OpenCatalogs(const Restrictions& restrictions, std::stop_token stop);
  platform::RecordsetPtr OpenTables(const Restrictions& restrictions, std::stop_token stop);
  platform::RecordsetPtr OpenColumns(const Restrictions& restrictions, std::stop_token stop);
  platform::RecordsetPtr OpenPrimaryKeys(const Restrictions& restrictions, std::stop_token stop);

  SessionPlace m_place;
  SessionOptions m_options;
  StatementLog m_log;
  std::unique_ptr<historian::Historian> m_historian;  ///< null when closed
  std::unique_ptr<engines::EngineSession> m_session;  ///< runs the statements
  std::unique_ptr<Listing> m_listing;
};

}  // namespace orvane::provider
