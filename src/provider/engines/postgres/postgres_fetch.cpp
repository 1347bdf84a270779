#include "provider/engines/postgres/postgres_fetch.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <utility>

#include "provider/engines/postgres/postgres_types.h"
#include "provider/engines/postgres/postgres_values.h"

namespace orvane::provider::engines {

namespace {

constexpr std::size_t kRowsInFirstBlock = 128;

platform::RowIndex ChangedBy(PGresult* result) {
  const std::string_view sCount = PQcmdTuples(result);
  platform::RowIndex count = 0;
  std::from_chars(sCount.data(), sCount.data() + sCount.size(), count);
  return count;
}

}  // namespace

std::vector<ado::ColumnDescription> ColumnsOf(const PGresult* described,
                                              const TableColumns& known) {
  std::vector<ado::ColumnDescription> columns;
  for (int n = 0; n < PQnfields(described); ++n) {
    ado::ColumnDescription column{PQfname(described, n), TypeOfOid(PQftype(described, n))};
    const auto origin = known.find({PQftable(described, n), PQftablecol(described, n)});
    if (origin != known.end()) column.sOrigin = origin->second.sName;
    column.textOrder =
        TextOrderOf(PQftype(described, n), origin != known.end() && origin->second.bBytes);
    column.bNullIsLast = true;
    columns.push_back(std::move(column));
  }
  return columns;
}

bool IsReadInBinary(const PGresult* described) {
  for (int n = 0; n < PQnfields(described); ++n) {
    if (!IsReadInBinary(PQftype(described, n))) return false;
  }
  return true;
}

PostgresFetch::PostgresFetch(PostgresLink& link, const PGresult* described,
                             const TableColumns& known, const Limits& limits,
                             ado::RowReceiver& rows)
    : m_link(link),
      m_limits(limits),
      m_receiver(rows),
      m_descriptions(ColumnsOf(described, known)),
      m_columns(m_descriptions.size()),
      m_bBinary(IsReadInBinary(described)),
      m_blockRows(kRowsInFirstBlock) {
  for (int n = 0; n < PQnfields(described); ++n) m_types.push_back(PQftype(described, n));
}

PostgresResult PostgresFetch::TakeAll(const std::stop_token& stop) {
  const auto wanted = [this] {
    if (m_pending != 0 && m_receiver.Wanted().load(std::memory_order_relaxed)) HandOver();
  };
  PostgresResult error;
  while (PostgresResult result = m_link.Next(stop, wanted)) {
    switch (PQresultStatus(result.get())) {
      case PGRES_SINGLE_TUPLE:
        if (m_bTruncated) break;
        if (m_limits.maxRows != 0 && m_rows == m_limits.maxRows) {
          m_bTruncated = true;
          // A change goes on to its end; of what only reads the rest is not wanted.
          if (m_limits.bReads) m_link.Cancel();
          break;
        }
        Begin();
        TakeRow(result.get());
        break;
      case PGRES_TUPLES_OK:
      case PGRES_COMMAND_OK:
      case PGRES_EMPTY_QUERY:
        Begin();
        m_changed = ChangedBy(result.get());
        break;
      default:
        // What was cut short was ended by its own cancelling.
        if (error == nullptr && !(m_bTruncated && m_limits.bReads)) error = std::move(result);
        break;
    }
  }
  HandOver();
  return error;
}

void PostgresFetch::Begin() {
  if (std::exchange(m_bBegun, true)) return;
  m_receiver.Begin(m_descriptions, m_limits.bReads);
}

inline void PostgresFetch::TakeRow(const PGresult* result) {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < m_columns.size(); ++i) {
    const int nColumn = static_cast<int>(i);
    if (PQgetisnull(result, 0, nColumn) != 0) {
      m_columns[i].AppendNull();
      continue;
    }
    const std::string_view sCell(PQgetvalue(result, 0, nColumn),
                                 static_cast<std::size_t>(PQgetlength(result, 0, nColumn)));
    bytes += sCell.size();
    if (m_limits.maxBytes != 0 && bytes > m_limits.maxBytes) m_link.RefuseRow();
    if (m_bBinary) {
      AppendBinary(m_columns[i], m_types[i], sCell);
    } else {
      AppendTextForm(m_columns[i], m_types[i], sCell);
    }
  }
  ++m_rows;
  ++m_pending;
  m_bytes += bytes;
  if (m_pending == m_blockRows || m_bytes >= ado::kBytesInBlock ||
      m_receiver.Wanted().load(std::memory_order_relaxed)) {
    HandOver();
  }
}

void PostgresFetch::HandOver() {
  if (m_pending == 0) return;
  m_receiver.Wanted().store(false, std::memory_order_relaxed);
  const auto rows = static_cast<platform::RowIndex>(std::exchange(m_pending, 0));
  for (ado::Column& column : m_columns) column.Shorten(rows);
  m_receiver.Take(m_columns);
  for (ado::Column& column : m_columns) column.Clear();
  m_bytes = 0;
  m_blockRows = std::min(m_blockRows * 2, ado::kRowsInBlock);
}

}  // namespace orvane::provider::engines
