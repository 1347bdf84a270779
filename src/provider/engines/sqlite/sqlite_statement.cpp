#include "provider/engines/sqlite/sqlite_statement.h"

#include <fmt/format.h>

#include <limits>
#include <new>

#include "provider/engines/declared_types.h"
#include "provider/engines/sqlite/sqlite_errors.h"
#include "provider/engines/sqlite/sqlite_types.h"
#include "provider/engines/sqlite/sqlite_values.h"

namespace orvane::provider::engines {

using platform::ColumnIndex;
using platform::DataType;
using platform::Failure;
using platform::RowIndex;
using platform::Text;
using platform::Value;
namespace failure = platform::failure;

namespace {

// SQLite has nothing to point to when a value is empty, and when it had no memory to make it whole.
std::size_t SizeOf(sqlite3_value* value, const void* bytes) {
  const int nSize = sqlite3_value_bytes(value);
  if (bytes == nullptr && nSize != 0) throw std::bad_alloc();
  return static_cast<std::size_t>(nSize);
}

std::string_view TextOf(sqlite3_value* value, bool bUtf8) {
  // Of a UTF-8 database the bytes are the text; asking for text would copy it to end it with zero.
  const auto* text = static_cast<const char*>(
      bUtf8 ? sqlite3_value_blob(value) : static_cast<const void*>(sqlite3_value_text(value)));
  if (text == nullptr && !bUtf8) throw std::bad_alloc();
  return {text, SizeOf(value, text)};
}

void AppendInteger(ado::Column& column, DataType type, std::int64_t llValue) {
  switch (type) {
    case DataType::DBTimeStamp:
      column.AppendTimestamp(platform::Timestamp(std::chrono::microseconds(llValue)));
      return;
    case DataType::Integer:
      if (llValue >= std::numeric_limits<std::int32_t>::min() &&
          llValue <= std::numeric_limits<std::int32_t>::max()) {
        column.AppendLong(static_cast<std::int32_t>(llValue));
        return;
      }
      break;
    case DataType::Boolean:
      if (llValue == 0 || llValue == 1) {
        column.AppendBoolean(llValue != 0);
        return;
      }
      break;
    case DataType::Empty:
    case DataType::Double:
    case DataType::BigInt:
    case DataType::Guid:
    case DataType::Binary:
    case DataType::WChar:
    case DataType::Numeric:
    case DataType::DBDate:
    case DataType::DBTime:
      break;
  }
  column.AppendLongLong(llValue);
}

void AppendText(ado::Column& column, DataType type, std::string_view sText) {
  switch (type) {
    case DataType::DBDate:
    case DataType::DBTime:
    case DataType::Guid:
      column.AppendValue(FromStoredText(type, sText));
      return;
    case DataType::Empty:
    case DataType::Integer:
    case DataType::Double:
    case DataType::Boolean:
    case DataType::BigInt:
    case DataType::Binary:
    case DataType::WChar:
    case DataType::Numeric:
    case DataType::DBTimeStamp:
      break;
  }
  column.AppendText(sText);
}

// One look-up of the cell instead of one for its type and one for its value. That the value may be
// read without a lock is because sessions are opened without SQLite's own locks.
// Gives the bytes of a text or blob.
inline std::size_t AppendCell(ado::Column& column, DataType type, sqlite3_value* value,
                              bool bUtf8) {
  switch (sqlite3_value_type(value)) {
    case SQLITE_INTEGER:
      AppendInteger(column, type, sqlite3_value_int64(value));
      return 0;
    case SQLITE_FLOAT:
      column.AppendDouble(sqlite3_value_double(value));
      return 0;
    case SQLITE_TEXT: {
      const std::string_view sText = TextOf(value, bUtf8);
      AppendText(column, type, sText);
      return sText.size();
    }
    case SQLITE_BLOB: {
      const auto* bytes = static_cast<const std::byte*>(sqlite3_value_blob(value));
      const std::size_t size = SizeOf(value, bytes);
      column.AppendBytes(std::span(bytes, size));
      return size;
    }
    default:
      column.AppendNull();
      return 0;
  }
}

bool RefusesNull(sqlite3* database, sqlite3_stmt* statement, int nColumn) {
  const char* sTable = sqlite3_column_table_name(statement, nColumn);
  const char* sOrigin = sqlite3_column_origin_name(statement, nColumn);
  if (sTable == nullptr || sOrigin == nullptr) return false;
  const char* sCatalog = sqlite3_column_database_name(statement, nColumn);
  int nNotNull = 0;
  return sqlite3_table_column_metadata(database, sCatalog, sTable, sOrigin, nullptr, nullptr,
                                       &nNotNull, nullptr, nullptr) == SQLITE_OK &&
         nNotNull != 0;
}

}  // namespace

SqliteStatement::SqliteStatement(sqlite3* database, const Text& sSql, const Text& sSubject)
    : m_database(database), m_sSql(sSql), m_sSubject(sSubject) {
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
  if (nCode != SQLITE_OK) Fail(nCode);
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
    columns.push_back({sName == nullptr ? "" : sName,
                       TypeOfDeclaration(sType == nullptr ? "" : sType),
                       !RefusesNull(m_database, m_statement.get(), nColumn)});
  }
  return columns;
}

FetchedRows SqliteStatement::Fetch(const FetchLimits& limits) {
  struct Target {
    ado::Column* column;
    DataType type;
  };
  auto columns = Columns();
  std::vector<Target> targets;
  for (const auto& column : columns) targets.push_back({nullptr, column.type});
  FetchedRows rows{ado::RecordsetBuilder(std::move(columns))};
  const int nColumns = rows.builder.ColumnCount();
  for (int nColumn = 0; nColumn < nColumns; ++nColumn) {
    targets[static_cast<std::size_t>(nColumn)].column = &rows.builder.ColumnAt(nColumn);
  }
  sqlite3_stmt* const statement = m_statement.get();
  RowIndex row = 0;
  int nCode = SQLITE_OK;
  // Whenever so many bytes of texts or so many rows were added: that is rare, and soon enough.
  constexpr std::size_t kBytesBetweenLooks = std::size_t{1} << 20;
  constexpr RowIndex kRowsBetweenLooks = 1024;
  std::size_t added = 0;
  const auto checkBytes = [&] {
    if (limits.maxBytes != 0 && rows.builder.Bytes() > limits.maxBytes) Fail(SQLITE_NOMEM);
  };
  // No stop token is looked at here: SqliteWatch does that from inside.
  while ((nCode = sqlite3_step(statement)) == SQLITE_ROW) {
    if (limits.maxRows != 0 && row == limits.maxRows) {
      // Ends the statement, and with it the counting of the rows it changed.
      if (const int nEnd = sqlite3_reset(statement); nEnd != SQLITE_OK) Fail(nEnd);
      rows.bTruncated = true;
      return rows;
    }
    for (int nColumn = 0; nColumn < nColumns; ++nColumn) {
      const Target& target = targets[static_cast<std::size_t>(nColumn)];
      added += AppendCell(*target.column, target.type, sqlite3_column_value(statement, nColumn),
                          limits.bUtf8);
      if (added >= kBytesBetweenLooks) {
        added = 0;
        checkBytes();
      }
    }
    if (++row % kRowsBetweenLooks == 0) checkBytes();
  }
  if (nCode != SQLITE_DONE) Fail(nCode);
  return rows;
}

void SqliteStatement::Run() {
  int nCode = SQLITE_OK;
  while ((nCode = sqlite3_step(m_statement.get())) == SQLITE_ROW) {
  }
  if (nCode != SQLITE_DONE) Fail(nCode);
}

void SqliteStatement::Fail(int nCode) const {
  throw FailureOf(WithSystemError(m_database, nCode), m_sSubject, sqlite3_errmsg(m_database),
                  m_sSql);
}

}  // namespace orvane::provider::engines
