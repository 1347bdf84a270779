#include "provider/session.h"

#include <algorithm>

#include "ado/connection_properties.h"
#include "ado/out_of_memory.h"
#include "ado/recordset_builder.h"
#include "ado/row_collector.h"
#include "platform/ado/extended_options.h"
#include "platform/case_folding.h"
#include "platform/failure.h"
#include "provider/dialect/statement_parameters.h"
#include "provider/engines/catalog_names.h"
#include "provider/engines/data_source.h"
#include "provider/known_schema.h"
#include "provider/result_times.h"

namespace orvane::provider {

using platform::Failure;
using platform::RecordsetPtr;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

template <class Call>
auto HistorianSession::Logged(Call&& call) {
  try {
    return ado::TellingMemory(std::forward<Call>(call));
  } catch (const Failure& failed) {
    m_log.Failed(failed);
    throw;
  }
}

HistorianSession::HistorianSession(SessionPlace place, const ado::ConnectionSettings& settings,
                                   const Text& sPassword, std::stop_token stop)
    : m_place(std::move(place)) {
  m_options.SetAll(settings);
  m_log.Open(m_options.LogFile(), m_options.LogLevel());
  Logged([&] {
    const engines::Logon logon{settings.Find(platform::kDataSource).value_or(Text()),
                               settings.Find(ado::ConnectionProperties::kUserId).value_or(Text()),
                               settings.MayGoUnencrypted()};
    engines::RefusePassword(logon.sDataSource);
    m_log.Statement("open " + logon.sDataSource);
    m_session = EngineOf(logon.sDataSource).Open(logon, sPassword, std::move(stop));
  });
}

HistorianSession::~HistorianSession() = default;

engines::Engine& HistorianSession::EngineOf(const Text& sDataSource) const {
  for (const auto& engine : m_place.engines) {
    if (engine->Serves(sDataSource)) return *engine;
  }
  return *m_place.engines.back();
}

engines::EngineSession& HistorianSession::Opened() {
  if (m_session == nullptr) {
    throw Failure(failure::kObjectClosed, "The connection is closed; connect again.");
  }
  return *m_session;
}

ado::StatementResult HistorianSession::Execute(const ado::Statement& statement,
                                               std::stop_token stop) {
  m_schemas.Forget();
  return Logged([&] {
    Opened();
    m_log.Statement(statement.sText);
    ado::StatementResult result;
    const Deadline deadline(std::move(stop), std::max(statement.timeout, std::chrono::seconds(0)));
    deadline.Run(
        [&](const std::stop_token& untilThen) { result = Run(statement, deadline, untilThen); });
    return result;
  });
}

ado::StatementResult HistorianSession::Run(const ado::Statement& statement,
                                           const Deadline& deadline, const std::stop_token& stop) {
  dialect::StatementWork work(deadline);
  auto tokens = dialect::ReadTokens(statement.sText, work);
  const std::vector<Value> places =
      statement.batch ? dialect::PlacesOf(tokens) : statement.parameters;
  dialect::GiveParameters(statement.sText, tokens, places);
  const auto catalog = dialect::ReadCatalogStatement(statement.sText, tokens);
  if (!catalog) return RunTranslated(statement, std::move(tokens), places, deadline, work, stop);
  dialect::RefuseParameters(statement.sText, tokens);
  if (statement.bReadOnly) throw engines::WouldChange(statement.sText);
  if (const auto expected = statement.rowsExpected.value_or(0); expected != 0) {
    throw engines::UnexpectedRows(0, expected, statement.sText);
  }
  RunCatalogStatement(*catalog, stop);
  return {ado::RecordsetBuilder({}).Finish(), 0};
}

// By the names under which the connection lists it.
platform::RowSource HistorianSession::AsShown(platform::RowSource source,
                                              const KnownSchema& schema) const {
  if (source.sTable.empty()) return source;
  source.sCatalog = m_names.Catalog(schema.Catalog(source.sCatalog)).sName;
  source.sTable = m_names.Table(source.sTable);
  return source;
}

ado::StatementResult HistorianSession::RunTranslated(const ado::Statement& statement,
                                                     std::vector<dialect::Token> tokens,
                                                     std::span<const Value> parameters,
                                                     const Deadline& deadline,
                                                     dialect::StatementWork& work,
                                                     const std::stop_token& stop) {
  KnownSchema schema(Opened().Catalogs(stop), Opened(), m_names, stop);
  auto translation = dialect::Translate(
      statement.sText, std::move(tokens), schema,
      {m_options.TimeZone(), m_place.clock(), m_options.IdentifierPrefixes(),
       m_options.TimeAsDouble(), Opened().Can().refusedNames, Opened().Can().form,
       statement.batch != nullptr || statement.rowsExpected.has_value()},
      work, parameters);
  if (statement.batch && translation.parameters.size() != parameters.size()) {
    throw Failure(failure::kNotSupported,
                  "A statement that runs once for each row of values takes all of its times by "
                  "parameters; write \"?\" for them.",
                  "ORVOLEDB", 0, statement.sText);
  }
  if (!translation.functions.empty() && !Opened().Can().bStatementFunctions) {
    throw Failure(failure::kNotSupported,
                  "This server cannot read times while a statement runs: compare the column with a "
                  "time that is written out, such as '*-1h', or with a parameter.",
                  "ORVOLEDB", 0, statement.sText);
  }
  deadline.Check();
  m_log.Detail(translation.sSql);
  engines::EngineStatement toRun;
  for (const auto& sCatalog : translation.catalogs) {
    toRun.catalogs.push_back(schema.Catalog(sCatalog));
    toRun.catalogs.back().bReadOnly = statement.bReadOnly || translation.changedCatalog != sCatalog;
  }
  toRun.sSql = std::move(translation.sSql);
  toRun.parameters = std::move(translation.parameters);
  if (statement.batch) {
    toRun.batch = dialect::LookedAt(statement.batch, std::move(translation.given));
  }
  toRun.written = {statement.sText, std::move(translation.places)};
  toRun.functions = std::move(translation.functions);
  toRun.storedTimes = std::move(translation.storedTimes);
  toRun.maxRows = std::max<platform::Long>(statement.lMaxRecords, 0);
  toRun.bReadOnly = statement.bReadOnly;
  toRun.rowsExpected = statement.rowsExpected;
  toRun.maxBytes = m_options.StatementMemory();
  toRun.timeout = std::max(statement.timeout, std::chrono::seconds(0));
  const auto held = statement.rows ? nullptr
                                   : std::make_shared<ado::RowCollector>(ado::RowStorage{
                                         std::make_shared<ado::MemoryBudget>(toRun.maxBytes)});
  const std::shared_ptr<ado::RowReceiver> rows = statement.rows ? statement.rows : held;
  rows->Source(AsShown(std::move(translation.source), schema));
  const auto shown =
      std::make_shared<ShownTimes>(rows, std::move(translation.columns),
                                   TimeDisplay{m_options.TimeAsDouble(), m_options.TimeZone()});
  toRun.rows = shown;
  const auto begun = std::chrono::steady_clock::now();
  const auto result = Opened().Run(toRun, stop);
  m_log.Done(shown->RowCount(), result.lRecordsAffected,
             std::chrono::duration_cast<std::chrono::milliseconds>(
                 std::chrono::steady_clock::now() - begun));
  return {held ? held->Recordset() : nullptr, result.lRecordsAffected};
}

void HistorianSession::RunCatalogStatement(const dialect::CatalogStatement& statement,
                                           const std::stop_token& stop) {
  if (const auto* const create = std::get_if<dialect::CreateDatabase>(&statement)) {
    // Not without its prefix either: the catalog would have another name than the one that was
    // typed.
    if (dialect::WithoutPrefix(create->sName) != create->sName) {
      engines::RefuseCatalogName(create->sName, engines::kPrefixedName);
    }
    Opened().CreateCatalog({create->sName, create->sPath, create->llKilobytes, create->sFile},
                           stop);
    return;
  }
  const Text& sName = std::get<dialect::DropDatabase>(statement).sName;
  const auto catalogs = Opened().Catalogs(stop);
  const auto* const found = m_names.Find(catalogs, sName);
  Opened().DropCatalog(found == nullptr ? sName : found->sName, stop);
}

RecordsetPtr HistorianSession::OpenSchema(platform::SchemaNumber schema,
                                          std::span<const Value> vtRestrictions,
                                          std::stop_token stop) {
  return Logged([&] {
    const SchemaReach reach{Opened(), std::move(stop)};
    m_log.Detail("schema rowset " + std::to_string(static_cast<int>(schema)));
    return m_schemas.Open(schema, vtRestrictions, reach);
  });
}

Value HistorianSession::PropertyValue(const Text& sName) const {
  if (platform::FoldCase(sName) == platform::FoldCase(platform::kLinkInUse)) {
    return m_session == nullptr ? Text() : m_session->Link();
  }
  return m_options.Get(sName);
}

void HistorianSession::PropertyValue(const Text& sName, const Value& vtValue) {
  m_schemas.Forget();
  SessionOptions options = m_options;
  options.Set(sName, vtValue);
  m_log.Open(options.LogFile(), options.LogLevel());
  m_options = std::move(options);
}

void HistorianSession::Close() {
  m_schemas.Forget();
  if (m_session == nullptr) return;
  m_log.Statement("close");
  m_session->Close();
  m_session.reset();
}

}  // namespace orvane::provider
