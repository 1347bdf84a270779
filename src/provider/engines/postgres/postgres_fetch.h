// Takes a statement's results as they come from the server and hands their rows over in blocks:
// small ones first, so that there is soon something to be seen, and whatever there is when it is
// wanted. Used by the session, on its stack; on the thread of the call.
#pragma once

#include <stop_token>
#include <vector>

#include "ado/row_receiver.h"
#include "provider/engines/postgres/postgres_link.h"
#include "provider/engines/postgres/postgres_schema.h"

namespace orvane::provider::engines {

/// The columns of a result as the server describes it; the tables' tell where they come from.
std::vector<ado::ColumnDescription> ColumnsOf(const PGresult* described, const TableColumns& known);
/// True when every column is read in the server's binary form.
bool IsReadInBinary(const PGresult* described);

class PostgresFetch {
 public:
  struct Limits {
    platform::RowIndex maxRows = 0;  ///< 0 fetches all rows
    std::size_t maxBytes = 0;        ///< that a row's texts and bytes may take; 0 is no limit
    bool bReads = false;             ///< the statement changes nothing, so it may be ended early
  };

  PostgresFetch(PostgresLink& link, const PGresult* described, const TableColumns& known,
                const Limits& limits, ado::RowReceiver& rows);
  PostgresFetch(const PostgresFetch&) = delete;
  PostgresFetch& operator=(const PostgresFetch&) = delete;
  ~PostgresFetch() = default;

  /// Takes all results of what was executed. Gives the error that ended them, or null. What comes
  /// before an error has been handed over. Fails as the receiver does, and as the link does, which
  /// refuses a row that is too large; the results that are left are for the caller.
  PostgresResult TakeAll(const std::stop_token& stop);
  /// True once the receiver knows of the columns.
  bool Begun() const { return m_bBegun; }
  /// True when the row limit kept rows back.
  bool Truncated() const { return m_bTruncated; }
  /// Rows that the statement changed, as the server counts them.
  platform::RowIndex Changed() const { return m_changed; }

 private:
  void Begin();
  void TakeRow(const PGresult* result);
  void HandOver();

  PostgresLink& m_link;
  Limits m_limits;
  ado::RowReceiver& m_receiver;
  std::vector<ado::ColumnDescription> m_descriptions;
  std::vector<Oid> m_types;
  std::vector<ado::Column> m_columns;
  bool m_bBinary;
  bool m_bBegun = false;
  bool m_bTruncated = false;
  platform::RowIndex m_rows = 0;
  platform::RowIndex m_changed = 0;
  std::size_t m_pending = 0;
  std::size_t m_blockRows;
  std::size_t m_bytes = 0;
};

}  // namespace orvane::provider::engines
