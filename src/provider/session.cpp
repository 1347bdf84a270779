#include "provider/session.h"

#include <algorithm>
#include <unordered_map>

#include "platform/case_folding.h"
#include "platform/conversions.h"
#include "platform/failure.h"
#include "provider/historian/data_folder.h"
#include "provider/result_times.h"

namespace orvane::provider {

using historian::CatalogRecord;
using platform::Failure;
using platform::RecordsetPtr;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// The engine's number for a file that may not grow.
bool IsFull(const Failure& failed) {
  constexpr platform::Long kFull = 13;
  return failed.Number() == failure::kStorage && failed.NativeError() == kFull;
}

}  // namespace

// The historian's catalogs and tables as the translator asks for them, one statement long.
class HistorianSession::Schema final : public dialect::SchemaSource {
 public:
  Schema(HistorianSession& session, std::stop_token stop)
      : m_session(session), m_stop(std::move(stop)), m_records(session.Opened().Catalogs(m_stop)) {}

  std::optional<dialect::KnownCatalog> FindCatalog(const Text& sName) override {
    for (const auto& record : m_records) {
      if (m_session.IsKnownAs(record, sName))
        return dialect::KnownCatalog{record.sName, Advice(record)};
    }
    return std::nullopt;
  }

  std::optional<dialect::KnownTable> FindTable(const dialect::KnownCatalog& catalog,
                                               const Text& sTable) override {
    const auto tables = m_session.m_session->Schema(
        historian::EngineCatalog(Record(catalog.sName), true), {sTable, true}, m_stop);
    if (tables.empty()) return std::nullopt;
    dialect::KnownTable known{tables.front().sName, {}};
    for (const auto& column : tables.front().columns) {
      const bool bTime = column.type == platform::DataType::DBTimeStamp;
      known.columns.push_back(
          {column.sName, bTime ? dialect::Content::Time : dialect::Content::Other});
    }
    return known;
  }

  const CatalogRecord& Record(const Text& sName) const {
    return *std::find_if(m_records.begin(), m_records.end(),
                         [&](const auto& record) { return record.sName == sName; });
  }

 private:
  static Text Advice(const CatalogRecord& record) {
    if (!record.bOwn) return {};
    return record.sName == historian::kSystemCatalog
               ? "the historian keeps it itself; use CREATE DATABASE and DROP DATABASE"
               : "it is there to be read; change a catalog of your own";
  }

  HistorianSession& m_session;
  std::stop_token m_stop;
  std::vector<CatalogRecord> m_records;
};

class HistorianSession::Restrictions {
 public:
  explicit Restrictions(std::span<const Value> vtRestrictions) : m_restrictions(vtRestrictions) {}

  Value At(std::size_t place) const {
    if (place >= m_restrictions.size()) return {};
    const Value& vtValue = m_restrictions[place];
    const auto* const sText = vtValue.As<Text>();
    return sText != nullptr && sText->empty() ? Value() : vtValue;
  }
  // Tables have no schema: only an unset one lets any through.
  bool AllowsSchema() const { return At(1).IsNull(); }
  bool AllowsText(std::size_t place, const Text& sText) const {
    const Value vtValue = At(place);
    return vtValue.IsNull() || platform::ToText(vtValue) == sText;
  }

 private:
  std::span<const Value> m_restrictions;
};

struct HistorianSession::Listing {
  Text sCatalog;  ///< as it was asked for
  ShownCatalog shown;
  platform::Timestamp lastUse;
  std::unordered_map<Text, engines::TableSchema> tables{};  ///< by the name that is shown
};

template <class Call>
auto HistorianSession::Logged(Call&& call) {
  try {
    return call();
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
        historian::ServerFromDataSource(settings.Find("Data Source").value_or(Text()));
    m_log.Statement("open " + sServer);
    m_historian =
        std::make_unique<historian::Historian>(m_place.root, sServer, *m_place.engine, stop);
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

// --- statements ---

ado::StatementResult HistorianSession::Execute(const ado::Statement& statement,
                                               std::stop_token stop) {
  m_listing.reset();
  return Logged([&] {
    Opened();
    m_log.Statement(statement.sText);
    const auto tokens = dialect::ReadTokens(statement.sText);
    if (const auto catalog = dialect::ReadCatalogStatement(statement.sText, tokens)) {
      if (statement.bReadOnly) throw engines::WouldChange(statement.sText);
      Deadline(stop, statement.timeout).Run([&](std::stop_token untilThen) {
        RunCatalogStatement(*catalog, std::move(untilThen));
      });
      return ado::StatementResult{ado::RecordsetBuilder({}).Finish(), 0};
    }
    return RunTranslated(statement, stop);
  });
}

ado::StatementResult HistorianSession::RunTranslated(const ado::Statement& statement,
                                                     std::stop_token stop) {
  const Deadline deadline(stop, statement.timeout);
  Schema schema(*this, stop);
  const auto translation =
      dialect::Translate(statement.sText, schema,
                         {m_options.TimeZone(), m_place.clock(), m_options.IdentifierPrefixes(),
                          m_options.TimeAsDouble()});
  m_log.Detail(translation.sSql);
  engines::EngineStatement engineStatement;
  engineStatement.sSql = translation.sSql;
  engineStatement.parameters = translation.parameters;
  for (const auto& sCatalog : translation.catalogs) {
    engineStatement.catalogs.push_back(historian::EngineCatalog(
        schema.Record(sCatalog), statement.bReadOnly || translation.changedCatalog != sCatalog));
  }
  engineStatement.maxRows = std::max<platform::Long>(statement.lMaxRecords, 0);
  engineStatement.timeout = std::max(statement.timeout, std::chrono::seconds(0));
  engineStatement.bReadOnly = statement.bReadOnly;
  auto result = RunWithinLimit(engineStatement, stop);
  return {WithShownTimes(std::move(result.recordset), translation.columns, m_options.TimeAsDouble(),
                         m_options.TimeZone(), deadline),
          result.lRecordsAffected};
}

engines::EngineResult HistorianSession::RunWithinLimit(const engines::EngineStatement& statement,
                                                       std::stop_token stop) {
  try {
    return m_session->Run(statement, stop);
  } catch (const Failure& failed) {
    for (const auto& catalog : statement.catalogs) {
      if (catalog.bReadOnly || catalog.llMaxKilobytes == 0 || !IsFull(failed)) continue;
      throw Failure(failure::kStorage,
                    "The catalog \"" + catalog.sName + "\" has reached its limit of " +
                        std::to_string(catalog.llMaxKilobytes) +
                        " kilobytes, so nothing was written: delete rows or use another catalog.",
                    failed.Source(), failed.NativeError(), failed.SqlText());
    }
    throw;
  }
}

void HistorianSession::RunCatalogStatement(const dialect::CatalogStatement& statement,
                                           std::stop_token stop) {
  if (const auto* const create = std::get_if<dialect::CreateDatabase>(&statement)) {
    const Text sName =
        m_options.IdentifierPrefixes() ? dialect::WithoutPrefix(create->sName) : create->sName;
    Opened().CreateCatalog(sName, create->sPath, create->llKilobytes, stop);
    return;
  }
  const Text& sName = std::get<dialect::DropDatabase>(statement).sName;
  for (const auto& record : Opened().Catalogs(stop)) {
    if (IsKnownAs(record, sName)) {
      Opened().DropCatalog(record.sName, stop);
      return;
    }
  }
  Opened().DropCatalog(sName, stop);
}

// --- names ---

ShownCatalog HistorianSession::Shown(const CatalogRecord& record) const {
  // The historian's own catalogs have no identity and keep their names.
  if (m_options.HistoriansByGuid() && !record.bOwn) {
    return {record.sIdentity, record.sName, false};
  }
  return {ShownTable(record.sName), record.sDescription, record.bOwn};
}

Text HistorianSession::ShownTable(const Text& sTable) const {
  return m_options.IdentifierPrefixes() ? Text(dialect::kIdentifierPrefix) + sTable : sTable;
}

bool HistorianSession::IsKnownAs(const CatalogRecord& record, const Text& sName) const {
  if (historian::IsSameCatalog(record.sName, sName)) return true;
  const Text sPlain = m_options.IdentifierPrefixes() ? dialect::WithoutPrefix(sName) : sName;
  if (historian::IsSameCatalog(record.sName, sPlain)) return true;
  return m_options.HistoriansByGuid() && !record.bOwn &&
         historian::IsSameCatalog(record.sIdentity, sPlain);
}

std::vector<CatalogRecord> HistorianSession::RestrictedCatalogs(const Value& vtCatalog,
                                                                std::stop_token stop) {
  auto records = Opened().Catalogs(stop);
  if (vtCatalog.IsNull()) return records;
  const Text sCatalog = platform::ToText(vtCatalog);
  std::erase_if(records, [&](const auto& record) { return !IsKnownAs(record, sCatalog); });
  if (records.empty()) {
    throw Failure(
        failure::kInvalidArgument,
        "There is no catalog \"" + sCatalog + "\" on this server; reload the list of catalogs.");
  }
  return records;
}

std::vector<engines::TableSchema> HistorianSession::TablesOf(const CatalogRecord& record,
                                                             const Value& vtTable,
                                                             std::stop_token stop) {
  const auto catalog = historian::EngineCatalog(record, true);
  if (vtTable.IsNull()) return m_session->Schema(catalog, {std::nullopt, true}, stop);
  const Text sTable = platform::ToText(vtTable);
  auto tables = m_session->Schema(catalog, {sTable, true}, stop);
  if (tables.empty() && m_options.IdentifierPrefixes()) {
    tables = m_session->Schema(catalog, {dialect::WithoutPrefix(sTable), true}, stop);
  }
  return tables;
}

// --- schema rowsets ---

RecordsetPtr HistorianSession::OpenSchema(platform::SchemaNumber schema,
                                          std::span<const Value> vtRestrictions,
                                          std::stop_token stop) {
  const Restrictions restrictions(vtRestrictions);
  if (schema != platform::SchemaNumber::Columns) m_listing.reset();
  return Logged([&]() -> RecordsetPtr {
    Opened();
    m_log.Detail("schema rowset " + std::to_string(static_cast<int>(schema)));
    switch (schema) {
      case platform::SchemaNumber::Catalogs:
        return OpenCatalogs(restrictions, stop);
      case platform::SchemaNumber::Tables:
        return OpenTables(restrictions, stop);
      case platform::SchemaNumber::Columns:
        return OpenColumns(restrictions, stop);
      case platform::SchemaNumber::PrimaryKeys:
        return OpenPrimaryKeys(restrictions, stop);
      case platform::SchemaNumber::ProviderTypes:
        return ProviderTypesRowset(restrictions.At(0), restrictions.At(1));
    }
    throw Failure(failure::kNotSupported, "The provider has no schema rowset of the number " +
                                              std::to_string(static_cast<int>(schema)) +
                                              "; ask for another one.");
  });
}

RecordsetPtr HistorianSession::OpenCatalogs(const Restrictions& restrictions,
                                            std::stop_token stop) {
  std::vector<ShownCatalog> catalogs;
  for (const auto& record : Opened().Catalogs(stop)) {
    if (restrictions.At(0).IsNull() || IsKnownAs(record, platform::ToText(restrictions.At(0)))) {
      catalogs.push_back(Shown(record));
    }
  }
  return CatalogsRowset(catalogs);
}

RecordsetPtr HistorianSession::OpenTables(const Restrictions& restrictions, std::stop_token stop) {
  TablesRowset rowset;
  if (!restrictions.AllowsSchema()) return rowset.Finish();
  const bool bWholeCatalog = !restrictions.At(0).IsNull() && restrictions.At(2).IsNull();
  for (const auto& record : RestrictedCatalogs(restrictions.At(0), stop)) {
    const ShownCatalog shown = Shown(record);
    std::vector<engines::TableSchema> tables;
    if (bWholeCatalog) {
      // A session on the catalog itself needs fewer statements than one that reaches for it.
      const auto catalog = historian::EngineCatalog(record, true);
      tables = m_place.engine->Open(catalog, stop)->Schema(catalog, {std::nullopt, true}, stop);
      m_listing = std::make_unique<Listing>(
          Listing{platform::ToText(restrictions.At(0)), shown, m_place.clock()});
    } else {
      tables = TablesOf(record, restrictions.At(2), stop);
    }
    for (auto& table : tables) {
      const Text sShown = ShownTable(table.sName);
      if (restrictions.AllowsText(3, TablesRowset::TypeOf(shown, table))) {
        rowset.Append(shown, sShown, table);
      }
      if (bWholeCatalog) m_listing->tables.emplace(sShown, std::move(table));
    }
  }
  return rowset.Finish();
}

HistorianSession::Listing* HistorianSession::ListingOf(const Text& sCatalog) {
  // Whoever asks for the columns of a whole catalog does not rest so long between two tables.
  constexpr std::chrono::seconds kLongestPause{2};
  if (m_listing == nullptr || m_listing->sCatalog != sCatalog) return nullptr;
  const auto pause = m_place.clock() - m_listing->lastUse;
  return pause >= std::chrono::seconds(0) && pause <= kLongestPause ? m_listing.get() : nullptr;
}

RecordsetPtr HistorianSession::OpenColumns(const Restrictions& restrictions, std::stop_token stop) {
  ColumnsRowset rowset(m_options.TimeAsDouble());
  if (!restrictions.AllowsSchema()) return rowset.Finish();
  const Value vtColumn = restrictions.At(3);
  const Text sColumn = platform::ToText(vtColumn);
  const Text* const column = vtColumn.IsNull() ? nullptr : &sColumn;
  if (Listing* const listing = ListingOf(platform::ToText(restrictions.At(0)))) {
    // Once a table: who asks again wants to know what it is like now.
    const auto listed = listing->tables.extract(platform::ToText(restrictions.At(2)));
    if (!listed.empty()) {
      rowset.Append(listing->shown, listed.key(), listed.mapped(), column);
      listing->lastUse = m_place.clock();
      return rowset.Finish();
    }
  }
  m_listing.reset();
  for (const auto& record : RestrictedCatalogs(restrictions.At(0), stop)) {
    for (const auto& table : TablesOf(record, restrictions.At(2), stop)) {
      rowset.Append(Shown(record), ShownTable(table.sName), table, column);
    }
  }
  return rowset.Finish();
}

RecordsetPtr HistorianSession::OpenPrimaryKeys(const Restrictions& restrictions,
                                               std::stop_token stop) {
  PrimaryKeysRowset rowset;
  if (!restrictions.AllowsSchema()) return rowset.Finish();
  for (const auto& record : RestrictedCatalogs(restrictions.At(0), stop)) {
    for (const auto& table : TablesOf(record, restrictions.At(2), stop)) {
      rowset.Append(Shown(record), ShownTable(table.sName), table);
    }
  }
  return rowset.Finish();
}

// --- options ---

Value HistorianSession::PropertyValue(const Text& sName) const {
  return m_options.Get(sName);
}

void HistorianSession::PropertyValue(const Text& sName, const Value& vtValue) {
  m_listing.reset();
  SessionOptions options = m_options;
  options.Set(sName, vtValue);
  m_log.Open(options.LogFile(), options.LogLevel());
  m_options = std::move(options);
}

void HistorianSession::Close() {
  m_listing.reset();
  if (m_historian == nullptr) return;
  m_log.Statement("close");
  m_session.reset();
  m_historian.reset();
}

}  // namespace orvane::provider
