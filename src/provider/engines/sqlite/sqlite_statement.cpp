#include "provider/engines/sqlite/sqlite_statement.h"

#include <fmt/format.h>

#include <functional>
#include <limits>

#include "ado/row_collector.h"
#include "provider/engines/declared_types.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_values.h"
#include "provider/engines/sqlite/sqlite_watch.h"
#include "provider/engines/written_place.h"

namespace orvane::provider::engines {

using platform::Failure;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

/// Has the watch hand over rows while it lives.
class Looking {
 public:
  Looking(SqliteWatch* watch, std::function<bool()> look) : m_watch(watch) {
    if (m_watch != nullptr) m_watch->OnLook(std::move(look));
  }
  Looking(const Looking&) = delete;
  Looking& operator=(const Looking&) = delete;
  ~Looking() {
    if (m_watch != nullptr) m_watch->OnLook({});
  }

 private:
  SqliteWatch* m_watch;
};

// What ended the statement is what is told.
void HandOverRest(SqliteFetch& fetch) noexcept {
  try {
    fetch.HandOver();
  } catch (...) {
  }
}

/// What the table tells of a column that is read from it as it is.
struct TableColumn {
  Text sName{};
  bool bNotNull = false;
  platform::TextOrder order = platform::TextOrder::Bytes;
};

TableColumn ReadFromTable(sqlite3* database, sqlite3_stmt* statement, int nColumn) {
  const char* sTable = sqlite3_column_table_name(statement, nColumn);
  const char* sOrigin = sqlite3_column_origin_name(statement, nColumn);
  if (sTable == nullptr || sOrigin == nullptr) return {};
  TableColumn column{sOrigin};
  const char* sCatalog = sqlite3_column_database_name(statement, nColumn);
  const char* sOrder = nullptr;
  int nNotNull = 0;
  if (sqlite3_table_column_metadata(database, sCatalog, sTable, sOrigin, nullptr, &sOrder,
                                    &nNotNull, nullptr, nullptr) != SQLITE_OK) {
    return column;
  }
  column.bNotNull = nNotNull != 0;
  if (sOrder != nullptr && sqlite3_stricmp(sOrder, "NOCASE") == 0) {
    column.order = platform::TextOrder::NoCase;
  } else if (sOrder != nullptr && sqlite3_stricmp(sOrder, "RTRIM") == 0) {
    column.order = platform::TextOrder::TrailingBlanks;
  }
  return column;
}

}  // namespace

SqliteStatement::SqliteStatement(sqlite3* database, const Text& sSql, const Text& sSubject,
                                 const EngineStatement* written)
    : m_database(database), m_sSql(sSql), m_sSubject(sSubject), m_written(written) {
  // SQLite would take a zero byte for the end and leave what is behind it unread.
  if (sSql.find('\0') != Text::npos) {
    throw Failure(failure::kSqlError,
                  "The statement cannot be run: it holds a zero byte; remove that.", "SQLite", 0,
                  sSql);
  }
  std::string_view sRest = sSql;
  while (m_statement == nullptr && !sRest.empty()) m_statement.reset(Prepare(sRest, sRest));
  if (m_statement == nullptr) {
    throw Failure(failure::kSqlError, "There is no statement to run: the text is empty; write one.",
                  "SQLite", 0, sSql);
  }
  if (HasStatement(sRest)) {
    throw Failure(failure::kSqlError,
                  "The text holds more than one statement: run them one at a time.", "SQLite", 0,
                  sSql);
  }
}

// Gives null for blanks, comments and an empty statement, and always shortens the rest.
sqlite3_stmt* SqliteStatement::Prepare(std::string_view sSql, std::string_view& sRest) const {
  if (sSql.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) Fail(SQLITE_TOOBIG);
  sqlite3_stmt* statement = nullptr;
  const char* sTail = nullptr;
  const int nCode = sqlite3_prepare_v3(m_database, sSql.data(), static_cast<int>(sSql.size()), 0,
                                       &statement, &sTail);
  if (nCode != SQLITE_OK) {
    const int nOffset = sqlite3_error_offset(m_database);
    if (m_written == nullptr || nOffset < 0) Fail(nCode);
    const auto nByte = static_cast<std::size_t>(sSql.data() - m_sSql.data() + nOffset);
    Fail(nCode, WrittenPlace(*m_written, nByte));
  }
  sRest = sSql.substr(static_cast<std::size_t>(sTail - sSql.data()));
  return statement;
}

bool SqliteStatement::HasStatement(std::string_view sSql) const {
  while (!sSql.empty()) {
    try {
      const SqliteStatementHandle statement(Prepare(sSql, sSql));
      if (statement != nullptr) return true;
    } catch (const Failure&) {
      return true;  // What cannot be read is there all the same.
    }
  }
  return false;
}

void SqliteStatement::Bind(std::span<const Value> vtValues) {
  const int nPlaces = sqlite3_bind_parameter_count(m_statement.get());
  if (static_cast<std::size_t>(nPlaces) != vtValues.size()) {
    throw Failure(
        failure::kInvalidArgument,
        fmt::format(
            "The statement takes {} parameters, but {} were given; give one value for each.",
            nPlaces, vtValues.size()),
        "SQLite", 0, m_sSql);
  }
  for (int nPlace = 1; nPlace <= nPlaces; ++nPlace) {
    const Value& vtValue = vtValues[static_cast<std::size_t>(nPlace) - 1];
    if (const int nCode = BindValue(m_statement.get(), nPlace, vtValue, Lifetime::Longer);
        nCode != SQLITE_OK) {
      Fail(nCode);
    }
  }
}

std::vector<ado::ColumnDescription> SqliteStatement::Columns() const {
  std::vector<ado::ColumnDescription> columns;
  const int nColumns = sqlite3_column_count(m_statement.get());
  for (int nColumn = 0; nColumn < nColumns; ++nColumn) {
    const char* sName = sqlite3_column_name(m_statement.get(), nColumn);
    const char* sType = sqlite3_column_decltype(m_statement.get(), nColumn);
    TableColumn column = ReadFromTable(m_database, m_statement.get(), nColumn);
    columns.push_back({sName == nullptr ? "" : sName,
                       TypeOfDeclaration(sType == nullptr ? "" : sType), !column.bNotNull,
                       std::move(column.sName), column.order});
  }
  return columns;
}

void SqliteStatement::Fetch(const FetchLimits& limits, ado::RowReceiver& rows, SqliteWatch* watch) {
  auto columns = Columns();
  SqliteFetch fetch(m_statement.get(), columns, limits, rows);
  const bool bReads = ReadsOnly() || Explains();
  rows.Begin(std::move(columns), bReads);
  // No stop token is looked at here: the watch does that from inside.
  const Looking looking(watch, [&] { return fetch.HandOverWanted(); });
  int nCode = SQLITE_OK;
  try {
    nCode = fetch.StepAll();
    // Ends the statement, and with it the counting of the rows it changed.
    const bool bTruncated = nCode == SQLITE_ROW;
    if (bTruncated) nCode = sqlite3_reset(m_statement.get());
    if (nCode != SQLITE_DONE && nCode != SQLITE_OK) Fail(nCode);
    fetch.HandOver();
    rows.End(bTruncated);
  } catch (...) {
    if (bReads) HandOverRest(fetch);
    throw;
  }
}

platform::RecordsetPtr SqliteStatement::FetchAll(bool bUtf8) {
  ado::RowCollector rows;
  Fetch({.bUtf8 = bUtf8}, rows);
  return rows.Recordset();
}

void SqliteStatement::Run() {
  int nCode = SQLITE_OK;
  while ((nCode = sqlite3_step(m_statement.get())) == SQLITE_ROW) {
  }
  if (nCode != SQLITE_DONE) Fail(nCode);
}

void SqliteStatement::Fail(int nCode, std::size_t nPlace) const {
  throw FailureOf(WithSystemError(m_database, nCode), m_sSubject, sqlite3_errmsg(m_database),
                  m_sSql, nPlace);
}

}  // namespace orvane::provider::engines
