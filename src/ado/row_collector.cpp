#include "ado/row_collector.h"

namespace orvane::ado {

void RowCollector::Begin(std::vector<ColumnDescription> columns, platform::Boolean /*bReads*/) {
  m_rows = std::make_shared<FetchedRows>(std::move(columns), m_storage, m_start);
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
