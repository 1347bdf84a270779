// One open connection to a historian: statements through the dialect to its engine, schema rowsets,
// and the extended options. Which engine it is makes no difference here.
// Driven by the connection layer; calls come one at a time, from changing threads.
#pragma once

#include <memory>

#include "ado/provider.h"
#include "provider/deadline.h"
#include "provider/dialect/catalog_statement.h"
#include "provider/schema_reader.h"
#include "provider/session_options.h"
#include "provider/session_place.h"
#include "provider/shown_names.h"
#include "provider/statement_log.h"

namespace orvane::provider {

class KnownSchema;

class HistorianSession final : public ado::Session {
 public:
  /// Opens the historian that the settings name as "Data Source", for the user that they name.
  HistorianSession(SessionPlace place, const ado::ConnectionSettings& settings,
                   const platform::Text& sPassword, std::stop_token stop);
  ~HistorianSession() override;

  ado::StatementResult Execute(const ado::Statement& statement, std::stop_token stop) override;
  platform::RecordsetPtr OpenSchema(platform::SchemaNumber schema,
                                    std::span<const platform::Value> vtRestrictions,
                                    std::stop_token stop) override;
  platform::Value PropertyValue(const platform::Text& sName) const override;
  void PropertyValue(const platform::Text& sName, const platform::Value& vtValue) override;
  void Close() override;

 private:
  template <class Call>
  auto Logged(Call&& call);
  engines::Engine& EngineOf(const platform::Text& sDataSource) const;
  engines::EngineSession& Opened();

  // The stop is that of the deadline.
  ado::StatementResult Run(const ado::Statement& statement, const Deadline& deadline,
                           const std::stop_token& stop);
  ado::StatementResult RunTranslated(const ado::Statement& statement,
                                     std::vector<dialect::Token> tokens,
                                     std::span<const platform::Value> parameters,
                                     const Deadline& deadline, dialect::StatementWork& work,
                                     const std::stop_token& stop);
  platform::RowSource AsShown(platform::RowSource source, const KnownSchema& schema) const;
  void RunCatalogStatement(const dialect::CatalogStatement& statement, const std::stop_token& stop);

  SessionPlace m_place;
  SessionOptions m_options;
  ShownNames m_names{m_options};
  SchemaReader m_schemas{m_place, m_options, m_names};
  StatementLog m_log;
  std::unique_ptr<engines::EngineSession> m_session;  ///< null when closed
};

}  // namespace orvane::provider
