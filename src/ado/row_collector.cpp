#include "ado/row_collector.h"

namespace orvane::ado {

namespace {

// Two must agree on a column: who read the statement, and the engine that runs it.
void LeaveOutDifferent(platform::RowSource& source, const std::vector<ColumnDescription>& columns) {
  if (source.columns.size() != columns.size()) {
    source = {{}, {}, {}, std::move(source.sWhyNone)};
    return;
  }
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (source.columns[i] != columns[i].sOrigin) source.columns[i].clear();
  }
}

}  // namespace

void RowCollector::Begin(std::vector<ColumnDescription> columns, platform::Boolean /*bReads*/) {
  LeaveOutDifferent(m_source, columns);
  m_rows = std::make_shared<FetchedRows>(std::move(columns), m_storage, m_start);
  m_rows->Source(std::move(m_source));
  auto recordset = std::make_shared<ColumnarRecordset>(m_rows);
  const std::lock_guard lock(m_mutex);
  m_recordset = std::move(recordset);
}

void RowCollector::End(platform::Boolean bTruncated) {
  m_rows->End(bTruncated ? platform::FetchState::Truncated : platform::FetchState::Complete);
}

std::shared_ptr<ColumnarRecordset> RowCollector::Recordset() const {
  const std::lock_guard lock(m_mutex);
  return m_recordset;
}

}  // namespace orvane::ado
