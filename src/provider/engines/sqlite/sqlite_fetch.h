// Steps a statement and hands its rows over in blocks: small ones first, so that there is soon
// something to be seen, and whatever there is when it is wanted.
// Used by SqliteStatement, on its stack; on the thread of the call.
#pragma once

#include <exception>
#include <span>
#include <vector>

#include "ado/row_receiver.h"
#include "provider/engines/sqlite/sqlite_handle.h"

namespace orvane::provider::engines {

/// How far a statement's rows are fetched, and how its database keeps texts.
struct FetchLimits {
  platform::RowIndex maxRows = 0;  ///< 0 fetches all rows
  std::size_t maxBytes = 0;        ///< that texts and bytes of one row may take; 0 is no limit
  bool bUtf8 = false;              ///< texts are kept in UTF-8
};

class SqliteFetch {
 public:
  SqliteFetch(sqlite3_stmt* statement, std::span<const ado::ColumnDescription> columns,
              const FetchLimits& limits, ado::RowReceiver& rows);
  SqliteFetch(const SqliteFetch&) = delete;
  SqliteFetch& operator=(const SqliteFetch&) = delete;
  ~SqliteFetch() = default;

  /// Steps to the end and gives SQLite's code for it, SQLITE_ROW when the row limit keeps rows
  /// back. Fails with std::bad_alloc for a row that is too large, and as the receiver does.
  int StepAll();
  /// Hands over the whole rows that are left.
  void HandOver();
  /// Called between two rows: hands over what is wanted. False when the receiver failed; StepAll
  /// fails so then.
  bool HandOverWanted() noexcept;

 private:
  void TakeRow();
  void CountBytes(std::size_t size);

  sqlite3_stmt* m_statement;
  FetchLimits m_limits;
  ado::RowReceiver& m_receiver;
  std::atomic<bool>& m_wanted;
  std::vector<platform::DataType> m_types;
  std::vector<ado::Column> m_columns;
  platform::RowIndex m_rows = 0;
  std::size_t m_pending = 0;  // whole rows in the columns
  std::size_t m_blockRows;    // of the next block
  std::size_t m_bytes = 0;    // of texts in the columns
  std::size_t m_mostBytes;
  std::exception_ptr m_failure;
};

}  // namespace orvane::provider::engines
