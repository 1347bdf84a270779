// A receiver of rows that does what a test gives it, and otherwise holds them.
#pragma once

#include <functional>

#include "ado/row_collector.h"

namespace orvane::tests {

class ScriptedRows final : public ado::RowReceiver {
 public:
  explicit ScriptedRows(ado::RowStorage storage = {}) : m_rows(std::move(storage)) {}

  void Begin(std::vector<ado::ColumnDescription> columns, platform::Boolean bReadsOnly) override {
    bReads = bReadsOnly;
    m_rows.Begin(std::move(columns), bReads);
  }
  void Take(std::span<ado::Column> block) override {
    blocks.push_back(block.empty() ? 0 : block.front().RowCount());
    onTake();
    m_rows.Take(block);
  }
  void End(platform::Boolean bTruncated) override {
    onEnd();
    m_rows.End(bTruncated);
  }
  std::atomic<bool>& Wanted() override { return m_rows.Wanted(); }

  platform::RecordsetPtr Recordset() const { return m_rows.Recordset(); }

  std::function<void()> onTake = [] {};
  std::function<void()> onEnd = [] {};
  std::vector<platform::RowIndex> blocks;  ///< rows in each
  bool bReads = false;

 private:
  ado::RowCollector m_rows;
};

}  // namespace orvane::tests
