#include "provider/engines/sqlite/sqlite_fetch.h"

#include <algorithm>
#include <limits>
#include <new>
#include <utility>

#include "platform/stored_text.h"

namespace orvane::provider::engines {

using platform::DataType;

namespace {

constexpr std::size_t kRowsInFirstBlock = 128;

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
  if (type == DataType::DBTimeStamp) {
    column.AppendTimestamp(platform::Timestamp(std::chrono::microseconds(llValue)));
    return;
  }
  switch (type) {
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
    case DataType::DBTimeStamp:
    case DataType::WallTime:
      break;
  }
  column.AppendLongLong(llValue);
}

void AppendText(ado::Column& column, DataType type, std::string_view sText) {
  switch (type) {
    case DataType::DBDate:
    case DataType::DBTime:
    case DataType::Guid:
      column.AppendValue(platform::FromStoredText(type, sText));
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
    case DataType::WallTime:
      break;
  }
  column.AppendText(sText);
}

}  // namespace

SqliteFetch::SqliteFetch(sqlite3_stmt* statement, std::span<const ado::ColumnDescription> columns,
                         const FetchLimits& limits, ado::RowReceiver& rows)
    : m_statement(statement),
      m_limits(limits),
      m_receiver(rows),
      m_wanted(rows.Wanted()),
      m_columns(columns.size()),
      m_blockRows(kRowsInFirstBlock),
      m_mostBytes(limits.maxBytes == 0 ? std::numeric_limits<std::size_t>::max()
                                       : limits.maxBytes) {
  for (const ado::ColumnDescription& column : columns) m_types.push_back(column.type);
}

int SqliteFetch::StepAll() {
  int nCode = SQLITE_OK;
  while ((nCode = sqlite3_step(m_statement)) == SQLITE_ROW) {
    if (m_limits.maxRows != 0 && m_rows == m_limits.maxRows) break;
    TakeRow();
    ++m_rows;
    if (++m_pending == m_blockRows || m_bytes >= ado::kBytesInBlock ||
        m_wanted.load(std::memory_order_relaxed)) {
      HandOver();
    }
  }
  if (m_failure) std::rethrow_exception(m_failure);
  return nCode;
}

// One look-up of each cell instead of one for its type and one for its value. That the value may be
// read without a lock is because sessions are opened without SQLite's own locks.
inline void SqliteFetch::TakeRow() {
  const DataType* type = m_types.data();
  int nColumn = 0;
  for (ado::Column& column : m_columns) {
    sqlite3_value* const value = sqlite3_column_value(m_statement, nColumn++);
    switch (sqlite3_value_type(value)) {
      case SQLITE_INTEGER:
        AppendInteger(column, *type, sqlite3_value_int64(value));
        break;
      case SQLITE_FLOAT:
        column.AppendDouble(sqlite3_value_double(value));
        break;
      case SQLITE_TEXT: {
        const std::string_view sText = TextOf(value, m_limits.bUtf8);
        AppendText(column, *type, sText);
        CountBytes(sText.size());
        break;
      }
      case SQLITE_BLOB: {
        const auto* bytes = static_cast<const std::byte*>(sqlite3_value_blob(value));
        const std::size_t size = SizeOf(value, bytes);
        column.AppendBytes(std::span(bytes, size));
        CountBytes(size);
        break;
      }
      default:
        column.AppendNull();
    }
    ++type;
  }
}

inline void SqliteFetch::CountBytes(std::size_t size) {
  m_bytes += size;
  if (m_bytes > m_mostBytes) throw std::bad_alloc();
}

void SqliteFetch::HandOver() {
  if (m_pending == 0) return;
  m_wanted.store(false, std::memory_order_relaxed);
  const auto rows = static_cast<platform::RowIndex>(std::exchange(m_pending, 0));
  // A row that broke off in its middle is not among them.
  for (ado::Column& column : m_columns) column.Shorten(rows);
  m_receiver.Take(m_columns);
  for (ado::Column& column : m_columns) column.Clear();
  m_bytes = 0;
  m_blockRows = std::min(m_blockRows * 2, ado::kRowsInBlock);
}

bool SqliteFetch::HandOverWanted() noexcept {
  if (m_pending == 0 || !m_wanted.load(std::memory_order_relaxed)) return true;
  try {
    HandOver();
    return true;
  } catch (...) {
    m_failure = std::current_exception();
    return false;
  }
}

}  // namespace orvane::provider::engines
