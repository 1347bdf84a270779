// Receives the rows of a statement into a recordset that grows with them.
// Used by the connection layer, and by providers and engines whose caller gave no receiver; filled
// on the thread of the statement.
#pragma once

#include <memory>
#include <mutex>

#include "ado/columnar_recordset.h"
#include "ado/row_receiver.h"

namespace orvane::ado {

class RowCollector final : public RowReceiver {
 public:
  /// The time that the rows take counts from here.
  explicit RowCollector(RowStorage storage = {}) : m_storage(std::move(storage)) {}

  /// What the columns turn out not to be is left out.
  void Source(platform::RowSource source) override { m_source = std::move(source); }
  void Begin(std::vector<ColumnDescription> columns, platform::Boolean bReads) override;
  void Take(std::span<Column> block) override { m_rows->Append(block); }
  void End(platform::Boolean bTruncated) override;
  std::atomic<bool>& Wanted() override { return m_bWanted; }

  /// Null before Begin; from any thread.
  std::shared_ptr<ColumnarRecordset> Recordset() const;
  /// Only behind Begin.
  FetchedRows& Rows() const { return *m_rows; }

 private:
  const RowStorage m_storage;
  const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
  platform::RowSource m_source;
  std::shared_ptr<FetchedRows> m_rows;
  mutable std::mutex m_mutex;
  std::shared_ptr<ColumnarRecordset> m_recordset;
  std::atomic<bool> m_bWanted{false};
};

}  // namespace orvane::ado
