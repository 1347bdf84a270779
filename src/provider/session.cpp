#include "provider/session.h"

#include <algorithm>

#include "ado/out_of_memory.h"
#include "ado/recordset_builder.h"
#include "ado/row_collector.h"
#include "platform/failure.h"
#include "provider/dialect/statement_parameters.h"
#include "provider/historian/data_folder.h"
#include "provider/known_schema.h"
#include "provider/result_times.h"
#include "provider/statement_thread.h"

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
                                   std::stop_token stop)
    : m_place(std::move(place)) {
  m_options.SetAll(settings);
  m_log.Open(m_options.LogFile(), m_options.LogLevel());
  Logged([&] {
    const Text sServer =
        historian::ServerFromDataSource(settings.Find(platform::kDataSource).value_or(Text()));
    m_log.Statement("open " + sServer);
    m_historian = std::make_unique<historian::Historian>(m_place.root, sServer, *m_place.engine,
                                                         stop, m_place.known);
    m_session = m_place.engine->Open({}, stop);
  });
}

HistorianSession::~HistorianSession() = default;

historian::Historian& HistorianSession::Opened() {
  if (m_historian == nullptr) {
    throw Failure(failure::kObjectClosed, "The connection is closed; connect again.");
  }
  return *m_historian;
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

ado::StatementResult HistorianSession::RunTranslated(const ado::Statement& statement,
                                                     std::vector<dialect::Token> tokens,
                                                     std::span<const Value> parameters,
                                                     const Deadline& deadline,
                                                     dialect::StatementWork& work,
                                                     const std::stop_token& stop) {
  KnownSchema schema(Opened().Catalogs(stop), *m_session, m_names, stop);
  auto translation = dialect::Translate(statement.sText, std::move(tokens), schema,
                                        {m_options.TimeZone(), m_place.clock(),
                                         m_options.IdentifierPrefixes(), m_options.TimeAsDouble()},
                                        work, parameters);
  if (statement.batch && translation.parameters.size() != parameters.size()) {
    throw Failure(failure::kNotSupported,
                  "A statement that runs once for each row of values takes all of its times by "
                  "parameters; write \"?\" for them.",
                  "ORVOLEDB", 0, statement.sText);
  }
  deadline.Check();
  m_log.Detail(translation.sSql);
  engines::EngineStatement toRun;
  for (const auto& sCatalog : translation.catalogs) {
    const bool bReadOnly = statement.bReadOnly || translation.changedCatalog != sCatalog;
    toRun.catalogs.push_back(historian::EngineCatalog(schema.Record(sCatalog), bReadOnly));
  }
  toRun.sSql = std::move(translation.sSql);
  toRun.parameters = std::move(translation.parameters);
  toRun.batch = statement.batch;
  toRun.functions = std::move(translation.functions);
  toRun.maxRows = std::max<platform::Long>(statement.lMaxRecords, 0);
  toRun.bReadOnly = statement.bReadOnly;
  toRun.rowsExpected = statement.rowsExpected;
  toRun.maxBytes = m_options.StatementMemory();
  const auto held = statement.rows ? nullptr
                                   : std::make_shared<ado::RowCollector>(ado::RowStorage{
                                         std::make_shared<ado::MemoryBudget>(toRun.maxBytes)});
  toRun.rows = std::make_shared<ShownTimes>(
      statement.rows ? statement.rows : held, std::move(translation.columns),
      TimeDisplay{m_options.TimeAsDouble(), m_options.TimeZone()});
  auto result = RunPatiently(m_session, std::move(toRun), stop, m_place.patience);
  if (!result) {
    // What was left to end by itself keeps the session that it runs on.
    m_session = m_place.engine->Open({}, {});
    throw Failure(failure::kCancelled, "The statement was cancelled.");
  }
  return {held ? held->Recordset() : nullptr, result->lRecordsAffected};
}

void HistorianSession::RunCatalogStatement(const dialect::CatalogStatement& statement,
                                           const std::stop_token& stop) {
  if (const auto* const create = std::get_if<dialect::CreateDatabase>(&statement)) {
    // Not without a prefix: the catalog would have another name than the one that was typed.
    Opened().CreateCatalog(create->sName, create->sPath, create->llKilobytes, stop);
    return;
  }
  const Text& sName = std::get<dialect::DropDatabase>(statement).sName;
  for (const auto& record : Opened().Catalogs(stop)) {
    if (m_names.IsKnownAs(record, sName)) {
      Opened().DropCatalog(record.sName, stop);
      return;
    }
  }
  Opened().DropCatalog(sName, stop);
}

RecordsetPtr HistorianSession::OpenSchema(platform::SchemaNumber schema,
                                          std::span<const Value> vtRestrictions,
                                          std::stop_token stop) {
  return Logged([&] {
    const SchemaReach reach{Opened(), *m_session, std::move(stop)};
    m_log.Detail("schema rowset " + std::to_string(static_cast<int>(schema)));
    return m_schemas.Open(schema, vtRestrictions, reach);
  });
}

Value HistorianSession::PropertyValue(const Text& sName) const {
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
  if (m_historian == nullptr) return;
  m_log.Statement("close");
  m_session.reset();
  m_historian.reset();
}

}  // namespace orvane::provider
